# The zip that hosts and their developers get, and the same files by `cmake --install`.
# Package: cmake --build --preset mingw --target package
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME "TabulexConverter-${PROJECT_VERSION}-win64")
set(CPACK_STRIP_FILES ON)

# An import library of the entries. In the list they are private, so that the linker
# makes none by itself.
file(READ component/windows/TabulexConverter.def entries)
string(REPLACE "PRIVATE" "" entries "${entries}")
file(CONFIGURE OUTPUT import/TabulexConverter.def CONTENT "${entries}" @ONLY)
find_program(DLLTOOL x86_64-w64-mingw32-dlltool REQUIRED)
set(import_library "${CMAKE_BINARY_DIR}/import/libTabulexConverter.a")
add_custom_command(
  OUTPUT "${import_library}"
  COMMAND "${DLLTOOL}" --input-def TabulexConverter.def --dllname TabulexConverter.dll
          --output-lib "${import_library}"
  DEPENDS import/TabulexConverter.def WORKING_DIRECTORY "${CMAKE_BINARY_DIR}/import" VERBATIM)
add_custom_target(import_library ALL DEPENDS "${import_library}")

install(TARGETS TabulexConverter TabulexConverterEnglish LIBRARY DESTINATION bin)
install(FILES "${import_library}" DESTINATION lib)
install(FILES "${CMAKE_BINARY_DIR}/component/windows/TabulexConverter.tlb"
              component/windows/TabulexConverter.idl
        DESTINATION typelib)
# The native host's door isn't one of the library's entries here.
install(DIRECTORY interfaces DESTINATION include
        FILES_MATCHING PATTERN "*.h"
        PATTERN NativeHost.h EXCLUDE
        PATTERN IProgressView.h EXCLUDE
        PATTERN IControlsView.h EXCLUDE
        PATTERN IDialogViews.h EXCLUDE
        PATTERN IFolderView.h EXCLUDE
        PATTERN IGridView.h EXCLUDE
        PATTERN ControlTable.h EXCLUDE)
install(FILES platform/com_ptr.h platform/component.h platform/values.h
        DESTINATION include/platform)
install(FILES component/windows/README.md LICENSE DESTINATION .)

include(CPack)
