// SPDX-License-Identifier: MIT
// Version, error texts, statistics.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>

#include "simulator/standin/aglink.h"
#include "simulator/standin/connection.h"
#include "simulator/standin/device.h"
#include "simulator/standin/errors.h"
#include "simulator/standin/handles.h"
#include "simulator/standin/statistics.h"

using namespace ostravel::standin;

extern "C" {

void AGL_GetVersion(agl_int32_t* Major, agl_int32_t* Minor) {
  if (Major != nullptr) *Major = 0;
  if (Minor != nullptr) *Minor = 1;
}

agl_int32_t AGL_GetMaxDevices(void) {
  return kDevices;
}

agl_ulong32_t AGL_GetTickCount(void) {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<agl_ulong32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

agl_int32_t AGL_GetErrorMsg(agl_int32_t ErrorNr, agl_char8_t* Msg, agl_int32_t Len) {
  return guarded([&] {
    require(Msg != nullptr && Len > 0, Error::InvalidParameter);
    const auto known = text_of(ErrorNr);
    std::array<char, 32> unknown{};
    std::snprintf(unknown.data(), unknown.size(), "unknown error 0x%08X", static_cast<unsigned>(ErrorNr));
    const std::string_view text = known.value_or(unknown.data());
    const auto length = std::min(text.size(), static_cast<std::size_t>(Len) - 1);
    std::memcpy(Msg, text.data(), length);
    Msg[length] = '\0';
    require(known.has_value(), Error::InvalidParameter);
  });
}

void agl_standin_statistics(agl_standin_statistics_t* statistics) {
  if (statistics == nullptr) return;
  const auto counts = handles().counts();
  const auto& counted = traffic();
  *statistics = {.live_roots = counts.roots,
                 .live_nodes = counts.nodes,
                 .live_accesses = counts.accesses,
                 .double_frees = counts.double_frees,
                 .invalid_frees = counts.invalid_frees,
                 .open_connections = counted.open,
                 .connections = counted.connections,
                 .read_jobs = counted.read_jobs,
                 .write_jobs = counted.write_jobs,
                 .items_read = counted.items_read,
                 .items_written = counted.items_written,
                 .bytes_sent = counted.bytes_sent,
                 .bytes_received = counted.bytes_received,
                 .uploads = counted.uploads,
                 .released_nodes = counts.released_nodes,
                 .nanoseconds_here = agl_standin_nanoseconds_here()};
}

std::uint64_t agl_standin_nanoseconds_here(void) {
  return static_cast<std::uint64_t>(Stay::spent().count());
}

std::uint64_t agl_standin_release_nodes(void) {
  return handles().release_nodes();
}
}
