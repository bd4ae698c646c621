# The build machine's headers: see cmake/crossbuild.cmake.
ostravel_header_library(fmt::fmt fmt FMT_HEADER_ONLY=1)
ostravel_header_library(fmt::fmt-header-only fmt FMT_HEADER_ONLY=1)
