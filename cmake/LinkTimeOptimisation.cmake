# A record passes through many small functions of several files; optimising at link time
# makes a conversion about a seventh faster. Objects hold machine code too,
# so that tests link without it (tests/CMakeLists.txt switches it off), and so does the
# tool, whose own code takes little of the time.
option(TABULEX_LTO "Optimise optimised builds at link time" ${PROJECT_IS_TOP_LEVEL})
if(TABULEX_LTO AND NOT TABULEX_SANITIZE AND CMAKE_BUILD_TYPE MATCHES "Rel")
  add_compile_options(-flto=auto -ffat-lto-objects)
  add_link_options(-flto=auto)
  # The linker for Windows takes thunks that several objects bring for defined twice. What
  # really is defined twice shows in the links of the tests, which go without.
  if(WIN32)
    set(TABULEX_LTO_LINK_OPTIONS -Wl,--allow-multiple-definition)
  endif()
endif()
