# Installs the build as a user would, into a folder with an unusual name, starts what is installed, and configures,
# builds and runs the consumer against it. Then all of this once more from another place, to which the folder was
# moved. Nothing here helps the loader or the package to find their files.
#   cmake -DBUILD=... -DSOURCE=... -DWORK=... -DCOMPILER=... -DLIBDIR=... -DVERSION=... -DQT_VERSION=... -P run.cmake
function(step)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_output text)
    string(FIND "${output}" "${text}" place)
    if(place EQUAL -1)
        message(FATAL_ERROR "\"${text}\" is not in this:\n${output}")
    endif()
endfunction()

function(try_package prefix)
    step("${prefix}/bin/velk" --version)
    if(NOT output MATCHES "${VERSION}")
        message(FATAL_ERROR "velk --version says \"${output}\", not ${VERSION}")
    endif()
    step(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen "${prefix}/bin/velk-browser" --version)
    set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
    set(build "${WORK}/build")
    file(REMOVE_RECURSE "${build}")
    step(${CMAKE_COMMAND} -S ${SOURCE} -B "${build}" -G Ninja -DCMAKE_CXX_COMPILER=${COMPILER}
        -DCMAKE_BUILD_TYPE=Release "-DCMAKE_PREFIX_PATH=${prefix}")
    expect_output("The package was built with Qt ${QT_VERSION} (${qt}).")
    expect_output("pkg-config names Qt ${QT_VERSION}.")
    step(${CMAKE_COMMAND} --build "${build}")
    step(${CMAKE_CTEST_COMMAND} --test-dir "${build}" --output-on-failure --no-tests=error)
endfunction()

# The package can be found beside the other Qt, but not where that is the only one.
function(try_other_qt prefix)
    math(EXPR other "11 - ${qt}")
    set(configure ${CMAKE_COMMAND} -S ${SOURCE}/other_qt -G Ninja -DCMAKE_CXX_COMPILER=${COMPILER}
        "-DCMAKE_PREFIX_PATH=${prefix}")
    step(${configure} -B "${WORK}/both" "-DFOUND=${qt}\\;${other}")
    execute_process(COMMAND ${configure} -B "${WORK}/other" -DFOUND=${other}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(result EQUAL 0)
        message(FATAL_ERROR "the package was found by a project with Qt ${other}:\n${output}")
    endif()
    string(REGEX REPLACE "[ \n]+" " " output "${output}")
    expect_output("This Velk was built with Qt ${QT_VERSION}, and this project has found Qt ${other}.")
endfunction()

string(REGEX MATCH "^[0-9]+" qt "${QT_VERSION}")
unset(ENV{LD_LIBRARY_PATH})
file(REMOVE_RECURSE "${WORK}")
step(${CMAKE_COMMAND} --install ${BUILD} --prefix "${WORK}/an odd place")
try_package("${WORK}/an odd place")
file(MAKE_DIRECTORY "${WORK}/elsewhere")
file(RENAME "${WORK}/an odd place" "${WORK}/elsewhere/velk")
try_package("${WORK}/elsewhere/velk")
try_other_qt("${WORK}/elsewhere/velk")
