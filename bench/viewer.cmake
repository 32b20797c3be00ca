px_bench(viewer SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/viewer_bench.cpp LIBS ui Qt6::Widgets)
target_compile_definitions(bench_viewer PRIVATE PX_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
