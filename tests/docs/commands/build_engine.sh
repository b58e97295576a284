cmake -S samples/engine_library -B build/engine_library
cmake --build build/engine_library
