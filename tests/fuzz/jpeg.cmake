# The capture command reading back a picture's file.
orvalen_fuzzer(jpeg orvalen_capture)
