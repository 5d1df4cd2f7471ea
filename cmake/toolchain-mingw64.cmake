# Builds for 64-bit Windows on Linux, with MinGW-w64's GCC in its -posix flavour: the -win32 one has no std::thread,
# std::mutex or std::async in GCC 12.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64) # oneTBB's own CMake files ask for it and pick instruction-set flags by it

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Each DLL and program carries its own GCC runtime: the three runtime DLLs of MinGW would have to travel along, and would meet
# other versions of themselves in the host's process. Only our own DLLs, linked by path, stay dynamic.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT -static)
endforeach()

# Without the time of the link in it, the same sources give the same file.
add_link_options(-Wl,--no-insert-timestamp)

# Packages and headers come from what scripts/setup built for Windows, from what the caller names in CMAKE_PREFIX_PATH, and
# from MinGW; never from the machine itself. Its programs (cmake, ninja, git) are the ones that run here.
set(CMAKE_FIND_ROOT_PATH ${CMAKE_PREFIX_PATH} ${CMAKE_CURRENT_LIST_DIR}/../build/deps/windows /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Wine in the prefix that scripts/setup made; the command brings the environment along, so that a program started outside a preset
# does not make itself a prefix in somebody's home.
get_filename_component(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../build/wine/run ABSOLUTE)
