# What anybody on the network can send to the stream server.
orvalen_fuzzer(request orvalen_stream_server)
orvalen_fuzzer(query orvalen_stream_server)
