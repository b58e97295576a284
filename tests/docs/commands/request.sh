curl -o hello.wav http://127.0.0.1:59125/a/speak -d key=9e4b1c7a2d6f8e0a3b5c7d9f1e2a4c6b \
  -d "voice=English (America)+f2" --data-urlencode "text=Hello, world."
