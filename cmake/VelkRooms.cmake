# velk_join_rooms(NAME RESULT rooms...): adds the program NAME to the rooms of these paths, such as
# VelkLibrary/Search, and to the rooms around them. The target room.VelkLibrary.Search builds all programs of that
# room. RESULT gets the labels for their tests: room:VelkLibrary/Search, room:VelkLibrary.
function(velk_join_rooms name result)
    set(labels "")
    foreach(path IN LISTS ARGN)
        while(path)
            list(APPEND labels "room:${path}")
            string(REPLACE "/" "." target "room.${path}")
            if(NOT TARGET ${target})
                add_custom_target(${target})
            endif()
            add_dependencies(${target} ${name})
            get_filename_component(path "${path}" DIRECTORY)
        endwhile()
    endforeach()
    list(REMOVE_DUPLICATES labels)
    set(${result} ${labels} PARENT_SCOPE)
endfunction()
