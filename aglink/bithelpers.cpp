// SPDX-License-Identifier: MIT
// The four bit helpers of the library's interface, which need no library.
#include "aglink/AGLink40.h"

namespace {

constexpr agl_uint32_t AGL_CPP_BitMask[8] = {1, 2, 4, 8, 16, 32, 64, 128};

// Deliberately no range check: bit number 8 is bit 0 again.
agl_uint8_t mask(agl_int32_t bitNumber) {
  return static_cast<agl_uint8_t>(AGL_CPP_BitMask[bitNumber & 7]);
}

}  // namespace

agl_int32_t AGL_GetBit(agl_uint8_t Wert, agl_int32_t BitNr) {
  return (Wert & mask(BitNr)) != 0 ? 1 : 0;
}

agl_uint8_t AGL_SetBit(agl_uint8_t* Buff, agl_int32_t BitNr) {
  *Buff = static_cast<agl_uint8_t>(*Buff | mask(BitNr));
  return *Buff;
}

agl_uint8_t AGL_ResetBit(agl_uint8_t* Buff, agl_int32_t BitNr) {
  *Buff = static_cast<agl_uint8_t>(*Buff & ~mask(BitNr));
  return *Buff;
}

agl_uint8_t AGL_SetBitVal(agl_uint8_t* Buff, agl_int32_t BitNr, agl_int32_t Val) {
  return Val != 0 ? AGL_SetBit(Buff, BitNr) : AGL_ResetBit(Buff, BitNr);
}
