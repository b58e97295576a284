# Shared by the recipes. A recipe is run by scripts/build-dependencies in an empty folder and installs into $PREFIX;
# its lines "version=" and "platforms=" are read by that script too.

. "$(dirname "${BASH_SOURCE[0]}")/../lib.sh"
. "$(dirname "${BASH_SOURCE[0]}")/archive.sh"

: "${PREFIX:?recipes are run by scripts/build-dependencies}"

# Standard error goes into the recipe's log; what the user should see goes past it.
step() { printf '==> %s\n' "$*" >&3; }

JOBS=$(nproc)
CFLAGS='-O2 -DNDEBUG'
if [ "$PLATFORM" = windows ]; then
  HOST=i686-w64-mingw32
  # The same instruction set and stack alignment as our own code.
  CFLAGS="$CFLAGS $(sed -n 's/^set(CMAKE_C_FLAGS_INIT "\(.*\)")$/\1/p' "$TOOLCHAIN")"
  CC=$HOST-gcc-posix AR=$HOST-ar
  cmake_arguments=("-DCMAKE_TOOLCHAIN_FILE=$TOOLCHAIN")
else
  CC=cc AR=ar
  cmake_arguments=()
fi
if command -v ccache >/dev/null; then
  CC="ccache $CC"
  cmake_arguments+=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
export CC AR

# cmake_install SOURCE ARGUMENT...: builds static libraries with the package's own CMake files.
cmake_install() {
  local source=$1
  shift
  cmake -S "$source" -B cmake-build -G Ninja "${cmake_arguments[@]}" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_C_FLAGS_RELEASE='-O2 -DNDEBUG' -DCMAKE_CXX_FLAGS_RELEASE='-O2 -DNDEBUG' \
    -DBUILD_SHARED_LIBS=OFF -DCMAKE_INSTALL_PREFIX="$PREFIX" -DCMAKE_INSTALL_LIBDIR=lib "$@"
  cmake --build cmake-build --target install
}

# static_library FILE SOURCE...: compiles C files with $CC $CFLAGS, for packages whose own build costs far more than
# their compilation.
static_library() {
  local library=$1 objects
  shift
  objects=$(mktemp -d "$PWD/objects.XXXXXX")
  # $CC and $CFLAGS are lists of words.
  printf '%s\0' "$@" | CFLAGS=$CFLAGS OBJECTS=$objects xargs -0 -n 1 -P "$JOBS" \
    sh -c '$CC $CFLAGS -c "$0" -o "$OBJECTS/$(echo "$0" | tr / _).o"'
  mkdir -p "$(dirname "$library")"
  $AR rcs "$library" "$objects"/*.o
}

# keep_licence NAME FILE...: the licence text goes where the program that links the library will look for it.
keep_licence() {
  local folder=$PREFIX/share/doc/$1
  shift
  mkdir -p "$folder"
  cat "$@" >"$folder/copyright"
}
