add_compile_options(-Wall -Wextra -Wpedantic -Werror -Wshadow=local
                    -Wno-missing-field-initializers)
# gcc 12 reports false positives of these in the standard library's strings.
add_compile_options(-Wno-restrict -Wno-stringop-overflow -Wno-array-bounds -Wno-stringop-overread
                    -Wno-null-dereference -Wno-maybe-uninitialized)
if(TABULEX_SANITIZE)
  add_compile_options(-fsanitize=${TABULEX_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=${TABULEX_SANITIZE})
endif()
