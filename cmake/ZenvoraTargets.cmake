# One options target that every other target links, so that no compiler flag is global, and two helpers that
# turn a folder into a library or a test program.

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Precompiled headers hit the cache only when their time stamps are not part of the key.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()

add_library(zenvora_options INTERFACE)
target_compile_features(zenvora_options INTERFACE cxx_std_20)
target_compile_options(zenvora_options INTERFACE -Wall -Wextra -Wconversion -Wpedantic)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(zenvora_options INTERFACE -fpch-preprocess)
    if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # These report string concatenations of the library itself, wrongly (mended in g++ 13).
        target_compile_options(zenvora_options INTERFACE -Wno-array-bounds -Wno-restrict
                               -Wno-stringop-overflow -Wno-stringop-overread)
    endif()
endif()
if(ZENVORA_WERROR)
    target_compile_options(zenvora_options INTERFACE -Werror)
endif()
if(ZENVORA_SANITIZE)
    target_compile_options(zenvora_options INTERFACE
                           -fsanitize=${ZENVORA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(zenvora_options INTERFACE -fsanitize=${ZENVORA_SANITIZE})
endif()
target_include_directories(zenvora_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

file(WRITE ${PROJECT_BINARY_DIR}/pch.cpp "")
add_library(zenvora_pch OBJECT ${PROJECT_BINARY_DIR}/pch.cpp)
target_link_libraries(zenvora_pch PRIVATE zenvora_options)
target_precompile_headers(zenvora_pch PRIVATE
    <algorithm> <array> <cmath> <cstddef> <cstdint> <filesystem> <functional> <map> <memory> <optional> <span>
    <string> <string_view> <unordered_map> <utility> <variant> <vector>)

# zenvora_library(NAME FOLDER [DEPENDENCY...]): every source in src/FOLDER (and FOLDER/detail) as one library, but for
# those of the toolkit (platform/page/qt_*), which have libraries of their own.
function(zenvora_library name folder)
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp
         ${PROJECT_SOURCE_DIR}/src/${folder}/detail/*.cpp)
    list(FILTER sources EXCLUDE REGEX "/platform/page/qt_[^/]*$")
    if(sources)
        add_library(${name} STATIC ${sources})
        target_link_libraries(${name} PUBLIC zenvora_options ${ARGN})
        target_precompile_headers(${name} REUSE_FROM zenvora_pch)
    else()
        add_library(${name} INTERFACE)
        target_link_libraries(${name} INTERFACE zenvora_options ${ARGN})
    endif()
endfunction()

# zenvora_qt_library(NAME FOLDER [DEPENDENCY...]): the same for a folder that stands on Qt, with Qt's headers compiled once.
function(zenvora_qt_library name folder)
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC zenvora_options ${ARGN} Qt6::Widgets)
    # Qt's own macros of words that the code could use ("emit" apart).
    target_compile_definitions(${name} PRIVATE QT_NO_FOREACH QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_ASCII)
    target_precompile_headers(${name} PRIVATE
        <algorithm> <functional> <map> <memory> <optional> <string> <string_view> <utility> <vector>
        <QtWidgets/QtWidgets>)
endfunction()

# zenvora_test(NAME FOLDER [DEPENDENCY...]): every *_test.cpp in tests/FOLDER as one GoogleTest program.
function(zenvora_test name folder)
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${folder}/*.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE ${ARGN} zenvora_test_support GTest::gtest_main)
    target_precompile_headers(${name} REUSE_FROM zenvora_test_support)
    add_test(NAME ${name} COMMAND ${name})
endfunction()

# zenvora_qt_test(NAME FOLDER [DEPENDENCY...]): the same with Qt Test, and a main() of its own for the toolkit.
function(zenvora_qt_test name folder)
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${folder}/*.cpp)
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE ${ARGN} zenvora_test_support GTest::gtest Qt6::Test)
    target_precompile_headers(${name} PRIVATE
        <algorithm> <functional> <map> <memory> <optional> <string> <string_view> <utility> <vector>
        <gtest/gtest.h> <QtTest/QtTest> <QtWidgets/QtWidgets>)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=offscreen)
endfunction()
