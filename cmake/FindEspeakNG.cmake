# Finds eSpeak NG: the target EspeakNG::EspeakNG and EspeakNG_DATA_DIR, the folder of its voices and dictionaries
# (also the target's property ESPEAK_NG_DATA_DIR).
#
# A static library is expected: consumers see LIBESPEAK_NG_EXPORT, without which its header would import from a DLL.

find_path(EspeakNG_INCLUDE_DIR NAMES espeak-ng/speak_lib.h)
find_library(EspeakNG_LIBRARY NAMES espeak-ng libespeak-ng)
# Built with its own CMake files, it has its character tables in a library beside it.
cmake_path(GET EspeakNG_LIBRARY PARENT_PATH EspeakNG_LIBRARY_DIR)
find_library(EspeakNG_UCD_LIBRARY NAMES ucd PATHS "${EspeakNG_LIBRARY_DIR}" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)

# The data must match the library's version, so it is looked for beside the header and nowhere else.
cmake_path(GET EspeakNG_INCLUDE_DIR PARENT_PATH EspeakNG_PREFIX)
find_path(EspeakNG_DATA_DIR NAMES phontab
  PATHS "${EspeakNG_PREFIX}"
  PATH_SUFFIXES share/espeak-ng-data lib/espeak-ng-data "lib/${CMAKE_LIBRARY_ARCHITECTURE}/espeak-ng-data"
  NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(EspeakNG
  REQUIRED_VARS EspeakNG_LIBRARY EspeakNG_INCLUDE_DIR EspeakNG_DATA_DIR
  REASON_FAILURE_MESSAGE "scripts/build-dependencies builds it (with the argument \"native\" for this machine)")
mark_as_advanced(EspeakNG_INCLUDE_DIR EspeakNG_LIBRARY EspeakNG_UCD_LIBRARY EspeakNG_DATA_DIR)

if(EspeakNG_FOUND AND NOT TARGET EspeakNG::EspeakNG)
  add_library(EspeakNG::EspeakNG UNKNOWN IMPORTED)
  set_target_properties(EspeakNG::EspeakNG PROPERTIES
    IMPORTED_LOCATION "${EspeakNG_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${EspeakNG_INCLUDE_DIR}"
    INTERFACE_COMPILE_DEFINITIONS LIBESPEAK_NG_EXPORT
    INTERFACE_LINK_LIBRARIES "$<$<BOOL:${EspeakNG_UCD_LIBRARY}>:${EspeakNG_UCD_LIBRARY}>;$<$<PLATFORM_ID:Windows>:advapi32>;$<$<NOT:$<PLATFORM_ID:Windows>>:m>"
    ESPEAK_NG_DATA_DIR "${EspeakNG_DATA_DIR}")
endif()
