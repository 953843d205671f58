# Installs what the programs run with beside them: the DLLs of Qt and of the compiler, and Qt's plugins. What is not found
# must be Windows' own.
#
# velk_modules      what is installed, with dependencies
# velk_folders      where their DLLs are looked for; the first is where Qt's are
# velk_links        a folder for links, where this machine is not Windows
# velk_objdump      what tells what a module needs
# velk_strip        what takes from DLLs what only debuggers need; may be empty
# velk_destination  the programs' folder, below the prefix
set(CMAKE_GET_RUNTIME_DEPENDENCIES_PLATFORM windows+pe)
if(velk_objdump MATCHES objdump)
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_TOOL objdump)
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_COMMAND ${velk_objdump})
endif()

# Those for windows and pictures; the others of Qt are for tests and databases.
list(GET velk_folders 0 qt_folder)
get_filename_component(qt_plugins ${qt_folder}/../plugins ABSOLUTE)
file(GLOB plugins
    ${qt_plugins}/platforms/qwindows.dll ${qt_plugins}/imageformats/q*.dll ${qt_plugins}/styles/q*style.dll)
if(NOT plugins MATCHES qwindows)
    message(FATAL_ERROR "Qt's plugin for windows is not in ${qt_plugins}")
endif()

# To Windows a name is the same in capitals, and CMake looks for all of them in lower case.
set(searched ${velk_folders})
if(NOT CMAKE_HOST_WIN32)
    file(REMOVE_RECURSE ${velk_links})
    file(MAKE_DIRECTORY ${velk_links})
    list(TRANSFORM velk_folders APPEND /*.dll OUTPUT_VARIABLE patterns)
    file(GLOB there_are ${patterns})
    foreach(library IN LISTS there_are)
        get_filename_component(name ${library} NAME)
        string(TOLOWER ${name} name)
        if(NOT EXISTS ${velk_links}/${name})
            file(CREATE_LINK ${library} ${velk_links}/${name} SYMBOLIC)
        endif()
    endforeach()
    set(searched ${velk_links})
endif()

# The project's own are installed as such.
file(GET_RUNTIME_DEPENDENCIES
    EXECUTABLES ${velk_modules} LIBRARIES ${plugins} DIRECTORIES ${searched}
    PRE_EXCLUDE_REGEXES "^(api|ext)-ms-"
    POST_EXCLUDE_REGEXES "/(lib)?velk[a-z]*\\.dll$" "/(lib)?Velk[A-Za-z]*\\.dll$" "[Ss]ystem32"
    RESOLVED_DEPENDENCIES_VAR found
    UNRESOLVED_DEPENDENCIES_VAR unknown)
set(libraries "")
foreach(library IN LISTS found)
    file(REAL_PATH ${library} library)
    list(APPEND libraries ${library})
endforeach()

set(of_windows advapi32 authz bcrypt comctl32 comdlg32 crypt32 d2d1 d3d9 d3d11 dnsapi dwmapi dwrite dxgi gdi32 imm32
    iphlpapi kernel32 mpr msvcrt mswsock ncrypt netapi32 ole32 oleaut32 opengl32 rpcrt4 secur32 setupapi shell32 shlwapi
    user32 userenv uxtheme version winhttp winmm wldap32 ws2_32 wtsapi32)
list(TRANSFORM unknown TOLOWER)
list(TRANSFORM unknown REPLACE "\\.dll$" "")
list(REMOVE_ITEM unknown ${of_windows})
if(unknown)
    message(FATAL_ERROR "The programs need what is neither Windows' own nor in ${velk_folders}: ${unknown}")
endif()

set(folder ${CMAKE_INSTALL_PREFIX}/${velk_destination})
file(INSTALL ${libraries} DESTINATION ${folder} TYPE SHARED_LIBRARY)
# The compiler's bring what debuggers want, many times as large as they are.
foreach(library IN LISTS libraries)
    get_filename_component(name ${library} NAME)
    if(velk_strip)
        execute_process(COMMAND ${velk_strip} $ENV{DESTDIR}${folder}/${name} COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()
foreach(plugin IN LISTS plugins)
    get_filename_component(kind ${plugin} DIRECTORY)
    get_filename_component(kind ${kind} NAME)
    file(INSTALL ${plugin} DESTINATION ${folder}/${kind} TYPE MODULE)
endforeach()
