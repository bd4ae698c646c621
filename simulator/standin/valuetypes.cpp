// SPDX-License-Identifier: MIT
#include "simulator/standin/valuetypes.h"

namespace ostravel::standin {

ElementType element_type(plc::DataType type) {
  using plc::DataType;
  using V = ValueType_t;
  using S = SystemType_t;
  switch (type) {
    case DataType::Bool:
      return {V::vt_UINT8, S::st_S7_Bool};
    case DataType::Byte:
      return {V::vt_UINT8, S::st_S7_Byte};
    case DataType::Word:
      return {V::vt_UINT16, S::st_S7_Word};
    case DataType::DWord:
      return {V::vt_UINT32, S::st_S7_DWord};
    case DataType::LWord:
      return {V::vt_UINT64, S::st_S7_LWord};
    case DataType::SInt:
      return {V::vt_INT8, S::st_S7_SInt};
    case DataType::Int:
      return {V::vt_INT16, S::st_S7_Int};
    case DataType::DInt:
      return {V::vt_INT32, S::st_S7_DInt};
    case DataType::LInt:
      return {V::vt_INT64, S::st_S7_LInt};
    case DataType::USInt:
      return {V::vt_UINT8, S::st_S7_USInt};
    case DataType::UInt:
      return {V::vt_UINT16, S::st_S7_UInt};
    case DataType::UDInt:
      return {V::vt_UINT32, S::st_S7_UDInt};
    case DataType::ULInt:
      return {V::vt_UINT64, S::st_S7_ULInt};
    case DataType::Real:
      return {V::vt_FLOAT32, S::st_S7_Real};
    case DataType::LReal:
      return {V::vt_FLOAT64, S::st_S7_LReal};
    case DataType::Char:
      return {V::vt_CHAR8, S::st_S7_Char};
    case DataType::WChar:
      return {V::vt_CHAR16, S::st_S7_WChar};
    case DataType::String:
      return {V::vt_STRING8, S::st_S7_String};
    case DataType::WString:
      return {V::vt_STRING16, S::st_S7_WString};
    case DataType::Time:
      return {V::vt_INT32, S::st_S7_Time};
    case DataType::LTime:
      return {V::vt_INT64, S::st_S7_LTime};
    case DataType::S5Time:
    case DataType::Timer:  // deliberately: a timer's value is an S5TIME, and no other name of it can be
                           // converted
      return {V::vt_SYSTEM_SPECIFIC, S::st_S7_S5Time};
    case DataType::Date:
      return {V::vt_UINT16, S::st_S7_Date};
    case DataType::TimeOfDay:
      return {V::vt_UINT32, S::st_S7_Time_Of_Day};
    case DataType::LTimeOfDay:
      return {V::vt_UINT64, S::st_S7_LTOD};
    case DataType::DateAndTime:
      return {V::vt_SYSTEM_SPECIFIC, S::st_S7_Date_And_Time};
    case DataType::LDateTime:
      return {V::vt_UINT64, S::st_S7_LDT};
    case DataType::Dtl:
      return {V::vt_SYSTEM_SPECIFIC, S::st_S7_DTL};
    case DataType::Counter:
      return {V::vt_SYSTEM_SPECIFIC, S::st_S7_Counter};
    case DataType::Struct:
    case DataType::Opaque:
      break;
  }
  return {};
}

}  // namespace ostravel::standin
