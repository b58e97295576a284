bin\narravo voices
bin\narravo speak "Hello, world."
bin\narravo export hello.mp3 "Hello, world."
