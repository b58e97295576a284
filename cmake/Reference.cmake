# The target "reference": HTML of the public headers in the build folder's reference/index.html.

find_program(DOXYGEN doxygen)
mark_as_advanced(DOXYGEN)
if(DOXYGEN)
  configure_file(cmake/Doxyfile.in Doxyfile @ONLY)
  add_custom_target(reference COMMAND "${DOXYGEN}" "${PROJECT_BINARY_DIR}/Doxyfile" VERBATIM)
endif()
