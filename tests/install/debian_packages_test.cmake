# Makes the Debian packages of the build, looks at them, unpacks them into a folder, and runs the tool
# and a program that is built on what lies there.
#   BUILD build folder   SAMPLES quote files   EXAMPLES programs   WORK scratch folder
#   CXX compiler   VERSION of the project

# Runs a command that must succeed; its standard output goes to the variable.
function(run output)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nstatus ${status}\n${out}${err}")
  endif()
  set(${output} "${out}" PARENT_SCOPE)
endfunction()

function(require_match text pattern)
  if(NOT text MATCHES "${pattern}")
    message(FATAL_ERROR "no '${pattern}' in\n${text}")
  endif()
endfunction()

set(ENV{LC_ALL} C)
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}/unpacked")
run(ignored cpack --config "${BUILD}/CPackConfig.cmake" -G DEB -B "${WORK}/made")

# ---- what they say of themselves, and what they hold

string(REGEX MATCH "^[0-9]+" major "${VERSION}")
set(library "libtabulex${major}")
set(packages tabulex ${library} libtabulex-dev)
foreach(package IN LISTS packages)
  file(GLOB file "${WORK}/made/${package}_${VERSION}_*.deb")
  list(LENGTH file count)
  if(NOT count EQUAL 1)
    message(FATAL_ERROR "${count} packages ${package}")
  endif()
  list(APPEND files "${file}")
  run(${package}_fields dpkg-deb -f "${file}")
  run(ignored dpkg-deb -x "${file}" "${WORK}/unpacked")
  foreach(name copyright changelog.gz)
    if(NOT EXISTS "${WORK}/unpacked/usr/share/doc/${package}/${name}")
      message(FATAL_ERROR "${package} has no ${name}")
    endif()
  endforeach()
  file(READ "${WORK}/unpacked/usr/share/doc/${package}/copyright" licence)
  require_match("${licence}" "^MIT License")
endforeach()
require_match("${tabulex_fields}" "Depends:[^\n]*${library} \\(= ${VERSION}\\)")
require_match("${${library}_fields}" "Depends:[^\n]*libicu[^\n]*")
require_match("${libtabulex-dev_fields}" "Depends:[^\n]*${library} \\(= ${VERSION}\\)")
foreach(name bin/tabulex share/man/man1/tabulex.1.gz share/bash-completion/completions/tabulex
             include/TabulexConverter/tabulex.hpp)
  if(NOT EXISTS "${WORK}/unpacked/usr/${name}")
    message(FATAL_ERROR "no package has ${name}")
  endif()
endforeach()

find_program(lintian lintian)
if(lintian)
  run(told "${lintian}" --no-cfg --allow-root --fail-on error ${files})
  message(STATUS "lintian: ${told}")
else()
  message(STATUS "Without lintian the packages aren't held against Debian's policy")
endif()

# ---- what they do where they lie

file(GLOB_RECURSE libraries "${WORK}/unpacked/usr/*/libTabulexConverter.so.${major}")
cmake_path(GET libraries PARENT_PATH folder)
set(ENV{LD_LIBRARY_PATH} "${folder}")
run(version "${WORK}/unpacked/usr/bin/tabulex" --version)
require_match("${version}" "${VERSION}")
run(rows "${WORK}/unpacked/usr/bin/tabulex" convert "${SAMPLES}/day-no-header.csv")
require_match("${rows}" "2003-01-13,98.05,98.78,97.65,98.36,358127")

run(ignored "${CXX}" -std=c++20 -I "${WORK}/unpacked/usr/include/TabulexConverter"
    "${EXAMPLES}/read_file/main.cpp" -L "${folder}" -lTabulexConverter -o "${WORK}/read_file")
run(rows "${WORK}/read_file" "${SAMPLES}/day-no-header.csv")
require_match("${rows}" "^2003-01-13 00:00:00 98.36\n")
