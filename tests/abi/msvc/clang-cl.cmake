# Compiles as the Microsoft compiler would, as far as this machine can tell: clang in Microsoft's mode with mingw's
# C, C++ and Windows headers and stand-ins for MFC. There is nothing to link with.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)

find_program(CLANG_CL NAMES clang-cl clang-cl-14 REQUIRED)
set(CMAKE_C_COMPILER "${CLANG_CL}")
set(CMAKE_CXX_COMPILER "${CLANG_CL}")
find_program(DO_NOTHING true REQUIRED)
foreach(tool IN ITEMS CMAKE_RC_COMPILER CMAKE_AR CMAKE_LINKER CMAKE_MT)
  set(${tool} "${DO_NOTHING}")
endforeach()
# What CMake finds out by linking.
set(CMAKE_C_COMPILER_FORCED TRUE)
set(CMAKE_CXX_COMPILER_FORCED TRUE)
set(CMAKE_CXX_COMPILE_FEATURES cxx_std_20)
set(CMAKE_CXX_STANDARD 20)

execute_process(COMMAND i686-w64-mingw32-g++-posix -print-file-name=include
  OUTPUT_VARIABLE gcc_headers OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
find_path(MINGW_HEADERS windows.h PATHS /usr/share/mingw-w64/include NO_DEFAULT_PATH REQUIRED)

# mingw's headers expect a compiler of their own family, which defines these. minimp3 would include clang's header of
# intrinsics, which excludes mingw's.
set(definitions -D__MINGW32__ -D_X86_ -D_ALLOCA_S_MARKER_SIZE=8 -D__declspec=__declspec -DMINIMP3_NO_SIMD)
set(target --target=i686-pc-windows-msvc -fms-compatibility-version=19.37 /clang:-fgnuc-version=12.0
  ${definitions} -Werror -imsvc "${CMAKE_CURRENT_LIST_DIR}/stand_in")
string(JOIN " " CMAKE_C_FLAGS_INIT ${target} -imsvc "${MINGW_HEADERS}")
string(JOIN " " CMAKE_CXX_FLAGS_INIT ${target}
  -imsvc "${gcc_headers}/c++" -imsvc "${gcc_headers}/c++/i686-w64-mingw32" -imsvc "${MINGW_HEADERS}")

# The headers of the dependencies that were built for mingw. Their libraries go by names that are not looked for here.
file(GLOB dependency_folders "${CMAKE_CURRENT_LIST_DIR}/../../../build/dependencies/windows/*")
list(APPEND CMAKE_PREFIX_PATH ${dependency_folders})
set(EspeakNG_LIBRARY "${DO_NOTHING}")
set(Soxr_LIBRARY "${DO_NOTHING}")
