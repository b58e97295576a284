./narravo speak "Hello, world."     # installs and builds what is missing, then speaks
