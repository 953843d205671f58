# Finds cpp-httplib: HttpLib::httplib, with TLS. Debian has a header and a compiled library; elsewhere there is
# only the header. Targets that use it link OpenSSL themselves.
find_path(HttpLib_INCLUDE_DIR httplib.h)
find_library(HttpLib_LIBRARY NAMES cpp-httplib)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(HttpLib REQUIRED_VARS HttpLib_INCLUDE_DIR)
mark_as_advanced(HttpLib_LIBRARY HttpLib_INCLUDE_DIR)
if(HttpLib_FOUND AND NOT TARGET HttpLib::httplib)
    add_library(HttpLib::httplib INTERFACE IMPORTED)
    set_target_properties(HttpLib::httplib PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${HttpLib_INCLUDE_DIR}"
        INTERFACE_COMPILE_DEFINITIONS CPPHTTPLIB_OPENSSL_SUPPORT)
    if(HttpLib_LIBRARY)
        set_property(TARGET HttpLib::httplib PROPERTY INTERFACE_LINK_LIBRARIES "${HttpLib_LIBRARY}")
    elseif(WIN32)
        set_property(TARGET HttpLib::httplib PROPERTY INTERFACE_LINK_LIBRARIES ws2_32 crypt32)
    endif()
endif()
