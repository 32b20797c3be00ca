# Seeds: every picture reader's corpus, so each format's branch starts from files it takes.
px_fuzzer(load SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/load_fuzzer.cpp LIBS image MAX_LEN 1048576
          SEEDS_FROM bmp tga tif psd)
