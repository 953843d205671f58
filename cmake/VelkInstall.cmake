# What an embedding project gets: headers, libraries, find_package(Velk), and a pkg-config file. The component "library"
# is what programs run with, "development" what they are built with; "programs" are the host's.
include(CMakePackageConfigHelpers)

set(velk_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Velk)

install(TARGETS VelkCommon VelkLibraryCore VelkLibrary EXPORT VelkTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT VelkTargets NAMESPACE Velk:: DESTINATION ${velk_package_dir} COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/VelkConfig.cmake.in ${PROJECT_BINARY_DIR}/VelkConfig.cmake
    INSTALL_DESTINATION ${velk_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VelkConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VelkConfig.cmake ${PROJECT_BINARY_DIR}/VelkConfigVersion.cmake
    DESTINATION ${velk_package_dir} COMPONENT development)

# The prefix is found from where the file is, so the package may be moved.
file(RELATIVE_PATH velk_prefix_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" velk_prefix_from_pkgconfig "${velk_prefix_from_pkgconfig}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/velk.pc.in ${PROJECT_BINARY_DIR}/velk.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/velk.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
