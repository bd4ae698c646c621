# What a build for another processor needs besides its compiler, whichever toolchain file names that. The libraries around the
# driver are headers, and the build machine's packages serve; GoogleTest is built from its sources.
list(PREPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/crossbuild)

# A folder with these headers and no others: the build machine's own /usr/include is for its own processor.
set(OSTRAVEL_HEADERS /usr/include CACHE PATH "Where the header libraries of programs and tests lie")
set(header_folder ${PROJECT_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${header_folder})
foreach(header CLI asio asio.hpp fmt msgpack msgpack.h msgpack.hpp nlohmann toml++)
  if(EXISTS ${OSTRAVEL_HEADERS}/${header})
    file(CREATE_LINK ${OSTRAVEL_HEADERS}/${header} ${header_folder}/${header} SYMBOLIC)
  endif()
endforeach()
target_include_directories(ostravel_options SYSTEM INTERFACE ${header_folder})
# g++ 12 sees texts written past their ends in "text" + std::string that are not (its bug 105651 again).
target_compile_options(ostravel_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-array-bounds>)

# For a find module: the header library as an interface target. The headers are there for every target anyway.
function(ostravel_header_library target header)
  set(found FALSE)
  if(EXISTS ${PROJECT_BINARY_DIR}/headers/${header})
    set(found TRUE)
    if(NOT TARGET ${target})
      add_library(${target} INTERFACE IMPORTED GLOBAL)
      target_include_directories(${target} SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/headers)
      target_compile_definitions(${target} INTERFACE ${ARGN})
    endif()
  endif()
  set(${CMAKE_FIND_PACKAGE_NAME}_FOUND ${found} PARENT_SCOPE)
endfunction()

# What the target's own packages give, unpacked: ncurses.
set(OSTRAVEL_TARGET_PACKAGES "" CACHE PATH "Folder with the target's usr/include and usr/lib, besides the compiler's own")
if(OSTRAVEL_TARGET_PACKAGES)
  list(PREPEND CMAKE_PREFIX_PATH ${OSTRAVEL_TARGET_PACKAGES}/usr)
endif()

# Tests start programs, and those start others. With this each of them is a script that starts the emulator, so that all of
# them run without the kernel's help, and nothing else needs to know. Not for a build that is to be installed.
option(OSTRAVEL_EMULATED "Make every program start under CMAKE_CROSSCOMPILING_EMULATOR by itself" OFF)
if(OSTRAVEL_EMULATED)
  string(JOIN " " emulator ${CMAKE_CROSSCOMPILING_EMULATOR})
  foreach(language C CXX)
    list(APPEND CMAKE_${language}_LINK_EXECUTABLE "${CMAKE_CURRENT_LIST_DIR}/crossbuild/emulated <TARGET> ${emulator}")
  endforeach()
  unset(CMAKE_CROSSCOMPILING_EMULATOR)
endif()

# Made here, so that it lies in no folder of the project.
find_package(GTest QUIET)
