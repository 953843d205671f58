# Finds libzip: LibZip::zip. Debian's own package configuration refers to programs of a package that nobody
# needs here, and stops the configuration when they are missing.
include(VelkFindLibrary)
velk_find_library(LibZip LibZip::zip HEADER zip.h LIBRARY zip)
