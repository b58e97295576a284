# What a developer gets: cmake --install makes the tree, the target "package" builds what is in it and makes one ZIP.

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

if(SOX_EXECUTABLE)
  install(PROGRAMS "${SOX_EXECUTABLE}" DESTINATION bin)
endif()

if(MINGW)
  # The C++ runtime is shared: an exception of the interface crosses from the DLL to its host.
  foreach(name IN ITEMS libstdc++-6.dll libgcc_s_dw2-1.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${name}"
      OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT IS_ABSOLUTE "${runtime}")
      # A compiler that runs on Windows keeps them beside itself.
      cmake_path(GET CMAKE_CXX_COMPILER PARENT_PATH compiler_folder)
      set(runtime "${compiler_folder}/${name}")
    endif()
    if(NOT EXISTS "${runtime}")
      message(FATAL_ERROR "The compiler has no ${name}")
    endif()
    # Nine tenths of it are debugging symbols.
    set(stripped "${PROJECT_BINARY_DIR}/runtime/${name}")
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/runtime")
    execute_process(COMMAND "${CMAKE_COMMAND}" -E env SOURCE_DATE_EPOCH=315532800
      "${CMAKE_STRIP}" --strip-unneeded -o "${stripped}" "${runtime}" COMMAND_ERROR_IS_FATAL ANY)
    install(PROGRAMS "${stripped}" DESTINATION bin)
  endforeach()
elseif(CMAKE_HOST_WIN32)
  set(CMAKE_INSTALL_SYSTEM_RUNTIME_DESTINATION bin)
  set(CMAKE_INSTALL_MFC_LIBRARIES ON)
  include(InstallRequiredSystemLibraries)
endif()

# include, lib: what a program needs to be built
install(DIRECTORY include/ DESTINATION include)

# What an engine library exports, for those who write another
if(MSVC)
  install(FILES "${PROJECT_BINARY_DIR}/lxapi/bundled/lxapi.def" DESTINATION lib)
else()
  install(FILES lxapi/bundled/lxapi.def DESTINATION lib)
endif()
set(engine_exports lib/lxapi.def)

# What speech.dll exports to programs in C, for compilers that make import libraries of their own
install(FILES speech/speech.def DESTINATION lib)

install(EXPORT speechTargets NAMESPACE speech:: DESTINATION ${package_dir})
configure_package_config_file(cmake/speechConfig.cmake.in "${PROJECT_BINARY_DIR}/speechConfig.cmake"
  INSTALL_DESTINATION ${package_dir} PATH_VARS CMAKE_INSTALL_BINDIR engine_exports)
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
  elseif(CMAKE_CROSSCOMPILING AND MINGW)
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
set(speech_make_package "${Python3_EXECUTABLE}" "${PROJECT_SOURCE_DIR}/cmake/make_package.py" "${CMAKE_COMMAND}"
  "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}" $<CONFIG>)
set(speech_package "speech-${PROJECT_VERSION}-windows-x86.zip")
add_custom_target(package COMMAND ${speech_make_package} "${PROJECT_BINARY_DIR}/${speech_package}" VERBATIM)
add_dependencies(package speech lxapi narravo)
