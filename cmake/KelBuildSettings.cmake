# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT

# Compiler settings shared by every target of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_INCLUDE_CURRENT_DIR OFF)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()
# Line tables are all that a sanitizer report or a backtrace needs; full debug information
# doubles the build time of the many small test programs.
set(CMAKE_CXX_FLAGS_DEBUG "-O0 -g1")

if(PROJECT_IS_TOP_LEVEL)
    # One place for all shared libraries and programs, so that every program finds them without installing.
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
    set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

    find_program(KEL_CCACHE ccache)
    if(KEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
        set(CMAKE_CXX_COMPILER_LAUNCHER "${KEL_CCACHE}")
    endif()
    find_program(KEL_MOLD mold)
    if(KEL_MOLD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12.1)
        add_link_options(-fuse-ld=mold)
    endif()
    # The tests are many small programs: linking them two at a time only fights for memory.
    set_property(GLOBAL PROPERTY JOB_POOLS kel_link=1)
    set(CMAKE_JOB_POOL_LINK kel_link)
endif()

add_library(kel_build_settings INTERFACE)
target_compile_options(kel_build_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
    # GCC 12 takes an atomic pointer behind a function-static object for a write out of bounds.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-stringop-overflow>
    $<$<BOOL:${KEL_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_definitions(kel_build_settings INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_STRICT_ITERATORS
    $<$<BOOL:${KEL_STD_THREAD_EXECUTOR}>:KEL_STD_THREAD_EXECUTOR>)
# -0.0, NaN and infinities have a stated meaning here: no -ffast-math, and no contraction, so that
# every machine computes the same last bit.
target_compile_options(kel_build_settings INTERFACE -ffp-contract=off)

if(CMAKE_UNITY_BUILD)
    # Every source is included by another one then, and the private types of its classes count as those of a header.
    add_compile_options(-Wno-subobject-linkage)
endif()

if(KEL_SANITIZE)
    list(JOIN KEL_SANITIZE "," kel_sanitizers)
    add_compile_options(-fsanitize=${kel_sanitizers} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${kel_sanitizers})
    if("undefined" IN_LIST KEL_SANITIZE)
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
    if("float-cast-overflow" IN_LIST KEL_SANITIZE) # no part of "undefined"
        add_compile_options(-fno-sanitize-recover=float-cast-overflow)
    endif()
endif()
