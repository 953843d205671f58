# Finds libzip: LibZip::zip. Debian's own package configuration refers to programs of a package that is not
# needed here, and stops the configuration when they are missing.
include(VelkFindLibrary)
velk_find_library(LibZip LibZip::zip HEADER zip.h LIBRARY zip)
# A static one brings nothing of what it needs.
if(LibZip_LIBRARY MATCHES "\\.a$" AND NOT LibZip_LIBRARY MATCHES "\\.dll\\.a$")
    find_package(ZLIB REQUIRED)
    set_property(TARGET LibZip::zip PROPERTY INTERFACE_LINK_LIBRARIES
        ZLIB::ZLIB $<$<PLATFORM_ID:Windows>:bcrypt> $<$<PLATFORM_ID:Windows>:advapi32>)
endif()
