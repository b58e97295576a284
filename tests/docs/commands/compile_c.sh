gcc -I include -o bin/hello.exe samples/console_c/main.c lib/libspeech.dll.a
