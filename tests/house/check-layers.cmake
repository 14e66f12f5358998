# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT
#
# cmake -DLIBS=<libs folder> -P check-layers.cmake
#
# A folder may use those above it, never those below: reads the #include lines of every source and
# compares the folder of the file with the folder of the header.

cmake_minimum_required(VERSION 3.25)

# From the foundation upward.
set(floors
    KelCore KelXML KelGUIWidgets
    KelGeoLocation/base KelGeoLocation/geo KelGeoLocation/shape KelGeoLocation/track KelGeoLocation/config
    KelGeoLocation/selection KelGeoLocation/render KelGeoLocation/import KelGeoLocation/widgets)

# "source -> header" pairs that point upward and are wanted: a list of tracks can ask the user for a file.
set(exceptions "KelGPXConfiguredTrackList.cpp -> KelTrackSelectionFactory.h")
# KelXML stands beside KelCore and must not lean on it.
set(forbidden "KelXML -> KelCore")

set(violations "")
set(edges 0)
set(seen_exceptions "")

foreach(floor IN LISTS floors)
    file(GLOB headers "${LIBS}/${floor}/*.h")
    list(FIND floors "${floor}" level)
    foreach(header IN LISTS headers)
        cmake_path(GET header FILENAME name)
        if(DEFINED level_of_${name})
            string(APPEND violations "  ${name} exists on two floors\n")
        endif()
        set(level_of_${name} ${level})
        set(floor_of_${name} "${floor}")
    endforeach()
endforeach()

foreach(floor IN LISTS floors)
    list(FIND floors "${floor}" level)
    file(GLOB files "${LIBS}/${floor}/*.h" "${LIBS}/${floor}/*.cpp")
    foreach(file IN LISTS files)
        cmake_path(GET file FILENAME name)
        file(STRINGS "${file}" includes REGEX "^ *#include [<\"](.*/)?Kel[A-Za-z]*\\.h[>\"]")
        foreach(line IN LISTS includes)
            string(REGEX MATCH "Kel[A-Za-z]*\\.h" target "${line}")
            if(NOT DEFINED level_of_${target})
                string(APPEND violations "  ${floor}/${name} includes ${target}, which no floor holds\n")
                continue()
            endif()
            math(EXPR edges "${edges} + 1")
            set(pair "${name} -> ${target}")
            if("${pair}" IN_LIST exceptions)
                list(APPEND seen_exceptions "${pair}")
            elseif(level_of_${target} GREATER level)
                string(APPEND violations "  ${floor}/${name} includes ${target} of the lower floor ${floor_of_${target}}\n")
            elseif("${floor} -> ${floor_of_${target}}" IN_LIST forbidden)
                string(APPEND violations "  ${floor}/${name} includes ${target}: ${floor} stands on its own\n")
            endif()
        endforeach()
    endforeach()
endforeach()

foreach(exception IN LISTS exceptions)
    if(NOT "${exception}" IN_LIST seen_exceptions)
        string(APPEND violations "  the listed exception '${exception}' is not used any more\n")
    endif()
endforeach()

if(edges EQUAL 0)
    message(FATAL_ERROR "No #include lines were found below '${LIBS}'")
endif()
if(violations)
    message(FATAL_ERROR "The floor order is broken:\n${violations}")
endif()
message(STATUS "${edges} includes, all in floor order")
