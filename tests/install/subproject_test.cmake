# Configures a project that has these sources within it, and makes the object of its program and one
# of the library: their flags are right then, and the rest is known to build.
#   PROJECT the other project   SOURCES of this one   WORK scratch folder   CXX compiler
#   BY subdirectory or fetch   SHARED whether a shared library is asked for

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nstatus ${status}\n${out}${err}")
  endif()
endfunction()

file(REMOVE_RECURSE "${WORK}")
run("${CMAKE_COMMAND}" -G Ninja -S "${PROJECT}" -B "${WORK}" "-DTABULEX_SOURCES=${SOURCES}"
    "-DBY=${BY}" "-DBUILD_SHARED_LIBS=${SHARED}" "-DCMAKE_CXX_COMPILER=${CXX}"
    -DTABULEX_PCH=OFF)
run("${CMAKE_COMMAND}" --build "${WORK}" --target CMakeFiles/other_host.dir/main.cpp.o)
run("${CMAKE_COMMAND}" --build "${WORK}" --target "${SOURCES}/component/reader/OwnName.cpp^")
