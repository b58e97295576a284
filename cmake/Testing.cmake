# speech_add_test(NAME SOURCES... LIBRARIES... [WRAPPER command...] [TIMEOUT seconds])
#
# One GoogleTest program, registered as one CTest test: under Wine a process costs far more than a test case.
# WRAPPER is a command that is put in front of the program (a sound server of its own, a display).

find_package(GTest REQUIRED)

function(speech_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;LIBRARIES;WRAPPER")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE speech_options ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
  set(capture)
  if(CMAKE_CROSSCOMPILING)
    set(capture "${PROJECT_SOURCE_DIR}/tests/support/capture-output")
  endif()
  add_test(NAME ${name}
    COMMAND ${capture} ${arg_WRAPPER} ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${name}> --gtest_brief=1)
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT})
  speech_share_machine(${name} ${arg_WRAPPER})
endfunction()

# speech_share_machine(NAME COMMAND...): what is heard, each with a sound server of its own, plays in real time and mostly
# waits: twice as many of those run at a time as of what computes, and they carry the label "heard".
function(speech_share_machine name)
  if("${ARGN}" MATCHES "with-sound-server")
    set_property(TEST ${name} APPEND PROPERTY LABELS heard)
  else()
    set_tests_properties(${name} PROPERTIES PROCESSORS 2)
  endif()
endfunction()
