// SPDX-License-Identifier: MIT
// A library that exports every function of functions.def, and tells a listener what it was called with.
// Compiled with -D<function>=<other name>, it lacks that function.
#include <cstddef>

#include "aglink/aglenums.h"
#include "aglink/agltypes.h"
#include "tests/aglink/fakes/fakelog.h"

#define FAKE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

FakeListener listener = nullptr;

void tell(const char* name, const FakeArguments& arguments) {
  if (listener != nullptr) listener(name, arguments);
}

}  // namespace

FAKE_EXPORT void fakeListen(FakeListener newListener);
FAKE_EXPORT void fakeListen(FakeListener newListener) {
  listener = newListener;
}

#define FAKE_FUNCTION(Result, Name)                                                                       \
  FAKE_EXPORT Result Name(std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t,           \
                          std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t, double,   \
                          double, double, double, double, double, double, double, double, double);        \
  FAKE_EXPORT Result Name(std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d, std::int64_t e, \
                          std::int64_t f, std::int64_t g, std::int64_t h, std::int64_t i, std::int64_t j, \
                          double k, double l, double m, double n, double o, double p, double q, double r, \
                          double s, double t) {                                                           \
    tell(#Name, {{a, b, c, d, e, f, g, h, i, j}, {k, l, m, n, o, p, q, r, s, t}});                        \
    return fakeResult<Result>(#Name);                                                                     \
  }

// The reporting functions are known in full, and so are their fakes.
FAKE_EXPORT agl_int32_t AGL_GetParas(agl_int32_t a, agl_int32_t b, void* c, agl_int32_t d);
FAKE_EXPORT agl_int32_t AGL_GetParas(agl_int32_t a, agl_int32_t b, void* c, agl_int32_t d) {
  tell("AGL_GetParas", {{a, b, std::bit_cast<std::int64_t>(c), d}, {}});
  return fakeResult<agl_int32_t>("AGL_GetParas");
}
FAKE_EXPORT agl_int32_t AGL_SetDevType(agl_int32_t a, agl_int32_t b);
FAKE_EXPORT agl_int32_t AGL_SetDevType(agl_int32_t a, agl_int32_t b) {
  tell("AGL_SetDevType", {{a, b}, {}});
  return fakeResult<agl_int32_t>("AGL_SetDevType");
}

#define AGL_FUNCTION(Result, Name, Failure, Lookup, Parameters) FAKE_FUNCTION(Result, Name)
#define AGL_REPORTING_FUNCTION(Result, Name, Failure, Lookup, Parameters)
#define AGL_LOCAL_FUNCTION(Result, Name, Parameters) FAKE_FUNCTION(Result, Name)
#include "aglink/functions.def"
