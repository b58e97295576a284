# speech_public_headers: the headers that hosts and engine libraries include, relative to the source tree. What is
# packaged and what the reference describes is the same list. scripts/build configures anew when a header comes or goes;
# having every build look for new ones would take longer than most builds.

file(GLOB_RECURSE speech_public_headers RELATIVE "${PROJECT_SOURCE_DIR}"
  "${PROJECT_SOURCE_DIR}/include/*.h")
file(GLOB other_headers RELATIVE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/framework/*.h")
list(APPEND speech_public_headers ${other_headers})
