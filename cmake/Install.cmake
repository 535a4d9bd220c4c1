# What an installed package holds: the library, the tool, the headers that a host
# includes, and how CMake and pkg-config find them. In three components, each a Debian package of
# its own (DebianPackages.cmake): library, development, tool.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Headers keep their paths from the root below this folder, so that they include one
# another as they do here.
set(TABULEX_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/TabulexConverter")
set(TABULEX_PACKAGEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/TabulexConverter")

target_include_directories(TabulexConverter INTERFACE "$<INSTALL_INTERFACE:${TABULEX_INCLUDEDIR}>")
set_target_properties(TabulexConverter PROPERTIES
  VERSION "${PROJECT_VERSION}"
  SOVERSION "${PROJECT_VERSION_MAJOR}")

install(TARGETS TabulexConverter EXPORT TabulexConverter
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
                COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)

# tabulex.hpp stands at the top, so that a program includes it by its name alone.
install(DIRECTORY facade/ DESTINATION "${TABULEX_INCLUDEDIR}" COMPONENT development
        FILES_MATCHING PATTERN "*.hpp")
install(DIRECTORY interfaces DESTINATION "${TABULEX_INCLUDEDIR}" COMPONENT development
        FILES_MATCHING PATTERN "*.h")
install(FILES platform/StringTable.h platform/com_ptr.h platform/component.h
              platform/component_posix.h platform/values.h
        DESTINATION "${TABULEX_INCLUDEDIR}/platform" COMPONENT development)

install(EXPORT TabulexConverter NAMESPACE TabulexConverter:: COMPONENT development
        FILE TabulexConverterTargets.cmake DESTINATION "${TABULEX_PACKAGEDIR}")
configure_package_config_file(cmake/TabulexConverterConfig.cmake.in
                              "${PROJECT_BINARY_DIR}/TabulexConverterConfig.cmake"
                              INSTALL_DESTINATION "${TABULEX_PACKAGEDIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TabulexConverterConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/TabulexConverterConfig.cmake"
              "${PROJECT_BINARY_DIR}/TabulexConverterConfigVersion.cmake"
        DESTINATION "${TABULEX_PACKAGEDIR}" COMPONENT development)

# The file finds its prefix from where it lies, so that a package can be moved.
file(RELATIVE_PATH TABULEX_PREFIX_FROM_PKGCONFIG
     "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
string(REGEX REPLACE "/$" "" TABULEX_PREFIX_FROM_PKGCONFIG "${TABULEX_PREFIX_FROM_PKGCONFIG}")
if(NOT BUILD_SHARED_LIBS)
  set(TABULEX_PC_REQUIRES "icu-i18n icu-uc fmt")
  set(TABULEX_PC_LIBS "-pthread -ldl")
endif()
configure_file(cmake/tabulexconverter.pc.in "${PROJECT_BINARY_DIR}/tabulexconverter.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/tabulexconverter.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

# The licence, where Debian looks for that of a package.
set(TABULEX_PACKAGE_library "libtabulex${PROJECT_VERSION_MAJOR}")
set(TABULEX_PACKAGE_development "libtabulex-dev")
set(TABULEX_PACKAGE_tool "tabulex")
set(TABULEX_COMPONENTS library development)
if(TABULEX_TOOL)
  list(APPEND TABULEX_COMPONENTS tool)
endif()
foreach(part IN LISTS TABULEX_COMPONENTS)
  install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${TABULEX_PACKAGE_${part}}"
          RENAME copyright COMPONENT ${part})
endforeach()
