# How test programs become tests.
#
#   ostravel_discover_tests(TARGET [PRIVATE_PROJECT] [OWN_PROCESS] [TEST_PREFIX TEXT] [PROPERTIES NAME VALUE...])
#
# Registers the GoogleTest program TARGET with CTest: a process a test. Where a start is dear, under a sanitizer or an
# emulator, a process runs a share of the program's tests instead.
#   PRIVATE_PROJECT  in a mount namespace with an empty /mnt/project; implies OWN_PROCESS
#   OWN_PROCESS      a process a test everywhere: they would disturb each other in one
#
#   ostravel_add_private_test(NAME TARGET [ARGUMENT...])
#
# Registers a whole program as one test, with a /mnt/project of its own.
include(GoogleTest)

set(OSTRAVEL_TEST_SHARES 4 CACHE STRING "Processes for a program's tests where a process a test is too dear")

function(ostravel_discover_tests target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "PRIVATE_PROJECT;OWN_PROCESS" "TEST_PREFIX" "PROPERTIES")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "ostravel_discover_tests(${target}): what is ${arg_UNPARSED_ARGUMENTS}?")
  endif()
  set(start_is_dear FALSE)
  if(OSTRAVEL_SANITIZE OR CMAKE_CROSSCOMPILING)
    set(start_is_dear TRUE)
  endif()

  if(arg_PRIVATE_PROJECT)
    set_target_properties(${target} PROPERTIES
      CROSSCOMPILING_EMULATOR "${PROJECT_SOURCE_DIR}/scripts/private-project;${CMAKE_CROSSCOMPILING_EMULATOR}")
  endif()
  if(arg_PRIVATE_PROJECT OR (arg_OWN_PROCESS AND start_is_dear))
    # Taken from the sources, so that the build itself needs neither namespace nor emulator.
    # Not from other folders' sources: CMake would depend on them under two names.
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources EXCLUDE REGEX "\\.\\./")
    gtest_add_tests(TARGET ${target} SOURCES ${sources} TEST_PREFIX "${arg_TEST_PREFIX}" TEST_LIST names)
    if(arg_PROPERTIES)
      set_tests_properties(${names} PROPERTIES ${arg_PROPERTIES})
    endif()
  elseif(start_is_dear)
    ostravel_add_shares(${target} "${arg_TEST_PREFIX}" "${arg_PROPERTIES}")
  else()
    # No values in the names: those of byte strings are not printable.
    gtest_discover_tests(${target}
      DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES TEST_PREFIX "${arg_TEST_PREFIX}" PROPERTIES ${arg_PROPERTIES})
  endif()
endfunction()

function(ostravel_add_shares target prefix properties)
  math(EXPR last "${OSTRAVEL_TEST_SHARES} - 1")
  foreach(share RANGE ${last})
    set(name "${prefix}${target}.${share}")
    add_test(NAME ${name} COMMAND ${target})
    if(properties)
      set_tests_properties(${name} PROPERTIES ${properties})
    endif()
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
      GTEST_TOTAL_SHARDS=${OSTRAVEL_TEST_SHARES} GTEST_SHARD_INDEX=${share})
    # It is a share's, and one test may take as long as the properties said.
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  endforeach()
endfunction()

function(ostravel_add_private_test name target)
  add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/scripts/private-project
    ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${target}> ${ARGN})
endfunction()
