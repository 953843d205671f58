# In a package of the system, programs and libraries find each other where the system looks anyway, and Debian's policy
# wants no path of their own in them. The archive keeps it: it may be unpacked anywhere.
if(CPACK_GENERATOR STREQUAL "DEB")
    file(GLOB_RECURSE programs ${CPACK_TEMPORARY_DIRECTORY}/*/usr/bin/* ${CPACK_TEMPORARY_DIRECTORY}/*/usr/lib/*.so.*)
    foreach(program IN LISTS programs)
        if(NOT IS_SYMLINK ${program})
            file(RPATH_REMOVE FILE ${program})
        endif()
    endforeach()
endif()
