# How every target of the project is compiled, and one command for each kind of target.

add_library(trelvan_options INTERFACE)
target_include_directories(trelvan_options INTERFACE ${CMAKE_SOURCE_DIR}/Trelvan)
target_compile_options(trelvan_options INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)

# trelvan_library(NAME SOURCES...): a static library of the program.
function(trelvan_library name)
    add_library(${name} STATIC ${ARGN})
    target_link_libraries(${name} PUBLIC trelvan_options)
endfunction()

# trelvan_test(NAME SOURCES...): a GoogleTest program run by CTest under the label "unit".
function(trelvan_test name)
    add_executable(${name} ${ARGN})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/Tests)
    target_link_libraries(${name} PRIVATE trelvan_options GTest::gmock_main)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS unit)
endfunction()
