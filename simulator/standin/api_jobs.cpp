// SPDX-License-Identifier: MIT
// Reading and writing.
#include <span>

#include "simulator/standin/aglink.h"
#include "simulator/standin/device.h"
#include "simulator/standin/errors.h"

using namespace ostravel::standin;

namespace {

using Job = void (Connection::*)(std::span<SymbolicRW_t>, Milliseconds);

agl_int32_t run(Job job, agl_int32_t connection, SymbolicRW_t* items, agl_int32_t count,
                agl_int32_t* plc_error, agl_int32_t timeout) {
  const auto result = guarded([&] {
    require(count >= 0 && static_cast<std::size_t>(count) <= ostravel::wire::kMaxItems,
            Error::InvalidParameter);
    require(items != nullptr || count == 0, Error::InvalidParameter);
    const auto place = place_of(connection);
    const auto target = place.device.connection(place.position);
    const auto limit = effective_timeout(timeout, place.device.parameter_timeout());
    (*target.*job)(std::span(items, static_cast<std::size_t>(count)), limit);
  });
  if (plc_error != nullptr) *plc_error = 0;  // the simulated PLC reports nothing beyond the job's result
  return result;
}

}  // namespace

extern "C" {

agl_int32_t AGL_Symbolic_ReadMixEx(agl_int32_t ConnNr, SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError,
                                   agl_int32_t Timeout, agl_ptrdiff_t) {
  return run(&Connection::read, ConnNr, RW, Num, SError, Timeout);
}

agl_int32_t AGL_Symbolic_WriteMixEx(agl_int32_t ConnNr, SymbolicRW_t* RW, agl_int32_t Num,
                                    agl_int32_t* SError, agl_int32_t Timeout, agl_ptrdiff_t) {
  return run(&Connection::write, ConnNr, RW, Num, SError, Timeout);
}
}
