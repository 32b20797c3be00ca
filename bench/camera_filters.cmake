px_bench(camera_filters SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/camera_filters_bench.cpp LIBS image)
