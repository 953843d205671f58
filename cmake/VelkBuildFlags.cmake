# One interface target carries the warnings and sanitizers of everything that is built here. It is
# used as $<BUILD_INTERFACE:velk_build_flags>, so that it never reaches an installed package.
add_library(velk_build_flags INTERFACE)
target_compile_features(velk_build_flags INTERFACE cxx_std_20)
if(MSVC)
    target_compile_options(velk_build_flags INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus)
else()
    target_compile_options(velk_build_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion)
endif()
target_compile_definitions(velk_build_flags INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)
if(WIN32)
    target_compile_definitions(velk_build_flags INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN UNICODE _UNICODE)
endif()
if(VELK_SANITIZE)
    target_compile_options(velk_build_flags INTERFACE
        -fsanitize=${VELK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(velk_build_flags INTERFACE -fsanitize=${VELK_SANITIZE})
endif()

# What both libraries share: version, export name, a compile test of each public header alone.
function(velk_library_properties target export_name)
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${export_name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        COMPILE_WARNING_AS_ERROR ${VELK_WERROR}
        VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# The same for programs: warnings, sanitizers, and errors where they are asked for.
function(velk_program_properties target)
    target_link_libraries(${target} PRIVATE velk_build_flags)
    set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR ${VELK_WERROR})
endfunction()

# Sources with loops over every byte of large texts: with sanitizers and without any optimisation they
# would take most of the time of all tests.
function(velk_optimise_in_debug_builds)
    if(NOT MSVC)
        set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS $<$<CONFIG:Debug>:-O1>)
    endif()
endfunction()
