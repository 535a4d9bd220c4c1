# Runs PROGRAM with ARGUMENTS (a list), under RUNNER if there is one, and compares what it
# prints with the file EXPECTED, line by line.
execute_process(COMMAND ${RUNNER} ${PROGRAM} ${ARGUMENTS}
                OUTPUT_VARIABLE found ERROR_VARIABLE said RESULT_VARIABLE status)
file(READ "${EXPECTED}" expected)
string(REPLACE "\r\n" "\n" found "${found}")
if(NOT status EQUAL 0 OR NOT found STREQUAL expected)
  message(FATAL_ERROR "status ${status}\n${said}\nexpected\n${expected}\nfound\n${found}")
endif()
