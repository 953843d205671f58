# Finds libdeflate by its header and library: LibDeflate::deflate. Its older releases, Debian 12's among
# them, come without a package configuration.
find_path(LibDeflate_INCLUDE_DIR libdeflate.h)
find_library(LibDeflate_LIBRARY NAMES deflate libdeflate)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LibDeflate REQUIRED_VARS LibDeflate_LIBRARY LibDeflate_INCLUDE_DIR)
mark_as_advanced(LibDeflate_LIBRARY LibDeflate_INCLUDE_DIR)
if(LibDeflate_FOUND AND NOT TARGET LibDeflate::deflate)
    add_library(LibDeflate::deflate UNKNOWN IMPORTED)
    set_target_properties(LibDeflate::deflate PROPERTIES
        IMPORTED_LOCATION "${LibDeflate_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${LibDeflate_INCLUDE_DIR}")
endif()
