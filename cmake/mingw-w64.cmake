# Cross build for 64-bit Windows. The -posix compilers are named outright: the plain
# names may mean the win32 thread model, which has no std::thread.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Libraries, headers and packages come from the cross root only, programs from the
# host only: nothing of the host's headers or libraries can slip in.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The run-time libraries of the compiler go into each image.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

# Resource scripts are UTF-8. Debug data in the form that Wine's debugger reads.
set(CMAKE_RC_FLAGS_INIT "--codepage=65001")
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO_INIT "-gdwarf-4")

# Programs run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine/wine-run.sh"
    CACHE STRING "runs Windows programs")
