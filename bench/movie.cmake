px_bench(movie SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/movie_bench.cpp LIBS output)
target_compile_definitions(bench_movie PRIVATE PX_DEMO_FOLDER="${CMAKE_SOURCE_DIR}/resources/demo")
