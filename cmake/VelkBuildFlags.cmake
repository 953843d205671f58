# Interface targets carry the warnings and sanitizers of everything that is built here. They are used
# as $<BUILD_INTERFACE:...>, so that they never reach an installed package.
add_library(velk_warnings INTERFACE)
target_compile_features(velk_warnings INTERFACE cxx_std_20)
if(MSVC)
    # The parser's templates, and several sources as one, have more sections than an object file may have without /bigobj.
    target_compile_options(velk_warnings INTERFACE /W4 /permissive- /utf-8 /bigobj /Zc:__cplusplus)
    # C4251 and C4275: an exported class has a member or a base of the standard library or of Boost. That matters where a
    # program has another standard library than ours, and such a program cannot use the libraries anyway: strings and
    # containers are in nearly every call. What users of the class touch are exported functions. A base that is a class
    # template is another matter: see VELKLIBRARY_VISIBLE.
    target_compile_options(velk_warnings INTERFACE /wd4251 /wd4275)
    # The C library's functions that Microsoft would rather see replaced by its own.
    target_compile_definitions(velk_warnings INTERFACE _CRT_SECURE_NO_WARNINGS)
else()
    target_compile_options(velk_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion)
endif()
# Where several sources are compiled as one, g++ takes all but the first for headers, and warns of types that use
# unnamed namespaces in them.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(velk_warnings INTERFACE -Wno-subobject-linkage)
endif()
# g++ 12 sees texts overlap themselves where a text is put before another one ("x" + text), with -O3 and sources one by one.
if(NOT CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(velk_warnings INTERFACE -Wno-restrict)
endif()
# What Qt 5 or Qt 6.4 calls deprecated is not there at all.
target_compile_definitions(velk_warnings INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(WIN32)
    target_compile_definitions(velk_warnings INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN UNICODE _UNICODE
        _WIN32_WINNT=0x0A00 WINVER=0x0A00  # Windows 10
        BOOST_SYSTEM_USE_UTF8)  # or its texts of errors would be in the system's code page
endif()

# The product's flags.
add_library(velk_build_flags INTERFACE)
target_link_libraries(velk_build_flags INTERFACE velk_warnings)
if(VELK_SANITIZE)
    target_compile_options(velk_build_flags INTERFACE
        -fsanitize=${VELK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(velk_build_flags INTERFACE -fsanitize=${VELK_SANITIZE})
endif()

# The tests' flags. Without optimisation tests compile sooner, and nearly all of them run as fast. The memory
# errors of a test are found too, but undefined behaviour is looked for in the product alone.
add_library(velk_test_flags INTERFACE)
target_link_libraries(velk_test_flags INTERFACE velk_warnings)
if(NOT MSVC)
    target_compile_options(velk_test_flags INTERFACE -O0)
endif()
if(VELK_SANITIZE)
    string(REPLACE ",undefined" "" sanitize_tests "${VELK_SANITIZE}")
    target_compile_options(velk_test_flags INTERFACE -fsanitize=${sanitize_tests} -fno-omit-frame-pointer)
    target_link_options(velk_test_flags INTERFACE -fsanitize=${VELK_SANITIZE})
endif()

# What the libraries share: version, export name, and a check that each public header compiles alone.
function(velk_library_properties target export_name)
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${export_name}
        VERSION ${PROJECT_VERSION}
        # As long as a new minor version may break programs, it has a name of its own for the loader, too.
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
        COMPILE_WARNING_AS_ERROR ${VELK_WERROR}
        VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# What the programs share: warnings, which are errors if VELK_WERROR says so, and sanitizers.
function(velk_program_properties target)
    target_link_libraries(${target} PRIVATE velk_build_flags)
    set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR ${VELK_WERROR})
endfunction()
