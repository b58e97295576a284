scripts/install-packages && scripts/build-dependencies native && scripts/build native narravo-service
build/native/bin/narravo-service       # http://127.0.0.1:59125/a/speak, where the cloud engine looks for it
