# Fails where the library exports a name that might be another library's or a program's.
#   LIBRARY shared library   NM the lister of symbols
cmake_minimum_required(VERSION 3.22)
set(entries DllCanUnloadNow DllGetClassObject DllMain DllRegisterServer DllUnregisterServer)

execute_process(COMMAND "${NM}" -D --defined-only "${LIBRARY}" OUTPUT_VARIABLE listed
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" listed "${listed}")
set(own 0)
foreach(line IN LISTS listed)
  string(REGEX REPLACE ".* ([^ @]+).*" "\\1" name "${line}")
  if(name MATCHES "^Tabulex")
    math(EXPR own "${own} + 1")
  elseif(NOT name IN_LIST entries)
    message(SEND_ERROR "exported: ${name}")
  endif()
endforeach()
if(own LESS 20)
  message(SEND_ERROR "only ${own} names of its own are exported")
endif()
