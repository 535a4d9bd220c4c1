# The road of a record crosses many small functions of several files; optimising at
# link time makes a conversion about a seventh faster. Objects hold machine code too,
# so that tests link without it (tests/CMakeLists.txt switches it off). Not for Windows: the
# linker there takes thunks that several objects bring for defined twice, and the gain would
# be a twenty-fifth.
option(TABULEX_LTO "Optimise optimised builds at link time" ON)
if(TABULEX_LTO AND NOT WIN32 AND NOT TABULEX_SANITIZE AND CMAKE_BUILD_TYPE MATCHES "Rel")
  add_compile_options(-flto=auto -ffat-lto-objects)
  add_link_options(-flto=auto)
endif()
