# The build machine's headers: see cmake/crossbuild.cmake.
ostravel_header_library(nlohmann_json::nlohmann_json nlohmann)
