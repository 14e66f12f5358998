# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT

find_package(Qt6 6.4 REQUIRED COMPONENTS Test)

# Leaks are looked for wherever the system lets the sanitizer stop a process's threads as a debugger does; some containers
# do not, and every program would fail there. This one leaks nothing.
set(kel_sanitizer_options "TSAN_OPTIONS=halt_on_error=1:suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp;UBSAN_OPTIONS=print_stacktrace=1")
if("address" IN_LIST KEL_SANITIZE)
    include(CheckCXXSourceRuns)
    set(CMAKE_REQUIRED_FLAGS -fsanitize=address)
    check_cxx_source_runs("int main() { return 0; }" KEL_LEAKS_CAN_BE_FOUND)
    unset(CMAKE_REQUIRED_FLAGS)
    if(KEL_LEAKS_CAN_BE_FOUND)
        list(APPEND kel_sanitizer_options "ASAN_OPTIONS=detect_leaks=1"
            "LSAN_OPTIONS=print_suppressions=0:suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp")
    else()
        message(WARNING "Leaks cannot be looked for on this system.")
        list(APPEND kel_sanitizer_options "ASAN_OPTIONS=detect_leaks=0")
    endif()
endif()

# kel_add_test(<folder> <class or topic> [LINK <targets>] [SOURCES <further files>])
#
# Builds tests/<folder>/tst_<topic>.cpp and registers it with the label <folder>. Tests run without a
# display, in an English-free "C" locale, and with their settings in a place of their own.
function(kel_add_test folder topic)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "LINK;SOURCES")
    set(name tst_${topic})
    add_executable(${name} "${PROJECT_SOURCE_DIR}/tests/${folder}/${name}.cpp" ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
    # AUTOMOC would compile an empty file beside each of these many small programs: a fifth of the whole build.
    set(moc "${CMAKE_CURRENT_BINARY_DIR}/${name}_moc/${name}.moc")
    qt_generate_moc("${PROJECT_SOURCE_DIR}/tests/${folder}/${name}.cpp" "${moc}" TARGET ${name})
    target_sources(${name} PRIVATE "${moc}")
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${name}_moc")
    target_link_libraries(${name} PRIVATE kel_build_settings kel_test_support Kel::GeoLocation Qt6::Test ${arg_LINK})
    target_compile_definitions(${name} PRIVATE
        KEL_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data"
        KEL_EXAMPLES_DIR="${PROJECT_SOURCE_DIR}/examples")
    if(KEL_USE_PCH)
        # Qt Test defines the folders of each test, and a macro that differs makes the shared header useless.
        target_compile_options(${name} PRIVATE -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
        target_precompile_headers(${name} REUSE_FROM kel_test_pch)
    endif()
    set(arguments "")
    if("thread" IN_LIST KEL_SANITIZE)
        # Qt Test's own watchdog thread waits in a way that the sanitizer cannot follow.
        set(arguments -nocrashhandler)
    endif()
    add_test(NAME ${name} COMMAND ${name} ${arguments})
    set_tests_properties(${name} PROPERTIES
        LABELS ${folder}
        TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TZ=UTC;XDG_CONFIG_HOME=${PROJECT_BINARY_DIR}/tests/config/${name};XDG_DATA_HOME=${PROJECT_BINARY_DIR}/tests/data-home;${kel_sanitizer_options}")
endfunction()
