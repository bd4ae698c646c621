// SPDX-License-Identifier: MIT
// The closed communication library as the driver sees it: every library function under its own name, callable
// as if the library were linked. The first call loads the library; a call that cannot reach its function
// returns the failure value that functions.def names. Nothing needs to be initialised, nothing throws of its
// own accord, and any thread may make the first call; unloading while another thread is inside a function is
// not supported.
#ifndef OSTRAVEL_AGLINK_AGLINK40_H_
#define OSTRAVEL_AGLINK_AGLINK40_H_

#include "aglink/aglenums.h"
#include "aglink/agltypes.h"

#define AGL_EXPORT __attribute__((visibility("default")))

extern "C" {

// Opens the library by its file name through the dynamic linker's search path, else from the fixed place in
// the project folder, and resolves its functions. Prints a banner. Returns 1, or -1 when neither could be
// opened. An earlier handle is not closed: every call adds one to the library's reference count.
AGL_EXPORT agl_int32_t LoadDll();

// The same for one given file only, path being its name (not null), without the banner.
AGL_EXPORT agl_int32_t LoadDllByPath(const char* path);

// Resolves all functions again from the library that is open, printing "loadfunction 2". Returns 1, also when
// names are missing (their pointers become null), or -1 without touching a pointer when no library is open.
AGL_EXPORT agl_int32_t LoadFunctions();

// The functions. Those declared with (...) have parameters that this project does not know: cast the address
// to the type wanted before calling. Beside them the ones answered here: AGL_UnloadDyn closes the library
// once and clears all pointers; the bit helpers use only the lowest three bits of BitNr and return the new
// byte (AGL_GetBit the bit, 0 or 1).
#define AGL_FUNCTION(Result, Name, Failure, Lookup, Parameters) AGL_EXPORT Result Name Parameters;
#define AGL_LOCAL_FUNCTION(Result, Name, Parameters) AGL_EXPORT Result Name Parameters;
#include "aglink/functions.def"

// The library's own function behind each, null while it is not resolved. Look them up with dlsym from outside
// the driver: a program that refers to one at link time may get a copy that is never filled.
#define AGL_FUNCTION(Result, Name, Failure, Lookup, Parameters) extern AGL_EXPORT decltype(&(Name)) p##Name;
#define AGL_LOCAL_FUNCTION(Result, Name, Parameters) extern AGL_EXPORT decltype(&(Name)) p##Name;
#include "aglink/functions.def"

}  // extern "C"

#endif  // OSTRAVEL_AGLINK_AGLINK40_H_
