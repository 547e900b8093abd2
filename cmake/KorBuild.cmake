# SPDX-License-Identifier: MIT
# Settings shared by every target, and the one-line functions that declare tests, benchmarks and
# fuzz targets.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
if(NOT WIN32) # there it would leave the inline members of exported classes out of the DLL
    set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# What is installed without a word of the component it belongs to; KorInstall.cmake lists them.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # What one checkout has compiled is found by the others: paths count from the build folder.
    set(CMAKE_CXX_COMPILER_LAUNCHER env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
        "${CCACHE_PROGRAM}")
    set(CMAKE_C_COMPILER_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
endif()

add_library(kor_options INTERFACE)
if(KORTOOLS_SANITIZE)
    target_compile_options(kor_options INTERFACE
        -fsanitize=${KORTOOLS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(kor_options INTERFACE -fsanitize=${KORTOOLS_SANITIZE})
endif()

# -Wrestrict of g++ 12 reports std::string's operator+ at -O3 (its bug 105651).
add_library(kor_warnings INTERFACE)
target_compile_options(kor_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
    $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion> # not part of g++'s -Wconversion for C++
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<BOOL:${KORTOOLS_WERROR}>:-Werror>)

# kor_debug_info(<target>) compiles what goes into a shipped library with debug information: for
# debuggers, and for the check of the ABI. Paths count from the top of the tree, so that nobody's
# folders are in what is shipped.
function(kor_debug_info target)
    if(NOT WIN32)
        target_compile_options(${target} PRIVATE
            $<$<CONFIG:Release>:-g;-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>)
    endif()
endfunction()

# kor_split_debug_info(<target>) moves it to <file>.debug beside the library, where debuggers look
# for it; `cmake --install --component debug` installs it. Other configurations are left as they are.
function(kor_split_debug_info target)
    if(NOT CMAKE_BUILD_TYPE STREQUAL "Release" OR KORTOOLS_SANITIZE OR WIN32)
        return()
    endif()
    set(file "$<TARGET_FILE:${target}>")
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_OBJCOPY} --only-keep-debug "${file}" "${file}.debug"
        COMMAND ${CMAKE_OBJCOPY} --strip-debug "--add-gnu-debuglink=${file}.debug" "${file}"
        VERBATIM)
    install(FILES "${file}.debug" DESTINATION ${CMAKE_INSTALL_LIBDIR}/.debug
        COMPONENT debug EXCLUDE_FROM_ALL)
endfunction()

# Debian ships the sources of GoogleTest; building them gives every preset (sanitizers, mingw-w64)
# a library of its own kind.
function(kor_use_googletest)
    if(TARGET gtest)
        return()
    endif()
    find_path(GTEST_SOURCE_DIR googletest/src/gtest-all.cc
              PATHS /usr/src/googletest REQUIRED NO_CMAKE_FIND_ROOT_PATH)
    add_library(gtest STATIC "${GTEST_SOURCE_DIR}/googletest/src/gtest-all.cc")
    target_include_directories(gtest SYSTEM PUBLIC "${GTEST_SOURCE_DIR}/googletest/include"
                               PRIVATE "${GTEST_SOURCE_DIR}/googletest")
    find_package(Threads REQUIRED)
    target_link_libraries(gtest PUBLIC Threads::Threads PRIVATE kor_options)
endfunction()

# kor_link_library(<target> <whitebox>) links the library or, for a white box, its object files, and
# so reaches what is not exported.
function(kor_link_library target whitebox)
    if(whitebox)
        target_link_libraries(${target} PRIVATE KorToolsObjects)
        target_compile_definitions(${target} PRIVATE KORTOOLS_STATIC)
        if(NOT WIN32) # a copy in each program takes long to link, and disk space
            target_link_options(${target} PRIVATE $<$<CONFIG:Release>:-Wl,--strip-debug>)
        endif()
    else()
        target_link_libraries(${target} PRIVATE KorTools)
    endif()
endfunction()

# kor_test(<area> <name> [WHITEBOX] [SOURCES <more>...])
#
# Builds <name>_test from tests/<area>/<name>_test.cpp and registers it with CTest.
function(kor_test area name)
    cmake_parse_arguments(arg "WHITEBOX" "" "SOURCES;LIBRARIES" ${ARGN})
    set(target ${name}_test)
    add_executable(${target} ${area}/${name}_test.cpp ${arg_SOURCES})
    kor_link_library(${target} "${arg_WHITEBOX}")
    target_link_libraries(${target} PRIVATE kor_test_support kor_options kor_warnings
                          ${arg_LIBRARIES})
    # Optimizing a test takes longer than running it.
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O1>)
    # A relative path: the Windows programs would not take a Linux one for absolute.
    add_test(NAME ${name} COMMAND ${target} --gtest_output=xml:../test-results/${name}.xml)
    set_tests_properties(${name} PROPERTIES LABELS ${area} TIMEOUT 300)
endfunction()

# kor_bench(<area> <name> [WHITEBOX] [LIBRARIES <peers>...]) builds <name>_bench from bench/<area>.
function(kor_bench area name)
    cmake_parse_arguments(arg "WHITEBOX" "" "LIBRARIES" ${ARGN})
    set(target ${name}_bench)
    add_executable(${target} ${area}/${name}_bench.cpp)
    kor_link_library(${target} "${arg_WHITEBOX}")
    target_link_libraries(${target} PRIVATE benchmark::benchmark kor_options ${arg_LIBRARIES})
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
endfunction()

# kor_fuzz(<area> <name>) builds <name>_fuzz from fuzz/<area>; its seeds lie in fuzz/corpus/<name>.
function(kor_fuzz area name)
    set(target ${name}_fuzz)
    add_executable(${target} ${area}/${name}_fuzz.cpp)
    kor_link_library(${target} TRUE)
    target_link_libraries(${target} PRIVATE kor_options kor_warnings)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
endfunction()
