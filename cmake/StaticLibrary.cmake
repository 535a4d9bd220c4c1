# tabulex_static_library(NAME): the library as one archive of the objects of all layers. Whoever links
# it also links what it is made with, which for a shared library is in the library's own list.
function(tabulex_static_library name)
  set(objects $<TARGET_OBJECTS:tabulex_component> $<TARGET_OBJECTS:tabulex_datetime>)
  foreach(layer IN LISTS TABULEX_LAYERS)
    list(APPEND objects $<TARGET_OBJECTS:${layer}>)
  endforeach()
  add_library(${name} STATIC ${objects})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_link_libraries(${name} PRIVATE
    ICU::i18n ICU::uc fmt::fmt Threads::Threads ${CMAKE_DL_LIBS})
endfunction()
