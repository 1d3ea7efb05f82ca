# 32-bit Linux programs on a 64-bit machine, with floats computed by SSE2.
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
