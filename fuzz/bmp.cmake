px_fuzzer(bmp SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/bmp_fuzzer.cpp LIBS image MAX_LEN 65536)
