# The build machine's headers: see cmake/crossbuild.cmake.
ostravel_header_library(tomlplusplus::tomlplusplus toml++)
