# Headers that most sources include are parsed once for all layers, once for all tests, and
# once for the tool: half of the time that a build takes. A source still includes what it
# uses; -DTABULEX_PCH=OFF shows where one doesn't.
option(TABULEX_PCH "Precompile headers" ON)

set(TABULEX_STANDARD_HEADERS
  <algorithm> <array> <atomic> <chrono> <filesystem> <functional> <map> <memory> <mutex> <optional>
  <span> <string> <string_view> <thread> <vector>)
# In angle brackets, so that no path of this checkout gets into what ccache compares.
set(TABULEX_VALUE_HEADERS <platform/com_ptr.h> <platform/values.h>)

# tabulex_precompile(TARGET HEADER...)
function(tabulex_precompile target)
  if(TABULEX_PCH)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# tabulex_reuse_headers(DONOR TARGET...): the donor must be of the same kind, and be compiled
# with no definitions that the targets lack.
function(tabulex_reuse_headers donor)
  if(TABULEX_PCH)
    foreach(target IN LISTS ARGN)
      target_precompile_headers(${target} REUSE_FROM ${donor})
    endforeach()
  endif()
endfunction()
