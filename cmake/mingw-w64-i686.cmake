# Cross-builds for 32-bit Windows with mingw-w64 (POSIX threads flavour) and runs what it built under Wine.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)

set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

# The compiler's own default is x87 arithmetic. Windows on i386 keeps the stack aligned to 4 bytes only, so every
# function that a host, a callback or a new thread enters must align it again before SSE code runs.
set(CMAKE_C_FLAGS_INIT "-march=pentium4 -msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT}")

# Cross-built libraries, one folder each; scripts/build-dependencies links them here from its cache.
file(GLOB dependency_folders "${CMAKE_CURRENT_LIST_DIR}/../build/dependencies/windows/*")
list(APPEND CMAKE_PREFIX_PATH ${dependency_folders})
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32 ${dependency_folders})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run")
