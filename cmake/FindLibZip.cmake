# Finds libzip by its header and library: LibZip::zip. Debian's own package configuration refers to
# programs of a package that nobody needs here, and stops the configuration when they are missing.
find_path(LibZip_INCLUDE_DIR zip.h)
find_library(LibZip_LIBRARY NAMES zip)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LibZip REQUIRED_VARS LibZip_LIBRARY LibZip_INCLUDE_DIR)
mark_as_advanced(LibZip_LIBRARY LibZip_INCLUDE_DIR)
if(LibZip_FOUND AND NOT TARGET LibZip::zip)
    add_library(LibZip::zip UNKNOWN IMPORTED)
    set_target_properties(LibZip::zip PROPERTIES
        IMPORTED_LOCATION "${LibZip_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${LibZip_INCLUDE_DIR}")
endif()
