if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(shadow -Wshadow=local)
  # gcc 12 reports false positives of these in the standard library's strings.
  set(false_positives -Wno-restrict -Wno-stringop-overflow -Wno-array-bounds
                      -Wno-stringop-overread -Wno-null-dereference -Wno-maybe-uninitialized)
endif()
if(TABULEX_WERROR)
  set(errors -Werror)
endif()
add_compile_options(-Wall -Wextra -Wpedantic ${errors} ${shadow} -Wno-missing-field-initializers
                    ${false_positives})
if(TABULEX_SANITIZE)
  add_compile_options(-fsanitize=${TABULEX_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=${TABULEX_SANITIZE})
endif()
