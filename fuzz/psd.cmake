px_fuzzer(psd SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/psd_fuzzer.cpp LIBS image MAX_LEN 65536)
