tests/support/narravo-faulty-service -- sh -c 'curl -sS -d voice=fault-cut:100 "$NARRAVO_FAULTY_URL" >cut.wav'
