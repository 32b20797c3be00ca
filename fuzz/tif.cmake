px_fuzzer(tif SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/tif_fuzzer.cpp LIBS image MAX_LEN 65536)
