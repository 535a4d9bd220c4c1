# Debian packages of the tool, the library and what developers need:
#   cmake --build build/release --target package
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tabulex)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "TabulexConverter maintainers <maintainers@example.org>")
# CPack's own words, by which it knows that the packages have summaries of their own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_NAME} built using CMake")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${TABULEX_COMPONENTS})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/debian/Stage.cmake")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME "${TABULEX_PACKAGE_library}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/debian/triggers")
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "library that reads market-data files of any layout
Works out the dividers, the header, the type of every column, the form of
dates and times and the size of the bars, and streams typed records to a
program.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME "${TABULEX_PACKAGE_development}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "headers of the library for market-data files
What programs in C++ need that use the library: tabulex.hpp, the interfaces
of its objects, and files for CMake and pkg-config.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME "${TABULEX_PACKAGE_tool}")
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_TOOL_DEPENDS library)
set(CPACK_DEBIAN_TOOL_DESCRIPTION "converts market-data files of any layout to tables
Works out the layout of delimited quote files by itself and converts them to
CSV, JSON Lines or SQLite, with an account of every line that it can't read.")

# For the staging script, which runs by itself.
set(CPACK_TABULEX_COMPONENTS ${TABULEX_COMPONENTS})
foreach(part IN LISTS TABULEX_COMPONENTS)
  set(CPACK_TABULEX_PACKAGE_${part} "${TABULEX_PACKAGE_${part}}")
endforeach()
set(CPACK_TABULEX_SOURCES "${PROJECT_SOURCE_DIR}/cmake/debian")

include(CPack)
