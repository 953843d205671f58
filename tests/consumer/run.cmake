# Installs the build into a fresh prefix, then configures, builds and runs the consumer against it.
#   cmake -DBUILD=... -DSOURCE=... -DWORK=... -DCOMPILER=... -P run.cmake
function(step)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
step(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)
# The package file holds the prefix that was configured; the test installs elsewhere.
file(GLOB_RECURSE pc ${WORK}/prefix/velk.pc)
file(READ ${pc} text)
string(REGEX REPLACE "prefix=[^\n]*\n" "prefix=${WORK}/prefix\n" text "${text}")
file(WRITE ${pc} "${text}")
get_filename_component(pc_dir ${pc} DIRECTORY)
get_filename_component(lib_dir ${pc_dir} DIRECTORY)

set(ENV{PKG_CONFIG_PATH} ${pc_dir})
set(ENV{LD_LIBRARY_PATH} ${lib_dir})
step(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G Ninja -DCMAKE_CXX_COMPILER=${COMPILER}
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH=${WORK}/prefix)
step(${CMAKE_COMMAND} --build ${WORK}/build)
step(${CMAKE_CTEST_COMMAND} --test-dir ${WORK}/build --output-on-failure)
