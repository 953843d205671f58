# Finds libdeflate: LibDeflate::deflate. Its older releases, Debian 12's among them, come without a package
# configuration.
include(VelkFindLibrary)
velk_find_library(LibDeflate LibDeflate::deflate HEADER libdeflate.h LIBRARY deflate libdeflate)
