# Toolchain for 64-bit Windows: MinGW-w64 on another system (preset "windows").
#
# VELK_WINDOWS_PREFIX, a variable here or in the environment, is the folder of the libraries that were built for
# Windows, with include/ and lib/; default build/windows/prefix. Qt may lie in the folder qt/ of it. Libraries that
# consist of headers alone are taken from this machine where the folder has none.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

# Debian's plain names may stand for compilers without the standard library's threads.
set(windows_triplet x86_64-w64-mingw32)
find_program(VELK_WINDOWS_CC NAMES ${windows_triplet}-gcc-posix ${windows_triplet}-gcc)
find_program(VELK_WINDOWS_CXX NAMES ${windows_triplet}-g++-posix ${windows_triplet}-g++)
set(CMAKE_C_COMPILER ${VELK_WINDOWS_CC})
set(CMAKE_CXX_COMPILER ${VELK_WINDOWS_CXX})
set(CMAKE_RC_COMPILER ${windows_triplet}-windres)

if(NOT VELK_WINDOWS_PREFIX)
    set(VELK_WINDOWS_PREFIX "$ENV{VELK_WINDOWS_PREFIX}")
endif()
if(NOT VELK_WINDOWS_PREFIX)
    get_filename_component(VELK_WINDOWS_PREFIX ${CMAKE_CURRENT_LIST_DIR}/../build/windows/prefix ABSOLUTE)
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELK_WINDOWS_PREFIX)

set(machine_headers ${CMAKE_BINARY_DIR}/machine)
set(CMAKE_PREFIX_PATH ${VELK_WINDOWS_PREFIX}/qt ${VELK_WINDOWS_PREFIX} ${machine_headers})
set(CMAKE_FIND_ROOT_PATH ${CMAKE_PREFIX_PATH} /usr/${windows_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ZLIB_USE_STATIC_LIBS ON)
set(OPENSSL_USE_STATIC_LIBS ON)

# Links to these folders alone: the machine's whole include folder would bring its C library.
get_property(trying GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT trying)
    foreach(folder boost CLI nlohmann)
        if(EXISTS /usr/include/${folder} AND NOT EXISTS ${VELK_WINDOWS_PREFIX}/include/${folder})
            file(MAKE_DIRECTORY ${machine_headers}/include)
            file(CREATE_LINK /usr/include/${folder} ${machine_headers}/include/${folder} SYMBOLIC)
        endif()
    endforeach()
    # They look for their headers from where they lie, so they are copied.
    foreach(configuration CLI11 nlohmann_json)
        if(EXISTS /usr/share/cmake/${configuration})
            file(COPY /usr/share/cmake/${configuration} DESTINATION ${machine_headers}/share/cmake)
        endif()
    endforeach()
endif()

# What is built here runs under Wine, with the same libraries.
set(CMAKE_CROSSCOMPILING_EMULATOR
    env VELK_WINDOWS_PREFIX=${VELK_WINDOWS_PREFIX} ${CMAKE_CURRENT_LIST_DIR}/../tools/windows/under-wine.sh)

# Windows 10.
add_compile_definitions(_WIN32_WINNT=0x0A00 WINVER=0x0A00)
