# What cpack makes for Windows: an installer (NSIS) and an archive (zip) with the programs, the libraries, and all that they
# run with. ./dev windows package makes them and tries them. What is installed for whoever builds against the libraries is
# left out: they build Velk with their own compiler.
set(velk_windows ${PROJECT_SOURCE_DIR}/packaging/windows)

# The compiler's own DLLs are where it says; that of its threads may be elsewhere.
set(velk_runtime_folders $<TARGET_FILE_DIR:Qt${VELK_QT}::Core> $<TARGET_FILE_DIR:VelkCommon>)
if(MINGW)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++-6.dll
        OUTPUT_VARIABLE compiler_library OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    get_filename_component(compiler_folder ${compiler_library} DIRECTORY)
    list(APPEND velk_runtime_folders ${compiler_folder})
    foreach(folder IN LISTS CMAKE_FIND_ROOT_PATH)
        if(EXISTS ${folder}/lib/libwinpthread-1.dll)
            list(APPEND velk_runtime_folders ${folder}/lib)
        endif()
    endforeach()
elseif(VCPKG_INSTALLED_DIR)
    list(APPEND velk_runtime_folders ${VCPKG_INSTALLED_DIR}/${VCPKG_TARGET_TRIPLET}/bin)
endif()
install(CODE "
    set(velk_modules $<TARGET_FILE:velk> $<TARGET_FILE:velk-browser>)
    set(velk_folders ${velk_runtime_folders})
    set(velk_links \"${PROJECT_BINARY_DIR}/runtime\")
    set(velk_objdump \"${CMAKE_OBJDUMP}\")
    set(velk_strip \"$<$<BOOL:${MINGW}>:${CMAKE_STRIP}>\")
    set(velk_destination \"${CMAKE_INSTALL_BINDIR}\")" COMPONENT runtime)
install(SCRIPT ${velk_windows}/runtime.cmake COMPONENT runtime)
set(CMAKE_INSTALL_SYSTEM_RUNTIME_COMPONENT runtime)
include(InstallRequiredSystemLibraries)  # Microsoft's runtime, where it is their compiler

# The terms of what is compiled into the programs ask to come along.
install(FILES ${PROJECT_SOURCE_DIR}/NOTICE.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION . COMPONENT programs)
if(EXISTS /usr/share/doc/libcli11-dev/copyright)
    install(FILES /usr/share/doc/libcli11-dev/copyright RENAME CLI11.txt DESTINATION . COMPONENT programs)
endif()

set(CPACK_GENERATOR NSIS ZIP)
set(CPACK_PACKAGE_NAME velk)
set(CPACK_PACKAGE_VENDOR Velk)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGE_FILE_NAME velk-${PROJECT_VERSION}-windows-x64)
set(CPACK_PACKAGE_INSTALL_DIRECTORY Velk)
set(CPACK_PACKAGE_INSTALL_REGISTRY_KEY Velk)
set(CPACK_NSIS_DISPLAY_NAME "Velk Library Browser")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
# One installer for all components but that for development; it asks nobody which.
set(CPACK_MONOLITHIC_INSTALL ON)
set(CPACK_INSTALL_CMAKE_PROJECTS "")
foreach(component library programs runtime)
    list(APPEND CPACK_INSTALL_CMAKE_PROJECTS ${PROJECT_BINARY_DIR} ${PROJECT_NAME} ${component} /)
endforeach()
# Where cpack looks for our template of the installer.
list(PREPEND CMAKE_MODULE_PATH ${velk_windows})
include(CPack)
