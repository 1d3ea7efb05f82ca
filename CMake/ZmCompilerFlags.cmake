# Flags shared by the library and its test programs.

if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64|i[3-6]86|x86)$")
    message(FATAL_ERROR "ZmMath needs an x86 processor with SSE2, not ${CMAKE_SYSTEM_PROCESSOR}")
endif()

add_library(ZmWarnings INTERFACE)
target_compile_options(ZmWarnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    # In C++, Clang's -Wconversion includes sign changes; that of g++ does not.
    $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-sign-conversion>
    $<$<BOOL:${ZMMATH_WERROR}>:-Werror>)

# Identical floating-point results everywhere: SSE2 arithmetic, no contraction.
add_library(ZmFloatingPoint INTERFACE)
target_compile_options(ZmFloatingPoint INTERFACE -ffp-contract=off -fno-math-errno)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_options(ZmFloatingPoint INTERFACE -msse2 -mfpmath=sse)
    if(WIN32)
        # Callers on 32-bit Windows align the stack to 4 bytes only.
        target_compile_options(ZmFloatingPoint INTERFACE -mstackrealign)
    endif()
endif()

set(ZM_AVX2_OPTIONS -mavx2)
if(MINGW AND CMAKE_SIZEOF_VOID_P EQUAL 8 AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ for 64-bit Windows assumes that it can align the stack to 32 bytes, but
    # it cannot: the assembler has to turn its aligned moves into unaligned ones.
    list(APPEND ZM_AVX2_OPTIONS -Wa,-muse-unaligned-vector-move)
endif()
