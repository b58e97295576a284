# The host program that the README shows is compiled as it stands there, and must speak.

set(readme "${PROJECT_SOURCE_DIR}/README.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${readme}")
file(READ "${readme}" readme_text)
if(NOT readme_text MATCHES "```cpp\n([^`]+)```")
  message(FATAL_ERROR "README.md shows no C++ program")
endif()
file(CONFIGURE OUTPUT readme_example.cpp CONTENT "${CMAKE_MATCH_1}" @ONLY)

add_executable(readme_example "${CMAKE_CURRENT_BINARY_DIR}/readme_example.cpp")
target_link_libraries(readme_example PRIVATE speech_options speech)
add_test(NAME readme_example_is_heard
  COMMAND "${PROJECT_SOURCE_DIR}/scripts/with-sound-server" ${Python3_EXECUTABLE}
    "${CMAKE_CURRENT_SOURCE_DIR}/readme_example_is_heard.py" ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:readme_example>)
set_tests_properties(readme_example_is_heard PROPERTIES TIMEOUT 240 ENVIRONMENT PYTHONDONTWRITEBYTECODE=1)
