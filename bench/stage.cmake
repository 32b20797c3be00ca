px_bench(stage SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/stage_bench.cpp LIBS ui Qt6::Widgets)
target_compile_definitions(bench_stage PRIVATE PX_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
