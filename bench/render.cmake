px_bench(render SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/render_bench.cpp LIBS doc)
