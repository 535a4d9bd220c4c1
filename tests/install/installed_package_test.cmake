# Installs the build into a folder of its own, moves that folder, builds the example
# host against it by CMake and by pkg-config, and runs both on a small file.
#   BUILD build folder   HOST the host's sources   WORK scratch folder
#   CXX compiler   LIBDIR of the installation

# Runs a command that must succeed; its standard output goes to the variable.
function(run output)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nstatus ${status}\n${out}${err}")
  endif()
  set(${output} "${out}" PARENT_SCOPE)
endfunction()

function(expect_text what found expected)
  if(NOT found STREQUAL expected)
    message(FATAL_ERROR "${what}: expected\n${expected}\nfound\n${found}")
  endif()
endfunction()

file(REMOVE_RECURSE "${WORK}/first" "${WORK}/moved" "${WORK}/host")
run(ignored "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/first")
file(RENAME "${WORK}/first" "${WORK}/moved")
set(prefix "${WORK}/moved")

# A dozen minutes and, behind those that the detection looks at, one without a High.
set(minutes "Date,Time,Open,High,Low,Close,Volume\n")
foreach(minute RANGE 30 42)
  set(high 11.5)
  if(minute EQUAL 41)
    set(high x)
  endif()
  string(APPEND minutes "01/14/2003,09:${minute},10.5,${high},10,10.75,100\n")
endforeach()
file(WRITE "${WORK}/minutes.csv" "${minutes}")
set(expected "column 1: Date *m/*d/*y
column 2: Time *h:mm
column 3: Open float
column 4: High float
column 5: Low float
column 6: Close float
column 7: Volume int
12 rows, 1 bad lines, complete
")

run(ignored "${CMAKE_COMMAND}" -G Ninja -S "${HOST}" -B "${WORK}/host"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}")
run(ignored "${CMAKE_COMMAND}" --build "${WORK}/host")
run(found "${WORK}/host/tabulex_host" "${WORK}/minutes.csv")
expect_text("host built by CMake" "${found}" "${expected}")

run(version "${prefix}/bin/tabulex" --version)
if(NOT version MATCHES "0\\.1\\.0")
  message(FATAL_ERROR "installed tool tells its version as ${version}")
endif()

find_program(pkg_config NAMES pkg-config pkgconf)
if(pkg_config)
  set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
  run(flags "${pkg_config}" --cflags --libs tabulexconverter)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run(ignored "${CXX}" "${HOST}/main.cpp" ${flags} "-Wl,-rpath,${prefix}/${LIBDIR}"
      -o "${WORK}/host/by_pkg_config")
  run(found "${WORK}/host/by_pkg_config" "${WORK}/minutes.csv")
  expect_text("host built by pkg-config" "${found}" "${expected}")
endif()
