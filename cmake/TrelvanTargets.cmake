# How every target of the project is compiled, and one command for each kind of target.

configure_file(${CMAKE_CURRENT_LIST_DIR}/Version.hpp.in ${CMAKE_BINARY_DIR}/generated/Version.hpp @ONLY)

add_library(trelvan_options INTERFACE)
target_include_directories(trelvan_options INTERFACE
    ${CMAKE_SOURCE_DIR}/Trelvan ${CMAKE_BINARY_DIR}/generated)
target_compile_options(trelvan_options INTERFACE -Wall -Wextra -Wconversion -Wshadow)
if(TRELVAN_WARNINGS_AS_ERRORS)
    target_compile_options(trelvan_options INTERFACE -Werror)
endif()

# What a test runs is optimised like the program, the test itself is not: it would only take longer to compile.
add_library(trelvan_test_options INTERFACE)
target_link_libraries(trelvan_test_options INTERFACE trelvan_options)
target_include_directories(trelvan_test_options INTERFACE ${CMAKE_SOURCE_DIR}/Tests)
target_compile_options(trelvan_test_options INTERFACE $<$<CONFIG:RelWithDebInfo>:-O0> $<$<CONFIG:RelWithDebInfo>:-g1>)

# GCC forgets that a precompiled header is a system's, and reports what it takes for overflows in std::string there.
function(trelvan_quiet_precompiled target)
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds>
        $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>
        $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overread>)
endfunction()

# trelvan_precompiled(NAME OPTIONS HEADERS...): those headers, compiled once with these options for all targets that
# trelvan_reuse names. Every source still includes what it uses, so that it compiles without them too.
function(trelvan_precompiled name options)
    if(NOT TRELVAN_PRECOMPILED_HEADERS)
        return()
    endif()
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp CONTENT "")
    add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp)
    target_link_libraries(${name} PRIVATE ${options})
    target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

function(trelvan_reuse precompiled)
    if(NOT TRELVAN_PRECOMPILED_HEADERS)
        return()
    endif()
    foreach(target IN LISTS ARGN)
        target_precompile_headers(${target} REUSE_FROM ${precompiled})
        trelvan_quiet_precompiled(${target})
    endforeach()
endfunction()

# trelvan_library(NAME SOURCES...): a static library of the program.
function(trelvan_library name)
    add_library(${name} STATIC ${ARGN})
    target_link_libraries(${name} PUBLIC trelvan_options)
endfunction()

# trelvan_test(NAME SOURCES...): a GoogleTest program run by CTest under the label "unit".
function(trelvan_test name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE trelvan_test_options GTest::gmock_main)
    trelvan_reuse(test_headers ${name})
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS unit)
endfunction()
