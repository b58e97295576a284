bin\narravo dict check samples\dictionaries\words.csv
bin\narravo export --dict samples\dictionaries\words.csv hello.wav "See www."
