// SPDX-License-Identifier: MIT
// Counters, S5 times, dates with times in access buffers.
#include "simulator/program/encoding.h"
#include "simulator/standin/aglink.h"
#include "simulator/standin/elements.h"

using namespace ostravel;
using namespace ostravel::standin;

namespace {

constexpr ElementType kCounter{ValueType_t::vt_SYSTEM_SPECIFIC, SystemType_t::st_S7_Counter};
constexpr ElementType kS5Time{ValueType_t::vt_SYSTEM_SPECIFIC, SystemType_t::st_S7_S5Time};
constexpr ElementType kDtl{ValueType_t::vt_SYSTEM_SPECIFIC, SystemType_t::st_S7_DTL};
constexpr ElementType kDateAndTime{ValueType_t::vt_SYSTEM_SPECIFIC, SystemType_t::st_S7_Date_And_Time};

constexpr std::uint16_t kFirstDtlYear = 1970;
constexpr std::uint16_t kLastDtlYear = 2262;
constexpr std::uint32_t kNanosecondsPerMillisecond = 1'000'000;

// A date of which the weekday, if it is none, is put right.
plc::DateTime with_weekday(plc::DateTime time) {
  if (time.weekday < 1 || time.weekday > 7) time.weekday = plc::weekday_of(time.year, time.month, time.day);
  return time;
}

template <typename... Pointer>
void require_all(Pointer... pointer) {
  require(((pointer != nullptr) && ...), Error::InvalidParameter);
}

}  // namespace

extern "C" {

agl_int32_t AGL_Symbolic_GetAccessBufferS7_Counter(HandleType AccessHandle, const void* Buffer,
                                                   agl_int32_t BufferLen, agl_int32_t Element,
                                                   agl_uint16_t* Value) {
  return guarded([&] {
    require_all(Value);
    const auto from = read_element(AccessHandle, Buffer, BufferLen, Element, kCounter);
    const auto coded = static_cast<std::uint16_t>(plc::load_number(from.bytes.first(2)));
    *Value = static_cast<agl_uint16_t>(plc::number_from_counter(coded));
  });
}

agl_int32_t AGL_Symbolic_SetAccessBufferS7_Counter(HandleType AccessHandle, void* Buffer,
                                                   agl_int32_t BufferLen, agl_int32_t Element,
                                                   agl_uint16_t Value) {
  return guarded([&] {
    const auto to = write_element(AccessHandle, Buffer, BufferLen, Element, kCounter);
    const auto coded = plc::counter_from_number(Value);
    require(coded.has_value(), Error::ValueOutOfRange);
    plc::store_number(to.bytes.first(2), *coded);
  });
}

agl_int32_t AGL_Symbolic_GetAccessBufferS7_S5TimeMs(HandleType AccessHandle, const void* Buffer,
                                                    agl_int32_t BufferLen, agl_int32_t Element,
                                                    agl_uint32_t* Value) {
  return guarded([&] {
    require_all(Value);
    const auto from = read_element(AccessHandle, Buffer, BufferLen, Element, kS5Time);
    *Value = plc::ms_from_s5time(static_cast<std::uint16_t>(plc::load_number(from.bytes.first(2))));
  });
}

agl_int32_t AGL_Symbolic_SetAccessBufferS7_S5TimeMs(HandleType AccessHandle, void* Buffer,
                                                    agl_int32_t BufferLen, agl_int32_t Element,
                                                    agl_uint32_t Milliseconds, agl_int32_t Round) {
  return guarded([&] {
    const auto to = write_element(AccessHandle, Buffer, BufferLen, Element, kS5Time);
    const auto coded = plc::s5time_from_ms(Milliseconds, Round != 0);
    require(coded.has_value(), Error::ValueOutOfRange);
    plc::store_number(to.bytes.first(2), *coded);
  });
}

agl_int32_t AGL_Symbolic_GetAccessBufferS7_DTLParts(HandleType AccessHandle, const void* Buffer,
                                                    agl_int32_t BufferLen, agl_int32_t Element,
                                                    agl_uint16_t* Year, agl_uint8_t* Month, agl_uint8_t* Day,
                                                    agl_uint8_t* WeekDay, agl_uint8_t* Hour,
                                                    agl_uint8_t* Minute, agl_uint8_t* Second,
                                                    agl_uint32_t* Nanoseconds) {
  return guarded([&] {
    require_all(Year, Month, Day, WeekDay, Hour, Minute, Second, Nanoseconds);
    const auto time = plc::load_dtl(read_element(AccessHandle, Buffer, BufferLen, Element, kDtl).bytes);
    *Year = time.year;
    *Month = time.month;
    *Day = time.day;
    *WeekDay = time.weekday;
    *Hour = time.hour;
    *Minute = time.minute;
    *Second = time.second;
    *Nanoseconds = time.nanosecond;
  });
}

agl_int32_t AGL_Symbolic_SetAccessBufferS7_DTLParts(HandleType AccessHandle, void* Buffer,
                                                    agl_int32_t BufferLen, agl_int32_t Element,
                                                    agl_uint16_t Year, agl_uint8_t Month, agl_uint8_t Day,
                                                    agl_uint8_t WeekDay, agl_uint8_t Hour, agl_uint8_t Minute,
                                                    agl_uint8_t Second, agl_uint32_t Nanoseconds) {
  return guarded([&] {
    const auto to = write_element(AccessHandle, Buffer, BufferLen, Element, kDtl);
    const plc::DateTime time{Year, Month, Day, WeekDay, Hour, Minute, Second, Nanoseconds};
    require(plc::is_valid(time) && Year >= kFirstDtlYear && Year <= kLastDtlYear, Error::ValueOutOfRange);
    plc::store_dtl(to.bytes, with_weekday(time));
  });
}

agl_int32_t AGL_Symbolic_GetAccessBufferS7_Date_and_TimeParts(
    HandleType AccessHandle, const void* Buffer, agl_int32_t BufferLen, agl_int32_t Element,
    agl_uint16_t* Year, agl_uint8_t* Month, agl_uint8_t* Day, agl_uint8_t* WeekDay, agl_uint8_t* Hour,
    agl_uint8_t* Minute, agl_uint8_t* Second, agl_uint16_t* Millisecond) {
  return guarded([&] {
    require_all(Year, Month, Day, WeekDay, Hour, Minute, Second, Millisecond);
    const auto from = read_element(AccessHandle, Buffer, BufferLen, Element, kDateAndTime);
    const auto time = plc::load_date_and_time(from.bytes);
    *Year = time.year;
    *Month = time.month;
    *Day = time.day;
    *WeekDay = time.weekday;
    *Hour = time.hour;
    *Minute = time.minute;
    *Second = time.second;
    *Millisecond = static_cast<agl_uint16_t>(time.nanosecond / kNanosecondsPerMillisecond);
  });
}

agl_int32_t AGL_Symbolic_SetAccessBufferS7_Date_and_TimeParts(HandleType AccessHandle, void* Buffer,
                                                              agl_int32_t BufferLen, agl_int32_t Element,
                                                              agl_uint16_t Year, agl_uint8_t Month,
                                                              agl_uint8_t Day, agl_uint8_t WeekDay,
                                                              agl_uint8_t Hour, agl_uint8_t Minute,
                                                              agl_uint8_t Second, agl_uint16_t Millisecond) {
  return guarded([&] {
    const auto to = write_element(AccessHandle, Buffer, BufferLen, Element, kDateAndTime);
    require(Millisecond < 1000, Error::ValueOutOfRange);
    const plc::DateTime time{Year, Month,  Day,    WeekDay,
                             Hour, Minute, Second, Millisecond * kNanosecondsPerMillisecond};
    require(plc::store_date_and_time(to.bytes, with_weekday(time)), Error::ValueOutOfRange);
  });
}
}
