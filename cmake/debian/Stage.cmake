# Makes of installed files what Debian's policy asks of a package. Run by CPack on each component's
# files before it packs them: a change log, the manual page packed, no search path of its own in the
# tool, since the library lies where the system looks.
foreach(part IN LISTS CPACK_TABULEX_COMPONENTS)
  set(root "${CPACK_TEMPORARY_DIRECTORY}/${part}/usr")
  if(NOT IS_DIRECTORY "${root}")
    continue()
  endif()
  set(package "${CPACK_TABULEX_PACKAGE_${part}}")
  set(changelog "${root}/share/doc/${package}/changelog")
  configure_file("${CPACK_TABULEX_SOURCES}/changelog.in" "${changelog}" @ONLY)
  file(GLOB packed "${root}/share/man/man1/*.1")
  execute_process(COMMAND gzip -9nf "${changelog}" ${packed} COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB programs "${root}/bin/*")
  foreach(program IN LISTS programs)
    file(RPATH_REMOVE FILE "${program}")
  endforeach()
  # Files that were made under another mask of permissions.
  execute_process(COMMAND chmod -R go-w,go+rX "${root}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
