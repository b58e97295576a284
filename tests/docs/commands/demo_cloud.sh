./narravo demo-cloud "Hello, world."  # starts it, speaks through it, stops it
