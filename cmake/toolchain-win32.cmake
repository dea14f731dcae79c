set(CMAKE_SYSTEM_PROCESSOR i686)
set(ZEQ_TRIPLET i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw.cmake)
