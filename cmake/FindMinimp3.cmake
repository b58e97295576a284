# Finds the header of minimp3: the target Minimp3::minimp3. Some packages hold a header that only C++ compiles.

find_path(Minimp3_INCLUDE_DIR NAMES minimp3.h PATH_SUFFIXES minimp3)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Minimp3
  REQUIRED_VARS Minimp3_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "scripts/build-dependencies fetches it (with the argument \"native\" for this machine)")
mark_as_advanced(Minimp3_INCLUDE_DIR)

if(Minimp3_FOUND AND NOT TARGET Minimp3::minimp3)
  add_library(Minimp3::minimp3 INTERFACE IMPORTED)
  set_target_properties(Minimp3::minimp3 PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${Minimp3_INCLUDE_DIR}")
endif()
