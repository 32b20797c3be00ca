px_fuzzer(settings SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/settings_fuzzer.cpp LIBS platform_ini MAX_LEN 4096)
