# clang-tidy beside the compiler, in the presets lint-windows and lint-native: ninja knows what has changed since a file
# passed.

# Changed rules are a reason to check everything again.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/.clang-tidy")
file(SHA256 "${PROJECT_SOURCE_DIR}/.clang-tidy" rules)
set(CMAKE_CXX_CLANG_TIDY clang-tidy --quiet --extra-arg=-DLINT_RULES_${rules}
  --extra-arg=-Wno-unknown-warning-option)  # of the compiler that builds

if(MINGW)
  # clang reads the cross compiler's C++ library and Windows headers, with its own intrinsics in place of GCC's. The
  # steps are for tables that are made at compile time.
  list(APPEND CMAKE_CXX_CLANG_TIDY --extra-arg=--target=i686-w64-windows-gnu --extra-arg=-nostdinc++
    --extra-arg=-fconstexpr-steps=20000000)
  foreach(folder IN LISTS CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES)
    if(NOT folder MATCHES "/include-fixed$|/gcc/.*/include$")
      list(APPEND CMAKE_CXX_CLANG_TIDY "--extra-arg=-isystem${folder}")
    endif()
  endforeach()
endif()
