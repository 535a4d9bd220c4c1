# Packs the build, unpacks the zip elsewhere, builds the example host against it, and runs
# that host and the tool out of it.
#   BUILD build folder   EXAMPLES   SAMPLES   WORK scratch folder   TOOLCHAIN   RUN
#   EXPECTED what the host tells of day-no-header.csv
cmake_minimum_required(VERSION 3.22)

function(run result)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nstatus ${status}\n${out}${err}")
  endif()
  string(REPLACE "\r\n" "\n" out "${out}")
  set(${result} "${out}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
run(ignored "${CMAKE_COMMAND}" -E chdir "${BUILD}" cpack -B "${WORK}/packed" -G ZIP)
file(GLOB zip "${WORK}/packed/*.zip")
file(ARCHIVE_EXTRACT INPUT "${zip}" DESTINATION "${WORK}")
file(GLOB package LIST_DIRECTORIES true "${WORK}/TabulexConverter-*")

file(GLOB_RECURSE files RELATIVE "${package}" "${package}/*")
list(FILTER files EXCLUDE REGEX "^include/")
list(SORT files)
set(expected
  LICENSE README.md
  bin/TabulexConverter.dll bin/TabulexConverterEnglish.dll bin/tabulex.exe
  lib/libTabulexConverter.a
  typelib/TabulexConverter.idl typelib/TabulexConverter.tlb)
if(NOT files STREQUAL expected)
  message(FATAL_ERROR "the package holds ${files}")
endif()

run(ignored "${CMAKE_COMMAND}" -G Ninja -S "${EXAMPLES}/windows" -B "${WORK}/host"
    "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}" "-DTABULEX_PACKAGE=${package}"
    "-DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${package}/bin")
run(ignored "${CMAKE_COMMAND}" --build "${WORK}/host")

run(told "${RUN}" "${package}/bin/windows_host.exe" "${SAMPLES}/day-no-header.csv")
file(READ "${EXPECTED}" expected)
if(NOT told STREQUAL expected)
  message(FATAL_ERROR "the host tells\n${told}")
endif()
run(told "${RUN}" "${package}/bin/tabulex.exe" --lang en inspect "${SAMPLES}/day-no-header.csv")
if(NOT told MATCHES "Date +\\*y/\\*m/\\*d")
  message(FATAL_ERROR "the tool tells\n${told}")
endif()
