# Standard headers and the value layer that nearly every source reads.
function(tabulex_precompile)
  foreach(target IN LISTS ARGN)
    target_precompile_headers(${target} PRIVATE
      <algorithm> <functional> <map> <string> <vector>
      "${CMAKE_SOURCE_DIR}/platform/component.h"
      "${CMAKE_SOURCE_DIR}/platform/com_ptr.h"
      "${CMAKE_SOURCE_DIR}/platform/values.h")
  endforeach()
endfunction()
