# velk_find_library(NAME TARGET HEADER header LIBRARY names...): for the find module of a C library whose package
# configuration is missing or useless. Finds the library by its header and file and makes the imported target.
include(FindPackageHandleStandardArgs)

macro(velk_find_library name target)
    cmake_parse_arguments(VELK_FIND "" "HEADER" "LIBRARY" ${ARGN})
    find_path(${name}_INCLUDE_DIR ${VELK_FIND_HEADER})
    find_library(${name}_LIBRARY NAMES ${VELK_FIND_LIBRARY})
    find_package_handle_standard_args(${name} REQUIRED_VARS ${name}_LIBRARY ${name}_INCLUDE_DIR)
    mark_as_advanced(${name}_LIBRARY ${name}_INCLUDE_DIR)
    if(${name}_FOUND AND NOT TARGET ${target})
        add_library(${target} UNKNOWN IMPORTED)
        set_target_properties(${target} PROPERTIES
            IMPORTED_LOCATION "${${name}_LIBRARY}"
            INTERFACE_INCLUDE_DIRECTORIES "${${name}_INCLUDE_DIR}")
    endif()
endmacro()
