# Test programs and checks. The names of all tests begin with ZMMATH_VARIANT, so that one ctest run can contain several
# variants.
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
    "${ZMMATH_GOOGLETEST_DIR}/src/gtest-all.cc" "${ZMMATH_GOOGLETEST_DIR}/src/gtest_main.cc")
set_target_properties(ZmGoogleTest PROPERTIES CXX_EXTENSIONS ON)
target_include_directories(ZmGoogleTest
    SYSTEM PUBLIC "${ZMMATH_GOOGLETEST_DIR}/include" PRIVATE "${ZMMATH_GOOGLETEST_DIR}")
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

# zm_add_test(<program> <library>)
# A GoogleTest program, whose sources come with zm_add_sources(). Each case is a ctest entry; under an emulator, where
# starting a program is expensive, the whole program is one.
function(zm_add_test program library)
    add_executable(${program})
    target_include_directories(${program} PRIVATE "${PROJECT_SOURCE_DIR}/Tests")
    target_link_libraries(${program} PRIVATE ${library} ZmGoogleTest ZmWarnings ZmFloatingPoint)
    if(ZM_EMULATED)
        set(test ${ZM_TEST_PREFIX}${program})
        set(filter "$<$<BOOL:${ZMMATH_TEST_FILTER}>:--gtest_filter=${ZMMATH_TEST_FILTER}>")
        add_test(NAME ${test} COMMAND ${program} --gtest_brief=1 "${filter}" COMMAND_EXPAND_LISTS)
        set_tests_properties(${test} PROPERTIES ${ZM_TEST_PROPERTIES}
            ENVIRONMENT "${ZMMATH_TEST_ENVIRONMENT}" FIXTURES_REQUIRED "${ZM_TEST_PREFIX}Emulator")
    else()
        gtest_discover_tests(${program}
            TEST_PREFIX "${ZM_TEST_PREFIX}" TEST_FILTER "${ZMMATH_TEST_FILTER}" DISCOVERY_TIMEOUT 60
            PROPERTIES ${ZM_TEST_PROPERTIES} ENVIRONMENT "${ZMMATH_TEST_ENVIRONMENT}")
    endif()
endfunction()

# zm_add_check(<name> <command> [argument...])
# Any other command as a test, which passes if it exits with 0. The path of a script is relative to the current folder.
function(zm_add_check name command)
    if(command MATCHES "\\.sh$")
        cmake_path(ABSOLUTE_PATH command BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE)
    endif()
    set(test ${ZM_TEST_PREFIX}Check.${name})
    add_test(NAME ${test} COMMAND "${command}" ${ARGN} COMMAND_EXPAND_LISTS)
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
    target_link_libraries(Zm${name}Test PRIVATE ${arg_LIBRARY} ZmWarnings ZmFloatingPoint)
    zm_add_run_check(${name} Zm${name}Test ${arg_ARGUMENTS})
endfunction()
