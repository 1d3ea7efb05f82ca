# Test programs and checks. The names of all tests begin with ZMMATH_VARIANT, so
# that one ctest run can contain several variants.
include(GoogleTest)

set(ZMMATH_TEST_FILTER "" CACHE STRING "GoogleTest filter for all test programs")
set(ZMMATH_TEST_ENVIRONMENT "" CACHE STRING "Environment of all tests")

set(ZM_TEST_PREFIX "")
set(ZM_TEST_PROPERTIES TIMEOUT 300 SKIP_RETURN_CODE 77)
if(ZMMATH_VARIANT)
    set(ZM_TEST_PREFIX "${ZMMATH_VARIANT}/")
    list(APPEND ZM_TEST_PROPERTIES LABELS "${ZMMATH_VARIANT}")
endif()

add_library(ZmGoogleTest STATIC EXCLUDE_FROM_ALL
    "${ZMMATH_GOOGLETEST_DIR}/src/gtest-all.cc"
    "${ZMMATH_GOOGLETEST_DIR}/src/gtest_main.cc")
target_compile_features(ZmGoogleTest PUBLIC cxx_std_17)
target_include_directories(ZmGoogleTest
    SYSTEM PUBLIC "${ZMMATH_GOOGLETEST_DIR}/include"
    PRIVATE "${ZMMATH_GOOGLETEST_DIR}")
target_link_libraries(ZmGoogleTest PUBLIC Threads::Threads)

# The emulator for variants whose programs the system cannot run itself.
if(WIN32 AND CMAKE_CROSSCOMPILING)
    include("${CMAKE_CURRENT_LIST_DIR}/ZmWine.cmake")
elseif(NOT WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    include("${CMAKE_CURRENT_LIST_DIR}/ZmQemu.cmake")
endif()
# The emulator may be missing: its script then skips the tests.
set(ZM_EMULATED OFF)
if(CMAKE_CROSSCOMPILING OR DEFINED CMAKE_CROSSCOMPILING_EMULATOR)
    set(ZM_EMULATED ON)
endif()

# zm_add_test(<program> LIBRARY <target> SOURCES <file>...)
# A GoogleTest program. Each case is a ctest entry; under an emulator, where
# starting a program is expensive, the whole program is one.
function(zm_add_test program)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LIBRARY" "SOURCES")
    add_executable(${program} ${arg_SOURCES})
    set_target_properties(${program} PROPERTIES CXX_EXTENSIONS OFF)
    target_include_directories(${program} PRIVATE "${PROJECT_SOURCE_DIR}/Tests")
    target_link_libraries(${program} PRIVATE ${arg_LIBRARY} ZmGoogleTest ZmWarnings ZmFloatingPoint)
    set(filter "*")
    if(ZMMATH_TEST_FILTER)
        set(filter "${ZMMATH_TEST_FILTER}")
    endif()
    if(ZM_EMULATED)
        set(test ${ZM_TEST_PREFIX}${program})
        add_test(NAME ${test} COMMAND ${program} --gtest_brief=1 "--gtest_filter=${filter}")
        set_tests_properties(${test} PROPERTIES ${ZM_TEST_PROPERTIES}
            ENVIRONMENT "${ZMMATH_TEST_ENVIRONMENT}"
            FIXTURES_REQUIRED "${ZM_TEST_PREFIX}Emulator")
    else()
        gtest_discover_tests(${program}
            TEST_PREFIX "${ZM_TEST_PREFIX}"
            TEST_FILTER "${filter}"
            DISCOVERY_TIMEOUT 60
            PROPERTIES ${ZM_TEST_PROPERTIES} ENVIRONMENT "${ZMMATH_TEST_ENVIRONMENT}")
    endif()
endfunction()

# zm_add_check(<name> <command> [argument...])
# Any other command as a test, which passes if it exits with 0.
function(zm_add_check name)
    set(test ${ZM_TEST_PREFIX}Check.${name})
    add_test(NAME ${test} COMMAND ${ARGN} COMMAND_EXPAND_LISTS)
    set_tests_properties(${test} PROPERTIES ${ZM_TEST_PROPERTIES})
endfunction()

# zm_add_run_check(<name> <command> [argument...])
# A check that runs programs of the variant, under the emulator if there is one.
function(zm_add_run_check name)
    zm_add_check(${name} ${ARGN})
    set(test ${ZM_TEST_PREFIX}Check.${name})
    set_tests_properties(${test} PROPERTIES ENVIRONMENT "${ZMMATH_TEST_ENVIRONMENT}")
    if(ZM_EMULATED)
        set_tests_properties(${test} PROPERTIES FIXTURES_REQUIRED "${ZM_TEST_PREFIX}Emulator")
    endif()
endfunction()

# zm_add_program(<name> LIBRARY <target> SOURCES <file>... [ARGUMENTS <argument>...])
# A separate program as a test, which passes if it exits with 0.
function(zm_add_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LIBRARY" "SOURCES;ARGUMENTS")
    add_executable(Zm${name}Test ${arg_SOURCES})
    set_target_properties(Zm${name}Test PROPERTIES CXX_EXTENSIONS OFF)
    target_link_libraries(Zm${name}Test PRIVATE ${arg_LIBRARY} ZmWarnings ZmFloatingPoint)
    zm_add_run_check(${name} Zm${name}Test ${arg_ARGUMENTS})
endfunction()
