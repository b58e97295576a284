# speech_options: what every target of ours is compiled with.

add_library(speech_options INTERFACE)
target_compile_features(speech_options INTERFACE cxx_std_20)
target_include_directories(speech_options INTERFACE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/include")

if(MSVC)
  target_compile_options(speech_options INTERFACE /W4 /permissive- /utf-8 /arch:SSE2)
  # The interface's classes export members that are MFC's classes.
  target_compile_options(speech_options INTERFACE /wd4251 /wd4275)
  # The standard's own functions, which this run-time calls unsafe.
  target_compile_definitions(speech_options INTERFACE _CRT_SECURE_NO_WARNINGS _CRT_NONSTDC_NO_WARNINGS)
  # MFC in a DLL, as the run-time is. Its header must come before windows.h wherever that is included.
  set(CMAKE_MFC_FLAG 2)
  target_compile_definitions(speech_options INTERFACE _AFXDLL)
  target_compile_options(speech_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:/FIafxwin.h>)
else()
  target_compile_options(speech_options INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)
endif()

if(MINGW)
  # The linker's time stamp would make every build different.
  target_link_options(speech_options INTERFACE -Wl,--no-insert-timestamp $<$<CONFIG:Release>:-s>)
endif()

if(WIN32)
  target_compile_definitions(speech_options INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 WINVER=0x0601)
endif()

if(SPEECH_HARDENED)
  # Trap mode needs no run-time library, which mingw does not have.
  target_compile_definitions(speech_options INTERFACE _GLIBCXX_ASSERTIONS)
  target_compile_options(speech_options INTERFACE
    -fstack-protector-strong -fsanitize=undefined -fsanitize-undefined-trap-on-error)
  target_link_options(speech_options INTERFACE -fstack-protector-strong)
endif()

if(SPEECH_SANITIZE)
  target_compile_options(speech_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(speech_options INTERFACE -fsanitize=address,undefined)
endif()

if(SPEECH_FUZZ)
  target_compile_options(speech_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(speech_options INTERFACE -fsanitize=address,undefined)
endif()
