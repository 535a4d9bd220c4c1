# Completions and the manual page are made of the command line's definition.
add_executable(tabulex_generate
  generate.cpp
  completion/BashCompletion.cpp
  completion/CommandTree.cpp
  completion/FishCompletion.cpp
  completion/ZshCompletion.cpp
  manual/ManualPage.cpp)
target_compile_definitions(tabulex_generate PRIVATE TABULEX_VERSION="${PROJECT_VERSION}")
target_link_libraries(tabulex_generate PRIVATE tabulex_tool)
# It runs four times in a build, over nothing but our own definitions.
target_compile_options(tabulex_generate PRIVATE -O0 -fno-lto -fno-sanitize=all)
tabulex_unity(tabulex_generate)

# Makes one file where it lies when it is installed, below the build folder.
function(tabulex_generated kind folder name)
  set(file "${PROJECT_BINARY_DIR}/share/${folder}/${name}")
  add_custom_command(OUTPUT "${file}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${PROJECT_BINARY_DIR}/share/${folder}"
    COMMAND tabulex_generate ${kind} "${file}" ${ARGN}
    DEPENDS tabulex_generate ${ARGN} VERBATIM)
  set_property(GLOBAL APPEND PROPERTY TABULEX_GENERATED "${file}")
  install(FILES "${file}" DESTINATION "${CMAKE_INSTALL_DATADIR}/${folder}" COMPONENT tool)
endfunction()

tabulex_generated(bash bash-completion/completions tabulex)
tabulex_generated(zsh zsh/site-functions _tabulex)
tabulex_generated(fish fish/vendor_completions.d tabulex.fish)
tabulex_generated(man man/man1 tabulex.1 "${CMAKE_CURRENT_SOURCE_DIR}/manual/tabulex.1.in")
get_property(generated GLOBAL PROPERTY TABULEX_GENERATED)
add_custom_target(tabulex_generated_files ALL DEPENDS ${generated})
