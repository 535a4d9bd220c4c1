# Targets for the shape of the code, over the sources of this tree:
#   format        rewrites them with clang-format
#   format-check  fails where format would change something
#   tidy          clang-tidy with the checks of .clang-tidy
find_program(CLANG_FORMAT clang-format)
find_program(RUN_CLANG_TIDY run-clang-tidy)
cmake_host_system_information(RESULT TABULEX_CORES QUERY NUMBER_OF_LOGICAL_CORES)

set(TABULEX_SOURCE_FOLDERS bench component datetime diagnostics examples facade fuzz interfaces LocalRPC
    module platform Simples src tests tools)

set(patterns)
foreach(folder IN LISTS TABULEX_SOURCE_FOLDERS)
  list(APPEND patterns "${folder}/*.cpp" "${folder}/*.h" "${folder}/*.hpp")
endforeach()
file(GLOB_RECURSE TABULEX_SOURCES RELATIVE "${CMAKE_SOURCE_DIR}" CONFIGURE_DEPENDS ${patterns})

if(CLANG_FORMAT)
  add_custom_target(format
    COMMAND "${CLANG_FORMAT}" -i ${TABULEX_SOURCES}
    WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}" VERBATIM COMMAND_EXPAND_LISTS)
  add_custom_target(format-check
    COMMAND "${CLANG_FORMAT}" --dry-run --Werror ${TABULEX_SOURCES}
    WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}" VERBATIM COMMAND_EXPAND_LISTS)
endif()

if(RUN_CLANG_TIDY)
  list(JOIN TABULEX_SOURCE_FOLDERS "|" folders)
  add_custom_target(tidy
    COMMAND "${RUN_CLANG_TIDY}" -quiet -p "${CMAKE_BINARY_DIR}" -j ${TABULEX_CORES}
            "-extra-arg-before=-isystem${CMAKE_SOURCE_DIR}/cmake/clang-14"
            "^${CMAKE_SOURCE_DIR}/(${folders})/.*"
    WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}" VERBATIM USES_TERMINAL)
endif()
