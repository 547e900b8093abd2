# SPDX-License-Identifier: MIT
# What `cmake --install` puts where: the library, its public headers, a CMake package, a pkg-config
# file, the programs and the licence.
include(CMakePackageConfigHelpers)

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

kor_included_headers(public_headers kortools/kortools.h)
foreach(header IN LISTS public_headers)
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES "${PROJECT_SOURCE_DIR}/${header}"
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
endforeach()

install(TARGETS KorTools KorToolsPlugin EXPORT KorToolsTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KorTools)
install(EXPORT KorToolsTargets NAMESPACE KorTools:: DESTINATION ${package_dir})
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/KorToolsConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/KorToolsConfig.cmake" INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KorToolsConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KorToolsConfig.cmake"
    "${PROJECT_BINARY_DIR}/KorToolsConfigVersion.cmake" DESTINATION ${package_dir})

# The .pc file finds its prefix from its own place, so that an installed tree can be moved.
file(RELATIVE_PATH pc_to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
get_target_property(pc_library KorTools OUTPUT_NAME)
configure_file("${PROJECT_SOURCE_DIR}/cmake/kortools.pc.in" "${PROJECT_BINARY_DIR}/kortools.pc"
    @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/kortools.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
