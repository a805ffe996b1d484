# Warning flags for the project's own targets (third-party code is not built here).
function(kv_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
    if(KV_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

# kv_add_library(NAME SOURCES ... LIBS ...): one library of the project with the usual settings.
function(kv_add_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC ${ARG_LIBS})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/..)
    kv_set_warnings(${name})
endfunction()

# kv_add_test(NAME SOURCES ... LIBS ... [ENV ...]): a QtTest executable registered with CTest.
# The test-data folder is known to every test as KV_TEST_DATA_DIR.
function(kv_add_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBS;ENV" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test ${ARG_LIBS})
    target_compile_definitions(${name} PRIVATE
        KV_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data"
        KV_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        KV_BINARY_DIR="${PROJECT_BINARY_DIR}")
    kv_set_warnings(${name})
    add_test(NAME ${name} COMMAND ${name})
    set(env "QT_QPA_PLATFORM=offscreen" ${ARG_ENV})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${env}")
    if(ARG_TIMEOUT)
        set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT})
    endif()
endfunction()

# Adds a subdirectory only once it has a CMakeLists.txt, so that folders can grow independently.
macro(kv_add_optional_subdirectory dir)
    if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${dir}/CMakeLists.txt")
        add_subdirectory(${dir})
    endif()
endmacro()
