px_fuzzer(show SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/show_fuzzer.cpp LIBS doc MAX_LEN 65536)
