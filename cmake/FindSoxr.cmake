# Finds the SoX resampler library: the target Soxr::soxr.

find_package(soxr CONFIG QUIET)
if(TARGET Soxr::soxr)
  set(Soxr_FOUND TRUE)
  return()
endif()

find_path(Soxr_INCLUDE_DIR NAMES soxr.h)
find_library(Soxr_LIBRARY NAMES soxr libsoxr)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Soxr
  REQUIRED_VARS Soxr_LIBRARY Soxr_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "scripts/build-dependencies builds it for Windows, Debian has it as libsoxr-dev")
mark_as_advanced(Soxr_INCLUDE_DIR Soxr_LIBRARY)

if(Soxr_FOUND AND NOT TARGET Soxr::soxr)
  add_library(Soxr::soxr UNKNOWN IMPORTED)
  set_target_properties(Soxr::soxr PROPERTIES
    IMPORTED_LOCATION "${Soxr_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Soxr_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES "$<$<NOT:$<PLATFORM_ID:Windows>>:m>")
endif()
