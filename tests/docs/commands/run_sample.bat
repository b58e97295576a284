set PATH=%CD%\bin;%PATH%
build\console_cpp\console_cpp "Hello, world."
