# SPDX-FileCopyrightText: The libKelGeoLocation authors
# SPDX-License-Identifier: MIT

# Debian packages with cpack: one for each component of the installation.
#
#     cmake --preset package && cmake --build --preset package && cpack --preset deb
#
# scripts/make-packages.sh does the same with Debian's own compiler flags and looks at the result with lintian.

# What Debian wants beside the files of the installation: changelog and copyright of each package, compressed texts.
function(kel_install_debian_files)
    find_program(KEL_GZIP gzip REQUIRED)
    set(dir "${PROJECT_BINARY_DIR}/debian")
    file(MAKE_DIRECTORY "${dir}")
    function(compress source target)
        # -n: neither name nor time go into the file, so that equal texts give equal packages.
        execute_process(COMMAND "${KEL_GZIP}" -9nc "${source}" OUTPUT_FILE "${target}" COMMAND_ERROR_IS_FATAL ANY)
    endfunction()
    compress("${PROJECT_SOURCE_DIR}/packaging/debian/changelog" "${dir}/changelog.Debian.gz")
    compress("${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${dir}/changelog.gz")
    foreach(component IN LISTS ARGN)
        string(TOUPPER "${component}" upper)
        install(FILES
            "${dir}/changelog.Debian.gz" "${dir}/changelog.gz" "${PROJECT_SOURCE_DIR}/packaging/debian/copyright"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}" COMPONENT "${component}")
    endforeach()
endfunction()

# kel_install_manual(<component> <file>): a page of section 1.
function(kel_install_manual component file)
    set(page "${file}")
    if(KEL_DEBIAN_FILES)
        find_program(KEL_GZIP gzip REQUIRED)
        cmake_path(GET file FILENAME name)
        set(page "${PROJECT_BINARY_DIR}/debian/${name}.gz")
        file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/debian")
        execute_process(COMMAND "${KEL_GZIP}" -9nc "${file}" OUTPUT_FILE "${page}" COMMAND_ERROR_IS_FATAL ANY)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
    endif()
    install(FILES "${page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT "${component}")
endfunction()

macro(kel_configure_packages)
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGE_NAME kelgeolocation)
    set(CPACK_PACKAGE_VENDOR "The libKelGeoLocation authors")
    set(CPACK_PACKAGE_CONTACT "The libKelGeoLocation authors <maintainers@example.org>")
    # Each package has a first line of its own.
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
    set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_STRIP_FILES ON)
    set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

    set(kel_components Runtime Development Tools Viewer)
    if(NOT KEL_BUILD_APPS)
        list(REMOVE_ITEM kel_components Tools Viewer)
    endif()
    if(KEL_BUILD_QML)
        list(APPEND kel_components Qml)
    endif()
    if(KEL_BUILD_DESIGNER_PLUGINS)
        list(APPEND kel_components Designer)
    endif()
    set(CPACK_COMPONENTS_ALL ${kel_components})
    set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
    set(CPACK_DEB_COMPONENT_INSTALL ON)

    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
    set(CPACK_DEBIAN_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    # The packages of one build need each other; their files are looked up in the build itself.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
    set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)

    set(kel_runtime libkelgeolocation${PROJECT_VERSION_MAJOR})
    set(kel_this_version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")

    set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${kel_runtime})
    # cpack does not know these two for single components; only this package has libraries for others.
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
    set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "places and GPS tracks on maps - shared libraries
Value types for coordinates, tracks read from GPX, KML and KMZ, a renderer
that draws tracks onto maps, and Qt item models and widgets for hosts that
show them.
.
This package holds the four shared libraries and the English texts.")
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "qt6-image-formats-plugins")
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/packaging/debian/triggers")

    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkelgeolocation-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${kel_runtime} (= ${kel_this_version}), qt6-base-dev")
    set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "places and GPS tracks on maps - development files
Value types for coordinates, tracks read from GPX, KML and KMZ, a renderer
that draws tracks onto maps, and Qt item models and widgets for hosts that
show them.
.
This package holds the headers, the CMake package and the pkg-config files.")

    set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME kel-render)
    set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
    set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${kel_runtime} (= ${kel_this_version})")
    set(CPACK_COMPONENT_TOOLS_DESCRIPTION "draw GPX, KML and KMZ tracks on a map
Reads track files, chooses the area that shows them and writes a picture: PNG,
JPEG or WebP in pixels, PDF or SVG as vectors. A map of the world is built in;
neither a display nor a network is needed.")

    set(CPACK_DEBIAN_VIEWER_PACKAGE_NAME kel-viewer)
    set(CPACK_DEBIAN_VIEWER_PACKAGE_SECTION graphics)
    set(CPACK_DEBIAN_VIEWER_PACKAGE_DEPENDS "${kel_runtime} (= ${kel_this_version})")
    set(CPACK_COMPONENT_VIEWER_DESCRIPTION "look at GPS tracks on a map and style them
A small desktop program: a list of tracks from GPX, KML and KMZ files, a map of
the world that is built in, an editor for lines, areas and markers, and export
as PNG, PDF or SVG.")

    set(CPACK_DEBIAN_QML_PACKAGE_NAME qml6-module-kelgeolocation)
    set(CPACK_DEBIAN_QML_PACKAGE_DEPENDS "${kel_runtime} (= ${kel_this_version}), qml6-module-qtqml")
    set(CPACK_COMPONENT_QML_DESCRIPTION "places and GPS tracks on maps - QML module
Positions, tracks and lists of tracks for programs that are written in QML.")

    set(CPACK_DEBIAN_DESIGNER_PACKAGE_NAME kelgeolocation-designer-plugins)
    set(CPACK_DEBIAN_DESIGNER_PACKAGE_SECTION devel)
    set(CPACK_DEBIAN_DESIGNER_PACKAGE_DEPENDS "${kel_runtime} (= ${kel_this_version})")
    set(CPACK_DEBIAN_DESIGNER_PACKAGE_RECOMMENDS "designer-qt6")
    set(CPACK_COMPONENT_DESIGNER_DESCRIPTION "places and GPS tracks on maps - widgets for Qt Designer
The angle editor and the label that shortens its text, in the widget box of Qt
Designer.")

    if(KEL_DEBIAN_FILES)
        kel_install_debian_files(${kel_components})
    endif()
    include(CPack)
endmacro()
