# What cpack makes: a package of Debian for each component, and an archive that can be unpacked anywhere. For builds with
# the system's folders (preset "package"); ./dev package makes them and tries them.
set(velk_packages ${PROJECT_SOURCE_DIR}/packaging)
set(VELK_PACKAGE_MAINTAINER "The Velk project <velk@velk.invalid>" CACHE STRING
    "Who answers for the packages, with an address")

# One package for all libraries, as they come together only. Its name changes with theirs: see VelkBuildFlags.cmake.
set(velk_soversion ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(velk_library_package libvelk${velk_soversion})
set(velk_development_package libvelk-dev)
set(velk_programs_package velk)

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME velk)
set(CPACK_PACKAGE_VENDOR Velk)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has a description of its own
set(CPACK_PACKAGE_CONTACT "${VELK_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL library development programs)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PRE_BUILD_SCRIPTS ${velk_packages}/without-search-path.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${velk_library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${velk_packages}/triggers)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "back-end of a library browser - shared libraries
Searches the names of objects, materials and textures as a user types, ranks
what it finds, and keeps installed libraries up to date from a content
service.

This package has the libraries that programs run with.")

set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${velk_development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libboost-dev, qtbase5-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "back-end of a library browser - development files
Searches the names of objects, materials and textures as a user types, ranks
what it finds, and keeps installed libraries up to date from a content
service.

This package has the headers, and what CMake and pkg-config need to find the
libraries.")

set(CPACK_COMPONENT_PROGRAMS_DEPENDS library)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME ${velk_programs_package})
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_RECOMMENDS qttranslations5-l10n)
set(CPACK_DEBIAN_PROGRAMS_DESCRIPTION "search and publish libraries of architectural content
The command velk searches libraries of objects, materials and textures, makes
them, publishes them as a static site, and keeps an installation up to date
from there. velk-browser does it in a window.")

# What Debian wants in the folder of documents of each package.
set(velk_documents ${PROJECT_BINARY_DIR}/documents)
string(TIMESTAMP velk_package_time "%a, %d %b %Y %H:%M:%S +0000" UTC)  # or what SOURCE_DATE_EPOCH says
configure_file(${velk_packages}/changelog.in ${velk_documents}/changelog.Debian @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${velk_documents}/changelog COPYONLY)
find_program(VELK_GZIP gzip REQUIRED)
foreach(document changelog changelog.Debian)
    execute_process(COMMAND ${VELK_GZIP} -9nkf ${velk_documents}/${document} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    set(document_folder ${CMAKE_INSTALL_DATADIR}/doc/${velk_${component}_package})
    install(FILES ${velk_packages}/copyright ${velk_documents}/changelog.gz ${velk_documents}/changelog.Debian.gz
        DESTINATION ${document_folder} COMPONENT ${component})
    install(FILES ${velk_packages}/lintian/${component} RENAME ${velk_${component}_package}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
endforeach()
# The terms of what is compiled into the programs ask to come along.
install(FILES ${PROJECT_SOURCE_DIR}/NOTICE.md
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${velk_programs_package} COMPONENT programs)
install(FILES /usr/share/doc/libcli11-dev/copyright RENAME CLI11.txt
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${velk_programs_package} COMPONENT programs)

include(CPack)
