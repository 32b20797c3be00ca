# Build helpers shared by every folder.
include(GoogleTest)
#
# px_library(<name> DIR <folder> INCLUDE_AS <prefix> [DEPS ...] [PRIVATE_DEPS ...])
#   A static library of every .cpp in <folder> and its sub-folders (ui/stage/, ui/main/).
#   Its headers are reached as "<prefix>/file.h" or "<prefix>/sub/file.h" through an include root
#   of its own, so a library sees only the headers of the libraries it links: an include that
#   goes the wrong way between layers fails to build.
#
# px_tests(DIR <folder> LIBS ...)
#   One test program per <name>_tests.cpp in <folder>, each test registered with CTest by name.
#   Files named *_ui_tests.cpp get a main() that starts Qt on the offscreen platform.

set(PX_WARNINGS -Wall -Wextra -Werror)

if(PX_SANITIZE)
  set(PX_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=undefined
                         -fno-sanitize=vptr -fno-omit-frame-pointer)
  add_compile_options(${PX_SANITIZER_FLAGS})
  add_link_options(-fsanitize=address,undefined)
  if(PX_FUZZ)
    # Coverage feedback for the fuzzers comes from every library, not only the target file.
    add_compile_options(-fsanitize=fuzzer-no-link)
  endif()
endif()

function(px_library name)
  cmake_parse_arguments(A "" "DIR;INCLUDE_AS" "DEPS;PRIVATE_DEPS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${A_DIR}/*.cpp)
  if(NOT sources)
    # A folder whose first source is still being written: an empty library keeps the tree building.
    set(sources ${CMAKE_BINARY_DIR}/empty_${name}.cpp)
    file(WRITE ${sources} "")
  endif()
  add_library(${name} STATIC ${sources})
  set(root ${CMAKE_BINARY_DIR}/include/${name})
  get_filename_component(parent ${root}/${A_INCLUDE_AS} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${A_DIR} ${root}/${A_INCLUDE_AS} SYMBOLIC)
  target_include_directories(${name} PUBLIC ${root})
  target_link_libraries(${name} PUBLIC ${A_DEPS} PRIVATE ${A_PRIVATE_DEPS})
  target_compile_options(${name} PRIVATE ${PX_WARNINGS})
endfunction()

set(PX_TEST_ENVIRONMENT
    QT_QPA_PLATFORM=offscreen
    QT_SCALE_FACTOR=1
    XDG_CONFIG_HOME=${CMAKE_BINARY_DIR}/test-config
    HOME=${CMAKE_BINARY_DIR}/test-home
    LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0
    UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
    PX_TEST_DATA=${CMAKE_SOURCE_DIR}/tests/data)

function(px_tests)
  cmake_parse_arguments(A "" "DIR" "LIBS" ${ARGN})
  file(GLOB test_sources CONFIGURE_DEPENDS ${A_DIR}/*_tests.cpp)
  foreach(source ${test_sources})
    get_filename_component(stem ${source} NAME_WE)
    add_executable(${stem} ${source})
    target_link_libraries(${stem} PRIVATE ${A_LIBS} px_test_support GTest::gtest GTest::gmock)
    if(stem MATCHES "_ui_tests$")
      target_link_libraries(${stem} PRIVATE px_ui_test_main)
    else()
      target_link_libraries(${stem} PRIVATE GTest::gtest_main)
    endif()
    target_compile_options(${stem} PRIVATE ${PX_WARNINGS})
    # Where a test finds the files the project ships (the demo show), given only to the tests
    # that use it: the others compile to the same objects in every checkout, so a compiler cache
    # serves them to a fresh clone. malformed_files.h reads the kept damaged inputs from there
    # when CTest does not say where they are.
    file(READ ${source} text)
    if(text MATCHES "PX_SOURCE_DIR|picture_files\\.h|malformed_files\\.h")
      target_compile_definitions(${stem} PRIVATE PX_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
    endif()
    # Properties handed to gtest_discover_tests go through a generated script that keeps only
    # the first entry of a list, so the environment is set by a script of our own that CTest
    # reads after the discovered tests are defined.
    gtest_discover_tests(${stem} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60)
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${stem}_environment.cmake)
    file(WRITE ${script}
         "if(${stem}_TESTS)\n"
         "  set_tests_properties(\${${stem}_TESTS} PROPERTIES ENVIRONMENT \"${PX_TEST_ENVIRONMENT}\")\n"
         "endif()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${script})
  endforeach()
endfunction()
