# What an installed package holds: the library, the tool, the headers that a host
# includes, and how CMake and pkg-config find them.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Headers keep their paths from the root below this folder, so that they include one
# another as they do here.
set(TABULEX_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/TabulexConverter")
set(TABULEX_PACKAGEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/TabulexConverter")

target_include_directories(TabulexConverter INTERFACE "$<INSTALL_INTERFACE:${TABULEX_INCLUDEDIR}>")
target_compile_features(TabulexConverter INTERFACE cxx_std_20)
set_target_properties(TabulexConverter PROPERTIES
  VERSION "${PROJECT_VERSION}"
  SOVERSION "${PROJECT_VERSION_MAJOR}")

install(TARGETS TabulexConverter EXPORT TabulexConverter
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")

install(DIRECTORY interfaces DESTINATION "${TABULEX_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
install(FILES platform/StringTable.h platform/com_ptr.h platform/component.h
              platform/component_posix.h platform/values.h
        DESTINATION "${TABULEX_INCLUDEDIR}/platform")

install(EXPORT TabulexConverter NAMESPACE TabulexConverter::
        FILE TabulexConverterConfig.cmake DESTINATION "${TABULEX_PACKAGEDIR}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/TabulexConverterConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/TabulexConverterConfigVersion.cmake"
        DESTINATION "${TABULEX_PACKAGEDIR}")

# The file finds its prefix from where it lies, so that a package can be moved.
file(RELATIVE_PATH TABULEX_PREFIX_FROM_PKGCONFIG
     "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
string(REGEX REPLACE "/$" "" TABULEX_PREFIX_FROM_PKGCONFIG "${TABULEX_PREFIX_FROM_PKGCONFIG}")
configure_file(cmake/tabulexconverter.pc.in "${CMAKE_BINARY_DIR}/tabulexconverter.pc" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/tabulexconverter.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
