# tabulex_resource_module(NAME SCRIPT.rc): a library of the folder of programs that holds
# resources and no code.
function(tabulex_resource_module name script)
  add_library(${name} MODULE "${script}")
  set_target_properties(${name} PROPERTIES PREFIX "" LINKER_LANGUAGE CXX
    LIBRARY_OUTPUT_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
endfunction()
