px_fuzzer(rlc SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/rlc_fuzzer.cpp LIBS image MAX_LEN 4098)
