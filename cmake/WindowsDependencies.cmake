# Libraries for the Windows build. Debian packages none of these for it, so the
# header-only ones are taken from the host's packages, through a folder that holds
# nothing else, and GoogleTest is built from its packaged sources.
set(include_links "${CMAKE_BINARY_DIR}/include-links")
file(MAKE_DIRECTORY "${include_links}")
foreach(package boost CLI fast_float fmt nlohmann)
  file(CREATE_LINK "/usr/include/${package}" "${include_links}/${package}" SYMBOLIC)
endforeach()
file(CREATE_LINK /usr/include/sqlite3.h "${include_links}/sqlite3.h" SYMBOLIC)

add_library(host_headers INTERFACE)
target_include_directories(host_headers SYSTEM INTERFACE "${include_links}")

add_library(fmt::fmt INTERFACE IMPORTED)
target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY)
target_link_libraries(fmt::fmt INTERFACE host_headers)

add_library(Boost::headers INTERFACE IMPORTED)
target_compile_definitions(Boost::headers INTERFACE BOOST_ALL_NO_LIB)
target_link_libraries(Boost::headers INTERFACE host_headers)

# Of SQLite's only the header: the tool finds the functions at run time.
foreach(name CLI11::CLI11 nlohmann_json::nlohmann_json SQLite::SQLite3)
  add_library(${name} INTERFACE IMPORTED)
  target_link_libraries(${name} INTERFACE host_headers)
endforeach()

if(TABULEX_TESTS)
  set(INSTALL_GTEST OFF)
  set(BUILD_GMOCK ON)
  # BUILD_SHARED_LIBS says what becomes of this library, not of that one.
  set(BUILD_SHARED_LIBS OFF)
  add_subdirectory(/usr/src/googletest googletest EXCLUDE_FROM_ALL)
  set(BUILD_SHARED_LIBS ON)
  # Unoptimised they would have five times the sections, and the linker's time grows with the
  # square of an object's sections: six seconds for each program. Inline functions of the
  # headers would make the linker take the library a second time.
  foreach(library gtest gmock gtest_main gmock_main)
    target_compile_options(${library} PRIVATE -w -O1 -g0 -fno-lto)
    target_compile_definitions(${library} PRIVATE __CRT__NO_INLINE)
  endforeach()
endif()
