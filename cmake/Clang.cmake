# clang up to 14 lacks what std::source_location of the library asks the compiler for.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 15)
  include_directories(SYSTEM "${PROJECT_SOURCE_DIR}/cmake/clang-14")
endif()
