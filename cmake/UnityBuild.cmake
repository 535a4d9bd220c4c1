# Several sources of a target compiled as one: what they include is parsed once and its
# templates are made once, which saves half of the time that tests and the tool take.
# With -DTABULEX_UNITY=OFF each source is compiled by itself, as clang-tidy needs it, and as
# it is quicker while one file is being changed.
#
# CMake's own UNITY_BUILD writes absolute paths, by which ccache wouldn't hit in another
# checkout.
option(TABULEX_UNITY "Compile several sources of a target as one" ON)

# The layers as well: for a build that is made whole each time, and quickly. Elsewhere a
# change of one file would compile its neighbours too.
option(TABULEX_UNITY_LAYERS "Compile several sources of a layer as one" OFF)

# tabulex_unity(TARGET): batches of at most eight sources, of much the same size. Names in
# anonymous namespaces must differ within the target. Sources with the property
# SKIP_UNITY_BUILD_INCLUSION stay by themselves, so that they can have options of their own.
function(tabulex_unity target)
  if(NOT TABULEX_UNITY)
    return()
  endif()
  get_target_property(folder ${target} SOURCE_DIR)
  get_target_property(others ${target} SOURCES)
  set(sources ${others})
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  list(FILTER others EXCLUDE REGEX "\\.cpp$")
  foreach(source IN LISTS sources)
    get_source_file_property(alone "${source}" TARGET_DIRECTORY ${target}
      SKIP_UNITY_BUILD_INCLUSION)
    if(alone)
      list(APPEND others "${source}")
      list(REMOVE_ITEM sources "${source}")
    endif()
  endforeach()
  list(LENGTH sources count)
  math(EXPR batches "(${count} + 7) / 8")
  math(EXPR size "(${count} + ${batches} - 1) / ${batches}")
  set(files)
  foreach(number RANGE 1 ${batches})
    list(SUBLIST sources 0 ${size} batch)
    list(REMOVE_ITEM sources ${batch})
    set(includes)
    foreach(source IN LISTS batch)
      cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${folder}" NORMALIZE)
      file(RELATIVE_PATH source "${PROJECT_SOURCE_DIR}" "${source}")
      string(APPEND includes "#include \"${source}\"\n")
    endforeach()
    set(file "${CMAKE_CURRENT_BINARY_DIR}/unity/${target}_${number}.cpp")
    file(CONFIGURE OUTPUT "${file}" CONTENT "${includes}" @ONLY)
    list(APPEND files "${file}")
  endforeach()
  set_property(TARGET ${target} PROPERTY SOURCES ${files} ${others})
  # gcc takes what is joined for headers, in which a fixture of an anonymous namespace would
  # be a fault.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()
