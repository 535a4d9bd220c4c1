# ccache as the compiler's launcher, where it is installed. A precompiled header is taken as
# it was made (pch_defines, time_macros), and paths below the checkout count relative to the
# build folder, so that another checkout of the same sources hits as well. Comments count: the
# compiler knows the headers inside a precompiled one by their whole text, and takes those
# that differ in a comment for others.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      "${CMAKE_COMMAND}" -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros
      "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
      CCACHE_COMMENTS=1
      "${CCACHE}")
endif()
