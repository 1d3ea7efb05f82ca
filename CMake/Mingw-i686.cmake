set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
include("${CMAKE_CURRENT_LIST_DIR}/Mingw.cmake")
