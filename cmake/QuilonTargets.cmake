# The compile settings that all targets of the project share, and the functions that declare them.

# Below version 1 a minor version may break callers, so the minor version is part of the name that they load.
set(QUILON_SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

# How our own code is compiled. Linked PRIVATE, so that it never reaches a user's build.
#   -ffp-contract=off  a fused multiply-add would make results differ between compilers and machines
add_library(quilon_compile_options INTERFACE)
target_compile_features(quilon_compile_options INTERFACE cxx_std_20)
if(MSVC)
  target_compile_options(quilon_compile_options INTERFACE /W4 /utf-8 /fp:precise $<$<BOOL:${QUILON_WERROR}>:/WX>)
else()
  target_compile_options(
    quilon_compile_options
    INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -ffp-contract=off $<$<BOOL:${QUILON_WERROR}>:-Werror>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 warns of overlapping copies inside its own std::string when it optimises: GCC bug 105651, mended in 13.
    target_compile_options(quilon_compile_options INTERFACE -Wno-restrict)
  endif()
  if(QUILON_SANITIZE)
    target_compile_options(quilon_compile_options INTERFACE -fsanitize=${QUILON_SANITIZE} -fno-sanitize-recover=all
                                                            -fno-omit-frame-pointer)
    target_link_options(quilon_compile_options INTERFACE -fsanitize=${QUILON_SANITIZE})
  endif()
endif()

# Settings of one target: our warnings, C++20 without extensions, hidden visibility.
function(quilon_configure target)
  target_link_libraries(${target} PRIVATE quilon_compile_options)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON
                                             CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# What most sources include of the standard library.
set(QUILON_STANDARD_HEADERS <algorithm> <array> <cmath> <cstdint> <filesystem> <functional> <map> <memory> <optional> <set>
                            <span> <string> <string_view> <utility> <vector>)

# Keeps instantiations of standard templates inside a shared library. Not with sanitizers, which count on one of each.
function(quilon_hide_foreign target)
  if(CMAKE_SYSTEM_NAME STREQUAL Linux AND NOT QUILON_SANITIZE)
    set(map ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/quilon_exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${map})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
  endif()
endfunction()

# quilon_precompile(<target> <header>...)
# Compiles headers that are not ours once for the whole target, when QUILON_PRECOMPILE asks for it. Every source still
# includes what it uses: a build without precompiled headers is part of the checks.
function(quilon_precompile target)
  get_target_property(sources ${target} SOURCES)
  list(LENGTH sources count)
  if(QUILON_PRECOMPILE AND count GREATER 2)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# The same for the library and the siblings, with QUILON_LIBRARY_OPTIONS.
function(quilon_configure_library target)
  quilon_configure(${target})
  target_compile_options(${target} PRIVATE ${QUILON_LIBRARY_OPTIONS})
endfunction()

# quilon_add_sibling(<name> SOURCES ... [LOWER <sibling>...] [DEPENDS <library>...])
# A shared sibling library: sees the contract, its own include/ and src/, and the include/ of lower siblings.
function(quilon_add_sibling name)
  cmake_parse_arguments(arg "" "" "SOURCES;LOWER;DEPENDS" ${ARGN})
  add_library(${name} SHARED ${arg_SOURCES})
  string(REPLACE Quilon Quilon:: alias ${name})
  add_library(${alias} ALIAS ${name})
  quilon_configure_library(${name})
  quilon_hide_foreign(${name})
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
                             PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC quilon_contract ${arg_LOWER} PRIVATE ${arg_DEPENDS})
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${QUILON_SOVERSION})
endfunction()

# quilon_add_test(<name> SOURCES ... [LINK <library>...])
# A GoogleTest program; every test in it becomes a test of CTest, named <name>.<suite>.<test>.
function(quilon_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  quilon_configure(${name})
  target_link_libraries(${name} PRIVATE ${arg_LINK} GTest::gmock GTest::gtest GTest::gtest_main)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # Where it optimises, GCC 12 warns of what is not so in strings of braced lists: rows of variants, maps of names.
    target_compile_options(
      ${name}
      PRIVATE "$<$<NOT:$<CONFIG:Debug>>:-Wno-free-nonheap-object;-Wno-maybe-uninitialized;-Wno-stringop-overflow>")
  endif()
  quilon_precompile(${name} <gmock/gmock.h> <gtest/gtest.h>)
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 600)
endfunction()

# quilon_add_fuzz(<name> SOURCE <file> SEEDS <folder> [LINK <library>...])
# A libFuzzer target <name>. Without Clang's fuzzer the same source is linked with a main that runs it over the seeds, so
# that every seed and every regression input is a plain test of every build.
function(quilon_add_fuzz name)
  cmake_parse_arguments(arg "" "SOURCE;SEEDS" "LINK" ${ARGN})
  add_executable(${name} ${arg_SOURCE})
  quilon_configure(${name})
  target_link_libraries(${name} PRIVATE ${arg_LINK})
  set(once "")
  if(QUILON_BUILD_FUZZ)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set(once -runs=0)
  else()
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/fuzz_seed_main.cpp)
  endif()
  add_test(NAME ${name}.seeds COMMAND ${name} ${once} ${arg_SEEDS})
  set_tests_properties(${name}.seeds PROPERTIES TIMEOUT 300)
endfunction()
