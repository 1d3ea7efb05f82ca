# Not every kernel runs 32-bit programs. Where it does not, the tests run under QEMU's user mode; without QEMU they are
# reported as skipped (RunQemu.sh exits with 77).
try_run(ZM_PROBE_EXIT_CODE ZM_PROBE_COMPILES
    "${PROJECT_BINARY_DIR}/probe" "${PROJECT_SOURCE_DIR}/Tests/Emulators/Probe.cpp")
if(NOT ZM_PROBE_EXIT_CODE EQUAL 42)
    find_program(ZMMATH_QEMU NAMES qemu-i386 qemu-i386-static)
    if(ZMMATH_QEMU)
        message(STATUS "32-bit programs do not run here: the tests run under ${ZMMATH_QEMU}")
    else()
        message(STATUS "32-bit programs do not run here, and there is no qemu-i386 (Debian package qemu-user): "
            "the tests of this variant will be skipped")
    endif()
    set(CMAKE_CROSSCOMPILING_EMULATOR "${PROJECT_SOURCE_DIR}/CMake/RunQemu.sh;${ZMMATH_QEMU}")
endif()
