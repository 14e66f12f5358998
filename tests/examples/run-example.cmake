# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# Runs COMMAND in a fresh FOLDER; afterwards there are FILES that hold something, and CHECK says what it thinks of the
# picture.

cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${FOLDER}" COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")
run(${COMMAND})

foreach(name IN LISTS FILES)
    set(size 0)
    if(EXISTS "${FOLDER}/${name}")
        file(SIZE "${FOLDER}/${name}" size)
    endif()
    if(size LESS 100)
        message(FATAL_ERROR "${name} has ${size} bytes")
    endif()
endforeach()

list(GET CHECK 1 picture)
if(picture)
    run(${CHECK})
endif()
