px_fuzzer(tga SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/tga_fuzzer.cpp LIBS image MAX_LEN 65536)
