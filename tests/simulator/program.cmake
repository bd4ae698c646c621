# Tests of simulator/program; included by CMakeLists.txt of this folder.
add_executable(simulator_program_tests
  program_access_test.cpp
  program_assignment_test.cpp
  program_encoding_test.cpp
  program_fuzz_test.cpp
  program_generators_test.cpp
  program_initial_test.cpp
  program_instances_test.cpp
  program_json_test.cpp
  program_layout_test.cpp
  program_lexer_test.cpp
  program_literal_test.cpp
  program_parser_test.cpp
  program_paths_test.cpp
  program_sources_test.cpp
  program_systemtypes_test.cpp
  program_tags_test.cpp
  program_text_test.cpp
  program_textfile_test.cpp)
target_link_libraries(simulator_program_tests PRIVATE ostravel_program GTest::gmock GTest::gtest_main)
ostravel_discover_tests(simulator_program_tests)
