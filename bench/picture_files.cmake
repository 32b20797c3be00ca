# Loading large picture files: a BMP through the program's own reader, a JPEG through the
# platform importer. The bench writes its own files (the JPEG with Qt).
px_bench(picture_files SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/picture_files_bench.cpp LIBS image Qt6::Gui)
