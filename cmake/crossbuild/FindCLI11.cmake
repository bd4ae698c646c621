# The build machine's headers: see cmake/crossbuild.cmake.
ostravel_header_library(CLI11::CLI11 CLI)
