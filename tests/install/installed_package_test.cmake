# Installs the build into a folder of its own, moves that folder, builds the example
# hosts against it by CMake and by pkg-config, and runs them on small files.
#   BUILD build folder   EXAMPLES the hosts' sources   SOURCES this folder   WORK scratch folder
#   CXX compiler   LIBDIR of the installation

# Runs a command that must succeed; its standard output goes to the variable.
function(run output)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nstatus ${status}\n${out}${err}")
  endif()
  set(${output} "${out}" PARENT_SCOPE)
endfunction()

# Runs a host, and compares everything that it tells.
function(expect status out err)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE has_out ERROR_VARIABLE has_err
                  RESULT_VARIABLE has_status)
  set(expected "status ${status}\n${out}${err}")
  set(found "status ${has_status}\n${has_out}${has_err}")
  if(NOT found STREQUAL expected)
    message(FATAL_ERROR "${ARGN}: expected\n${expected}\nfound\n${found}")
  endif()
endfunction()

set(ENV{LC_ALL} C)
file(REMOVE_RECURSE "${WORK}/first" "${WORK}/moved" "${WORK}/hosts")
run(ignored "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/first")
file(RENAME "${WORK}/first" "${WORK}/moved")
set(prefix "${WORK}/moved")

run(version "${prefix}/bin/tabulex" --version)
if(NOT version MATCHES "0\\.1\\.0")
  message(FATAL_ERROR "installed tool tells its version as ${version}")
endif()

# ---- files: names and contents without a semicolon

# A quarter of an hour of two symbols and, behind those that the detection looks at, a
# line without a High.
set(minutes "Symbol,Date,Time,Open,High,Low,Close,Volume\n")
foreach(symbol_and_day "ABC,01/14/2003" "XYZ,01/15/2003")
  foreach(minute RANGE 30 42)
    set(high 11.5)
    if(symbol_and_day MATCHES "ABC" AND minute EQUAL 41)
      set(high x)
    endif()
    string(APPEND minutes "${symbol_and_day},09:${minute},10.5,${high},10,10.75,100\n")
  endforeach()
endforeach()
file(WRITE "${WORK}/minutes.csv" "${minutes}")

# Fifty hours without a break, so that there are three batches.
set(long "Date,Time,Open,High,Low,Close,Volume\n")
foreach(day RANGE 14 16)
  foreach(hour RANGE 0 16)
    foreach(minute RANGE 10 59)
      string(APPEND long "01/${day}/1990,${hour}:${minute},10.5,11.5,10,10.75,2\n")
    endforeach()
  endforeach()
endforeach()
file(WRITE "${WORK}/long.csv" "${long}")

file(WRITE "${WORK}/no_date.csv" "Open,High,Low,Close\n1,2,1,2\n1,2,1,2\n")

# ---- what the hosts tell of them

set(long_columns "column 1: 421 *m/*d/*y
column 2: 422 *h:mm
column 3: 232 float
column 4: 233 float
column 5: 234 float
column 6: 235 float
column 7: 249 int
")
set(minutes_columns "column 1: 31 symbol
column 2: 421 *m/*d/*y
column 3: 422 *h:mm
column 4: 232 float
column 5: 233 float
column 6: 234 float
column 7: 235 float
column 8: 249 int
")
set(minutes_settings "resolution 2, size 1
from 2003-01-14 09:30:00
to 2003-01-15 09:42:00
symbol ABC
symbol XYZ
")

# Of a host that calls through the interfaces, and of one that calls by name.
function(check_hosts host late_bound)
  expect(0 "${minutes_columns}${minutes_settings}first row 2003-01-14 09:30:00
rows 25, batches 1, volume 2500, committed
" "line 13, field 5:  \"x\" can't be parsed with the template \"float\".
" "${host}" "${WORK}/minutes.csv")
  # A portion skips the bad line without a word.
  expect(0 "${minutes_columns}${minutes_settings}first row 2003-01-14 09:40:00
rows 4, batches 1, volume 400, committed
" "" "${host}" --portion 10:5 "${WORK}/minutes.csv")
  # A file without symbols, of days whose numbers don't fit a signed one of 16 bits.
  expect(1 "${long_columns}resolution 2, size 1
from 1990-01-14 00:10:00
to 1990-01-16 16:59:00
first row 1990-01-14 00:10:00
rows 2000, batches 2, volume 4000, rolled back
" "" "${host}" --cancel-after 2 "${WORK}/long.csv")
  expect(1 "column 1: 232 float
column 2: 233 float
column 3: 234 float
column 4: 235 float
resolution 0, size 0
from 1899-12-30 00:00:00
to 1899-12-30 00:00:00
" "The date range of the data is invalid.
" "${host}" "${WORK}/no_date.csv")
  expect(1 "" "${WORK}/none.csv can't be opened\n" "${host}" "${WORK}/none.csv")
  expect(2 "" "usage: tabulex_host [--portion START:COUNT] [--cancel-after N] FILE\n"
         "${host}" --portion 5 "${WORK}/minutes.csv")

  set(late_bound "${late_bound}" "${prefix}/${LIBDIR}/libTabulexConverter.so")
  expect(0 "${minutes_columns}first row 2003-01-14 09:30:00
rows 25, batches 1, volume 2500, committed
26 records
" "" ${late_bound} "${WORK}/minutes.csv")
  expect(1 "${long_columns}first row 1990-01-14 00:10:00
rows 1000, batches 1, volume 2000, rolled back
" "" ${late_bound} "${WORK}/long.csv" 1)
  expect(1 "" "the file can't be opened\n" ${late_bound} "${WORK}/none.csv")
endfunction()

# A program that has nothing but tabulex.hpp.
function(check_read_file program)
  run(out "${program}" "${WORK}/minutes.csv")
  string(REGEX MATCHALL "\n" rows "${out}")
  list(LENGTH rows count)
  if(NOT count EQUAL 25 OR NOT out MATCHES "^2003-01-14 09:30:00 10.75\n")
    message(FATAL_ERROR "${program} tells\n${out}")
  endif()
  set(bad "line 13:  \"x\" can't be parsed with the template \"float\".\n")
  expect(0 "${out}" "${bad}" "${program}" "${WORK}/minutes.csv")
  expect(1 "" "${WORK}/none.csv: No such file or directory\n" "${program}" "${WORK}/none.csv")
endfunction()

# ---- by CMake

foreach(example host late_bound read_file)
  run(ignored "${CMAKE_COMMAND}" -G Ninja -S "${EXAMPLES}/${example}" -B "${WORK}/hosts/${example}"
      "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}")
  run(ignored "${CMAKE_COMMAND}" --build "${WORK}/hosts/${example}")
endforeach()
check_hosts("${WORK}/hosts/host/tabulex_host" "${WORK}/hosts/late_bound/tabulex_late_bound")
check_read_file("${WORK}/hosts/read_file/read_file")

# ---- by pkg-config, which gives the late-bound one its headers only

find_program(pkg_config NAMES pkg-config pkgconf)
if(pkg_config)
  set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
  run(flags "${pkg_config}" --cflags --libs tabulexconverter)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run(ignored "${CXX}" "${EXAMPLES}/host/main.cpp" ${flags} "-Wl,-rpath,${prefix}/${LIBDIR}"
      -o "${WORK}/hosts/host_by_pkg_config")
  run(flags "${pkg_config}" --cflags tabulexconverter)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run(ignored "${CXX}" "${EXAMPLES}/late_bound/main.cpp" "${EXAMPLES}/late_bound/ValueLayer.cpp"
      ${flags} -ldl -o "${WORK}/hosts/late_bound_by_pkg_config")
  check_hosts("${WORK}/hosts/host_by_pkg_config" "${WORK}/hosts/late_bound_by_pkg_config")

  # tabulex.hpp leaves the component's words to the program.
  run(ignored "${CXX}" -Wall -Wextra -Wpedantic -Werror -fsyntax-only
      "${SOURCES}/subproject/main.cpp" ${flags})
endif()
