# Where the compiled programs cannot run on the machine that compiles them: Qt's tools are this machine's own. What
# moc writes says which Qt it is for, so a wrong one is noticed.
foreach(tool moc rcc uic)
    find_program(VELK_MACHINE_${tool} NAMES ${tool}-qt5 ${tool}
        HINTS /usr/lib/qt5/bin /usr/lib64/qt5/bin NO_CMAKE_FIND_ROOT_PATH NO_CMAKE_PATH REQUIRED)
    if(TARGET Qt5::${tool})
        set_target_properties(Qt5::${tool} PROPERTIES IMPORTED_LOCATION ${VELK_MACHINE_${tool}})
    endif()
endforeach()

# Found where the Qt for the other system is, or else here.
file(GLOB machine_linguist_tools /usr/lib/*/cmake/Qt5LinguistTools /usr/lib64/cmake/Qt5LinguistTools)
if(NOT EXISTS ${Qt5Core_DIR}/../Qt5LinguistTools AND machine_linguist_tools)
    list(GET machine_linguist_tools 0 Qt5LinguistTools_DIR)
endif()
