# Finds libzip: LibZip::zip. Debian's own package configuration refers to programs of a package that is not
# needed here, and stops the configuration when they are missing.
include(VelkFindLibrary)
velk_find_library(LibZip LibZip::zip HEADER zip.h LIBRARY zip)
