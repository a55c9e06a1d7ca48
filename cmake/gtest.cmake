# GoogleTest from its source package, built for the target at hand and without the flags of our own
# code: instrumented by the sanitizers, it alone would take a minute.
set(PXB_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest source tree")
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
add_subdirectory(${PXB_GTEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
target_compile_options(gtest PRIVATE -O0)  # it takes longer to compile than to run
include(GoogleTest)
