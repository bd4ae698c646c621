// SPDX-License-Identifier: MIT
// Devices, parameters, connections, passwords.
#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "simulator/standin/aglink.h"
#include "simulator/standin/device.h"
#include "simulator/standin/errors.h"

using namespace ostravel::standin;

extern "C" {

agl_int32_t AGL_SetParas(agl_int32_t DevNr, agl_int32_t ParaType, void* Para, agl_int32_t Len) {
  return guarded(
      [&] { device(DevNr).set_parameters(ParaType, static_cast<const std::uint8_t*>(Para), Len); });
}

agl_int32_t AGL_GetParas(agl_int32_t DevNr, agl_int32_t ParaType, void* Para, agl_int32_t Len) {
  return guarded([&] { device(DevNr).get_parameters(ParaType, static_cast<std::uint8_t*>(Para), Len); });
}

agl_int32_t AGL_SetDevType(agl_int32_t DevNr, agl_int32_t DevType) {
  return guarded([&] { device(DevNr).set_type(DevType); });
}

agl_int32_t AGL_OpenDevice(agl_int32_t DevNr) {
  return guarded([&] { device(DevNr).open(); });
}

agl_int32_t AGL_CloseDevice(agl_int32_t DevNr) {
  return guarded([&] { device(DevNr).close(); });
}

agl_int32_t AGL_DialUp(agl_int32_t DevNr, agl_int32_t, agl_ptrdiff_t) {
  return guarded([&] { device(DevNr).dial_up(); });
}

agl_int32_t AGL_HangUp(agl_int32_t DevNr, agl_int32_t, agl_ptrdiff_t) {
  return guarded([&] { device(DevNr).hang_up(); });
}

agl_int32_t AGL_InitAdapter(agl_int32_t DevNr, agl_int32_t, agl_ptrdiff_t) {
  return guarded([&] { device(DevNr).initialise_adapter(); });
}

agl_int32_t AGL_ExitAdapter(agl_int32_t DevNr, agl_int32_t, agl_ptrdiff_t) {
  return guarded([&] { device(DevNr).exit_adapter(); });
}

agl_int32_t AGL_PLCConnectEx(agl_int32_t DevNr, agl_int32_t PlcNr, agl_int32_t, agl_int32_t,
                             agl_int32_t* ConnNr, agl_int32_t Timeout, agl_ptrdiff_t) {
  return guarded([&] {
    require(ConnNr != nullptr, Error::InvalidParameter);
    const auto position = device(DevNr).connect(PlcNr, Timeout);
    *ConnNr = DevNr + kDevices * static_cast<agl_int32_t>(position);
  });
}

agl_int32_t AGL_PLCDisconnect(agl_int32_t ConnNr, agl_int32_t, agl_ptrdiff_t) {
  return guarded([&] {
    const auto place = place_of(ConnNr);
    place.device.disconnect(place.position);
  });
}

agl_int32_t AGL_ReadMLFBNr(agl_int32_t ConnNr, void* MLFB, agl_int32_t Timeout, agl_ptrdiff_t) {
  return guarded([&] {
    require(MLFB != nullptr, Error::InvalidParameter);
    const auto place = place_of(ConnNr);
    const auto timeout = effective_timeout(Timeout, place.device.parameter_timeout());
    const auto number = place.device.connection(place.position)->order_number(timeout);
    std::array<char, 21> text{};
    number.copy(text.data(), text.size() - 1);
    std::memcpy(MLFB, text.data(), text.size());
  });
}

agl_int32_t AGL_SetPassword(agl_int32_t ConnNr, const agl_char8_t* Password, agl_int32_t Timeout,
                            agl_ptrdiff_t) {
  return guarded([&] {
    require(Password != nullptr, Error::InvalidParameter);
    const auto place = place_of(ConnNr);
    const auto timeout = effective_timeout(Timeout, place.device.parameter_timeout());
    place.device.connection(place.position)->give_password(Password, timeout);
  });
}
}
