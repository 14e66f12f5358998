# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT

# Where the catalogues of translations are installed, below the prefix.
set(KEL_TRANSLATIONS_DIR "${CMAKE_INSTALL_DATADIR}/KelGeoLocation/translations")

# kel_add_library(<name> ALIAS <name in the Kel:: namespace> BASE_DIRS <dirs> HEADERS <files> SOURCES <files>
#                 [PUBLIC_LINK <targets>] [PRIVATE_LINK <targets>])
#
# A shared library of the family. Headers are a file set: they are found flat (<KelLatitude.h>) and under
# the library's name (<KelGeoLocation/KelLatitude.h>), in the build tree and when installed.
function(kel_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "ALIAS" "BASE_DIRS;HEADERS;SOURCES;PUBLIC_LINK;PRIVATE_LINK")
    add_library(${name} SHARED)
    add_library(Kel::${arg_ALIAS} ALIAS ${name})
    target_sources(${name}
        PUBLIC FILE_SET HEADERS BASE_DIRS ${arg_BASE_DIRS} FILES ${arg_HEADERS}
        PRIVATE ${arg_SOURCES})
    string(TOUPPER ${name} upper)
    set_target_properties(${name} PROPERTIES
        EXPORT_NAME ${arg_ALIAS}
        VERSION ${PROJECT_VERSION}
        # One major version, 0 included, is one binary interface: scripts/check-abi.sh compares it.
        SOVERSION ${PROJECT_VERSION_MAJOR}
        DEFINE_SYMBOL ${upper}_LIBRARY
        # An installed library finds its sisters beside it, wherever the prefix lies.
        INSTALL_RPATH "$ORIGIN"
        AUTOMOC ON
        VERIFY_INTERFACE_HEADER_SETS ON)
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name}
        PUBLIC ${arg_PUBLIC_LINK}
        PRIVATE $<BUILD_INTERFACE:kel_build_settings> ${arg_PRIVATE_LINK})

    # In the build tree <Library/Header.h> is served by a folder of forwarding links.
    set(forward "${PROJECT_BINARY_DIR}/include/${name}")
    file(MAKE_DIRECTORY "${forward}")
    foreach(header IN LISTS arg_HEADERS)
        cmake_path(ABSOLUTE_PATH header BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" OUTPUT_VARIABLE absolute)
        cmake_path(GET absolute FILENAME file)
        file(CREATE_LINK "${absolute}" "${forward}/${file}" SYMBOLIC)
    endforeach()
    target_include_directories(${name} INTERFACE
        $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/${name}>)

    install(TARGETS ${name} EXPORT KelGeoLocationTargets
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Runtime NAMELINK_COMPONENT Development
        FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${name}" COMPONENT Development)
endfunction()

# kel_precompile(<target> [further headers])
#
# Precompiled headers cost one compile and save most of the parsing of Qt in every other one.
function(kel_precompile target)
    if(KEL_USE_PCH)
        target_precompile_headers(${target} PRIVATE
            <QColor> <QDateTime> <QDir> <QDomDocument> <QFileInfo> <QHash> <QImage> <QList> <QPainter> <QPainterPath>
            <QPointF> <QRegularExpression> <QSharedData> <QString> <QVariant> <cmath> <memory> ${ARGN})
    endif()
endfunction()

# A file for pkg-config beside each library. It finds its prefix from where it lies, so it may be moved with it.
function(kel_install_pkg_config name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "DESCRIPTION;REQUIRES" "")
    set(dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
    file(RELATIVE_PATH up "/prefix/${dir}" "/prefix")
    string(REGEX REPLACE "/$" "" up "${up}")
    file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/pkgconfig/${name}.pc" @ONLY CONTENT
"prefix=\${pcfiledir}/${up}
libdir=\${prefix}/${CMAKE_INSTALL_LIBDIR}
includedir=\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}
translationsdir=\${prefix}/${KEL_TRANSLATIONS_DIR}

Name: ${name}
Description: ${arg_DESCRIPTION}
Version: ${PROJECT_VERSION}
Requires: ${arg_REQUIRES}
Libs: -L\${libdir} -l${name}
Cflags: -I\${includedir} -I\${includedir}/${name}
")
    install(FILES "${PROJECT_BINARY_DIR}/pkgconfig/${name}.pc" DESTINATION "${dir}" COMPONENT Development)
endfunction()

function(kel_install_package)
    set(dir "${CMAKE_INSTALL_LIBDIR}/cmake/KelGeoLocation")
    configure_package_config_file(
        "${PROJECT_SOURCE_DIR}/cmake/KelGeoLocationConfig.cmake.in"
        "${PROJECT_BINARY_DIR}/KelGeoLocationConfig.cmake"
        INSTALL_DESTINATION "${dir}"
        PATH_VARS KEL_TRANSLATIONS_DIR)
    write_basic_package_version_file("${PROJECT_BINARY_DIR}/KelGeoLocationConfigVersion.cmake"
        COMPATIBILITY SameMajorVersion)
    install(FILES
        "${PROJECT_BINARY_DIR}/KelGeoLocationConfig.cmake"
        "${PROJECT_BINARY_DIR}/KelGeoLocationConfigVersion.cmake"
        DESTINATION "${dir}" COMPONENT Development)
    install(EXPORT KelGeoLocationTargets NAMESPACE Kel:: DESTINATION "${dir}" COMPONENT Development)

    kel_install_pkg_config(KelCore
        DESCRIPTION "Small helpers of the Kel libraries: settings, ranges, distances, pen styles"
        REQUIRES "Qt6Core, Qt6Gui, Qt6Widgets, Qt6Xml")
    kel_install_pkg_config(KelXML
        DESCRIPTION "XML and zip archives for the Kel libraries"
        REQUIRES "Qt6Core, Qt6Gui, Qt6Xml")
    kel_install_pkg_config(KelGUIWidgets
        DESCRIPTION "Widgets that the Kel libraries share"
        REQUIRES "KelCore = ${PROJECT_VERSION}, Qt6Widgets")
    kel_install_pkg_config(KelGeoLocation
        DESCRIPTION "${PROJECT_DESCRIPTION}"
        REQUIRES "KelXML = ${PROJECT_VERSION}, KelGUIWidgets = ${PROJECT_VERSION}, Qt6Concurrent")
endfunction()
