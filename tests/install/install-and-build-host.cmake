# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Installs the built tree into a fresh prefix, moves that prefix (an installed package must be relocatable),
# builds the host project against it and runs the host.

cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/first-prefix")
file(RENAME "${WORK_DIR}/first-prefix" "${WORK_DIR}/prefix")
set(prefix "${WORK_DIR}/prefix")

run("${CMAKE_COMMAND}" -S "${HOST_SOURCE}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
    -DCMAKE_BUILD_TYPE=Debug
    "-DINSTALLED_HEADERS=${prefix}/${INCLUDE_DIR}")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")
run("${WORK_DIR}/build/host" "${WORK_DIR}/host.png")

# The example that is a project of its own, as its guide tells.
run("${CMAKE_COMMAND}" -S "${EXAMPLES}/host-in-60-lines" -B "${WORK_DIR}/build-example" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
    -DCMAKE_BUILD_TYPE=Debug)
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build-example")
run("${WORK_DIR}/build-example/host-in-60-lines" "${EXAMPLES}/tracks/city-walk.gpx" --screenshot "${WORK_DIR}/example.png")
