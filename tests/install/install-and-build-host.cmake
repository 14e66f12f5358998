# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Installs the built tree into a fresh prefix, moves that prefix (an installed package must be relocatable),
# builds the host project against it and runs the host: once through the CMake package, once through pkg-config.

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

# The same source by hand, as Makefiles do it.
set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIB_DIR}/pkgconfig")
execute_process(COMMAND pkg-config --cflags --libs KelGeoLocation OUTPUT_VARIABLE flags
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(FIND "${flags}" "-I${prefix}/" own)
if(own EQUAL -1 OR flags MATCHES "first-prefix")
    message(FATAL_ERROR "pkg-config does not follow the prefix: ${flags}")
endif()
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${LAUNCHER} "${COMPILER}" -std=c++20 "${HOST_SOURCE}/main.cpp" -o "${WORK_DIR}/by-hand" ${flags}
    "-Wl,-rpath,${prefix}/${LIB_DIR}")
run("${WORK_DIR}/by-hand" "${WORK_DIR}/by-hand.png")
execute_process(COMMAND pkg-config --variable=translationsdir KelGeoLocation OUTPUT_VARIABLE translations
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT EXISTS "${translations}/kelgeolocation_en.qm")
    message(FATAL_ERROR "pkg-config says that the English texts are in \"${translations}\", where they are not")
endif()
# Each library has a file of its own, and all know their version.
foreach(library KelCore KelXML KelGUIWidgets KelGeoLocation)
    run(pkg-config --print-errors "--exact-version=${VERSION}" ${library})
endforeach()

# Components: those that exist, and one that does not.
function(configure_components outcome_variable output_variable)
    file(REMOVE_RECURSE "${WORK_DIR}/components")
    execute_process(COMMAND "${CMAKE_COMMAND}" -S "${HOST_SOURCE}/../components" -B "${WORK_DIR}/components" -G "${GENERATOR}"
        "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${COMPILER}" ${ARGN}
        RESULT_VARIABLE outcome OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(${outcome_variable} "${outcome}" PARENT_SCOPE)
    set(${output_variable} "${output}" PARENT_SCOPE)
endfunction()
configure_components(outcome output "-DWANTED=Core,XML,GUIWidgets,GeoLocation" -DOPTIONAL=Telepathy)
if(NOT outcome EQUAL 0)
    message(FATAL_ERROR "The components were not found:\n${output}")
endif()
configure_components(outcome output "-DWANTED=Core,Telepathy")
string(REGEX REPLACE "[ \n]+" " " output "${output}")
if(outcome EQUAL 0 OR NOT output MATCHES "no component \"Telepathy\"; its components are Core, XML, GUIWidgets, GeoLocation")
    message(FATAL_ERROR "An unknown component was not refused:\n${output}")
endif()
