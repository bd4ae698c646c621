# A quicker build of everything that does not ship: the headers that nearly every file reads are compiled once. They are read
# before a file's own, so this hides an include that is missing; the other builds show it.
#
# Include it after all targets have been made. The driver's own folders are left as they are.
option(OSTRAVEL_PRECOMPILED "Compile the headers of programs and tests once" OFF)
set(OSTRAVEL_PRECOMPILED_OPTIONS "" CACHE STRING "Compiler options for what is compiled with them, such as -O1")
set(OSTRAVEL_PRECOMPILED_TEST_OPTIONS "" CACHE STRING "The same for tests alone")
if(NOT OSTRAVEL_PRECOMPILED)
  return()
endif()

find_package(GTest REQUIRED)
find_package(CLI11 REQUIRED)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)

set(standard_headers
  <algorithm> <array> <atomic> <chrono> <cstdint> <cstring> <deque> <filesystem> <fstream> <functional> <iomanip> <map>
  <memory> <mutex> <optional> <set> <sstream> <stdexcept> <string> <string_view> <thread> <tuple> <unordered_map> <utility>
  <variant> <vector>)
file(WRITE ${PROJECT_BINARY_DIR}/precompiled.cpp "")
add_library(ostravel_precompiled_programs STATIC ${PROJECT_BINARY_DIR}/precompiled.cpp)
target_link_libraries(ostravel_precompiled_programs PRIVATE ostravel_options)
target_precompile_headers(ostravel_precompiled_programs PRIVATE ${standard_headers} <fmt/format.h> <nlohmann/json.hpp>)
add_library(ostravel_precompiled_tests STATIC ${PROJECT_BINARY_DIR}/precompiled.cpp)
target_link_libraries(ostravel_precompiled_tests PRIVATE ostravel_options)
target_precompile_headers(ostravel_precompiled_tests PRIVATE
  ${standard_headers} <fmt/format.h> <gmock/gmock.h> <gtest/gtest.h> <nlohmann/json.hpp>)
# Also for those that do without the library: the headers know what they were read with.
get_target_property(fmt_definitions fmt::fmt INTERFACE_COMPILE_DEFINITIONS)
set(options_programs ${OSTRAVEL_PRECOMPILED_OPTIONS})
set(options_tests ${OSTRAVEL_PRECOMPILED_OPTIONS} ${OSTRAVEL_PRECOMPILED_TEST_OPTIONS})
foreach(name programs tests)
  target_compile_options(ostravel_precompiled_${name} PRIVATE ${options_${name}})
  target_link_libraries(ostravel_precompiled_${name} PRIVATE
    Threads::Threads fmt::fmt nlohmann_json::nlohmann_json)
endforeach()
target_link_libraries(ostravel_precompiled_tests PRIVATE GTest::gmock)

# Whether it links GoogleTest, itself or through another of the project's libraries.
function(ostravel_links_googletest target result)
  get_target_property(libraries ${target} LINK_LIBRARIES)
  foreach(library IN LISTS libraries)
    if(library MATCHES "^GTest::")
      set(${result} TRUE PARENT_SCOPE)
      return()
    elseif(TARGET ${library})
      ostravel_links_googletest(${library} found)
      if(found)
        set(${result} TRUE PARENT_SCOPE)
        return()
      endif()
    endif()
  endforeach()
  set(${result} FALSE PARENT_SCOPE)
endfunction()

# g++ 12 forgets that what it sees in precompiled headers is the library's own (its bug 105651 in other clothes).
set(library_noise)
foreach(warning array-bounds stringop-overflow stringop-overread)
  list(APPEND library_noise $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-${warning}>)
endforeach()

# -fPIC: programs and libraries can share the headers only when they are compiled alike.
function(ostravel_precompile folder)
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  # What the bench measures with has options of its own, which the headers would have to share.
  list(FILTER targets EXCLUDE REGEX "^bench_")
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(NOT type MATCHES "^(EXECUTABLE|(STATIC|SHARED|MODULE|OBJECT)_LIBRARY)$")
      continue()
    endif()
    get_target_property(libraries ${target} LINK_LIBRARIES)
    if("fmt::fmt-header-only" IN_LIST libraries)
      continue()  # read with other definitions
    endif()
    ostravel_links_googletest(${target} is_test)
    set(name programs)
    if(is_test)
      set(name tests)
    endif()
    target_precompile_headers(${target} REUSE_FROM ostravel_precompiled_${name})
    target_compile_definitions(${target} PRIVATE ${fmt_definitions})
    target_compile_options(${target} PRIVATE -fPIC ${options_${name}} ${library_noise})
  endforeach()
  get_property(subfolders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(subfolder IN LISTS subfolders)
    ostravel_precompile(${subfolder})
  endforeach()
endfunction()

set(folders common ${OSTRAVEL_FOLDERS})
list(REMOVE_ITEM folders aglink symbolic driver)
foreach(folder IN LISTS folders)
  ostravel_precompile(${folder})
endforeach()
