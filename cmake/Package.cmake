# What a developer gets: cmake --install makes the tree, the target "package" makes one ZIP of it.

include(CMakePackageConfigHelpers)

# A package is unpacked anywhere, so its folders have plain names on every system.
set(CMAKE_INSTALL_BINDIR bin)
set(package_dir lib/cmake/speech)

# bin: what a program needs to run
install(TARGETS speech lxapi EXPORT speechTargets
  RUNTIME DESTINATION bin
  ARCHIVE DESTINATION lib)
install(TARGETS narravo RUNTIME DESTINATION bin)
install(FILES lxapi/bundled/engines.ini DESTINATION bin)
install(DIRECTORY "${EspeakNG_DATA_DIR}/" DESTINATION bin/espeak-ng-data)

find_program(SOX_EXECUTABLE sox.exe REQUIRED)
install(PROGRAMS "${SOX_EXECUTABLE}" DESTINATION bin)

if(MINGW)
  # The C++ runtime is shared: an exception of the interface crosses from the DLL to its host.
  foreach(name IN ITEMS libstdc++-6.dll libgcc_s_dw2-1.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${name}"
      OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT IS_ABSOLUTE "${runtime}")
      message(FATAL_ERROR "The compiler has no ${name}")
    endif()
    # Nine tenths of it are debugging symbols.
    set(stripped "${PROJECT_BINARY_DIR}/runtime/${name}")
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/runtime")
    execute_process(COMMAND "${CMAKE_COMMAND}" -E env SOURCE_DATE_EPOCH=315532800
      "${CMAKE_STRIP}" --strip-unneeded -o "${stripped}" "${runtime}" COMMAND_ERROR_IS_FATAL ANY)
    install(PROGRAMS "${stripped}" DESTINATION bin)
  endforeach()
else()
  set(CMAKE_INSTALL_SYSTEM_RUNTIME_DESTINATION bin)
  set(CMAKE_INSTALL_MFC_LIBRARIES ON)
  include(InstallRequiredSystemLibraries)
endif()

# include, lib: what a program needs to be built
install(DIRECTORY include/speech DESTINATION include FILES_MATCHING PATTERN "*.h")
install(DIRECTORY framework DESTINATION include FILES_MATCHING PATTERN "*.h")
install(FILES lxapi/lxapi.h DESTINATION include/lxapi)
# What declares exported functions is public.
file(GLOB audio_headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/audio/*.h")
foreach(header IN LISTS audio_headers)
  file(STRINGS "${header}" exports REGEX SPEECH_API LIMIT_COUNT 1)
  if(exports)
    install(FILES "${header}" DESTINATION include/audio)
  endif()
endforeach()

install(EXPORT speechTargets NAMESPACE speech:: DESTINATION ${package_dir})
configure_package_config_file(cmake/speechConfig.cmake.in "${PROJECT_BINARY_DIR}/speechConfig.cmake"
  INSTALL_DESTINATION ${package_dir} PATH_VARS CMAKE_INSTALL_BINDIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/speechConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/speechConfig.cmake" "${PROJECT_BINARY_DIR}/speechConfigVersion.cmake"
  DESTINATION ${package_dir})

# samples, docs, licences
install(DIRECTORY samples DESTINATION .)
install(DIRECTORY docs DESTINATION .)
install(FILES README.md DESTINATION .)
install(FILES LICENSE DESTINATION licences RENAME speech.txt)
install(FILES cmake/licences.txt DESTINATION licences RENAME README.txt)
set(licence_roots ${CMAKE_PREFIX_PATH} /usr)
foreach(name IN ITEMS espeak-ng curl soxr minimp3 cli11 sox lame libgsm libogg libvorbis gcc-mingw-w64-base mingw-w64-common)
  find_file(licence_of_${name} NAMES "${name}/copyright" PATHS ${licence_roots} PATH_SUFFIXES share/doc
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  mark_as_advanced(licence_of_${name})
  if(licence_of_${name})
    install(FILES "${licence_of_${name}}" DESTINATION licences RENAME ${name}.txt)
  elseif(MINGW)
    message(FATAL_ERROR "The licence of ${name} was not found")
  endif()
endforeach()
# Most of those refer to these by name.
foreach(name IN ITEMS GPL-2 GPL-3 LGPL-2 LGPL-2.1 LGPL-3)
  if(EXISTS /usr/share/common-licenses/${name})
    install(FILES /usr/share/common-licenses/${name} DESTINATION licences RENAME ${name}.txt)
  endif()
endforeach()

find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(CPACK_GENERATOR External)
set(CPACK_EXTERNAL_ENABLE_STAGING ON)
set(CPACK_EXTERNAL_PACKAGE_SCRIPT "${PROJECT_SOURCE_DIR}/cmake/MakePackage.cmake")
set(CPACK_SPEECH_SOURCE_DIR "${PROJECT_SOURCE_DIR}")
set(CPACK_SPEECH_PYTHON "${Python3_EXECUTABLE}")
set(CPACK_PACKAGE_NAME speech)
set(CPACK_PACKAGE_FILE_NAME "speech-${PROJECT_VERSION}-windows-x86")
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
