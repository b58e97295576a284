cmake -S samples/console_cpp -B build/console_cpp
cmake --build build/console_cpp
