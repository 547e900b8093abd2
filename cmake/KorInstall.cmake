# SPDX-License-Identifier: MIT
# What `cmake --install` puts where, by component (`cmake --install BUILD --component runtime`):
#
#   runtime          the library, and the helper program that examines plug-ins
#   development      headers, CMake package, pkg-config files, the link for the linker
#   tools            scoutrix and kordump, and the plug-ins they load files with
#   qt               the window back end on Qt, when it is built
#   qt-development   its headers and packages
#   licence          the licence, which distributions have a place of their own for
#   debug            debug information of the libraries; only when it is asked for
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KorTools)
set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# kor_included_headers(<variable> <header>) collects the header and, recursively, the library's own
# headers that it includes, as paths below the top of the source tree.
function(kor_included_headers variable header)
    set(headers ${${variable}})
    if(NOT header IN_LIST headers)
        list(APPEND headers ${header})
        set_property(DIRECTORY APPEND PROPERTY
            CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${header}")
        file(STRINGS "${PROJECT_SOURCE_DIR}/${header}" includes REGEX "^ *# *include \"kortools/")
        foreach(include IN LISTS includes)
            string(REGEX REPLACE "^[^\"]*\"([^\"]*)\".*" "\\1" included "${include}")
            kor_included_headers(headers ${included})
        endforeach()
    endif()
    set(${variable} ${headers} PARENT_SCOPE)
endfunction()

function(kor_install_headers component)
    foreach(header IN LISTS ARGN)
        get_filename_component(folder ${header} DIRECTORY)
        install(FILES "${PROJECT_SOURCE_DIR}/${header}"
            DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT ${component})
    endforeach()
endfunction()

# kor_install_targets(<export> <runtime component> <development component> <targets>...)
function(kor_install_targets export runtime development)
    install(TARGETS ${ARGN} EXPORT ${export}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${runtime}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            COMPONENT ${runtime} NAMELINK_COMPONENT ${development}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${development})
    install(EXPORT ${export} NAMESPACE KorTools:: DESTINATION ${package_dir}
        COMPONENT ${development})
endfunction()

# kor_install_pc(<file> <component> <name> <target> <cflags> <requires>)
#
# A .pc file finds its prefix from its own place, so that an installed tree can be moved.
function(kor_install_pc file component pc_name target pc_cflags pc_requires)
    file(RELATIVE_PATH pc_to_prefix "/${pc_dir}" "/")
    get_target_property(pc_library ${target} OUTPUT_NAME)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/kortools.pc.in" "${PROJECT_BINARY_DIR}/${file}"
        @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${file}" DESTINATION ${pc_dir} COMPONENT ${component})
endfunction()

kor_included_headers(public_headers kortools/kortools.h)
kor_install_headers(development ${public_headers})
kor_install_targets(KorToolsTargets runtime development KorTools KorToolsPlugin)
kor_install_pc(kortools.pc development KorTools KorTools -fnon-call-exceptions "")

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/KorToolsConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/KorToolsConfig.cmake" INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KorToolsConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KorToolsConfig.cmake"
    "${PROJECT_BINARY_DIR}/KorToolsConfigVersion.cmake"
    DESTINATION ${package_dir} COMPONENT development)
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION ${CMAKE_INSTALL_DOCDIR}
    COMPONENT licence)

if(TARGET KorToolsQt)
    file(GLOB candidates RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
        "${PROJECT_SOURCE_DIR}/kortools/ui/qt/*.h")
    foreach(header IN LISTS candidates)
        file(STRINGS "${PROJECT_SOURCE_DIR}/${header}" exported REGEX "KORTOOLS_QT_API" LIMIT_COUNT 1)
        if(exported)
            kor_included_headers(qt_headers ${header})
        endif()
    endforeach()
    list(REMOVE_ITEM qt_headers ${public_headers})
    kor_install_headers(qt-development ${qt_headers})
    set_target_properties(KorToolsQt PROPERTIES INSTALL_RPATH "$ORIGIN")
    kor_install_targets(KorToolsQtTargets qt qt-development KorToolsQt)
    kor_install_pc(kortools-qt.pc qt-development "KorTools for Qt" KorToolsQt "" kortools)
endif()
