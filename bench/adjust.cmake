px_bench(adjust SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/adjust_bench.cpp LIBS image)
