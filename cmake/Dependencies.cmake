# What the library, its program and its tests are built from. scripts/setup provides all of it; packages installed in any
# other way are found just as well through CMAKE_PREFIX_PATH. docs/dependencies.md says why these, and why linked so.

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)
find_package(TBB CONFIG REQUIRED) # TBB::tbb

# ---- mimalloc: static only, because it has to stay a private heap ----
set(ORVA_WATCHED_HEAP OFF CACHE BOOL "Take working memory from malloc, for tools that watch every block of that")
if(ORVA_WATCHED_HEAP)
  add_subdirectory(${PROJECT_SOURCE_DIR}/tests/watched_heap ${PROJECT_BINARY_DIR}/watched_heap)
else()
  find_package(mimalloc CONFIG REQUIRED) # mimalloc-static
  if(NOT TARGET mimalloc-static)
    message(FATAL_ERROR
      "The mimalloc in ${mimalloc_DIR} is a shared library only. Shared ones usually export malloc, free and operator new, and "
      "would take over the heap of every program that loads this library. Build it static with MI_OVERRIDE=OFF and "
      "MI_USE_CXX=ON (scripts/setup does), and name its prefix in CMAKE_PREFIX_PATH.")
  endif()

  # Compiled as C, mi_new aborts the process where it should throw std::bad_alloc. One look into the archive tells.
  get_target_property(mimalloc_archive mimalloc-static LOCATION)
  file(STRINGS "${mimalloc_archive}" mimalloc_throws REGEX "bad_alloc" LIMIT_COUNT 1)
  if(NOT mimalloc_throws)
    message(WARNING
      "${mimalloc_archive} seems to be compiled as C: running out of memory would then abort the process. "
      "Build mimalloc with MI_USE_CXX=ON.")
  endif()

  # mimalloc runs code when a thread ends. Were the library unloaded before its caller's threads (TBB's live on, for one), that
  # code would be gone and the process crash; so once loaded it stays. On Windows mimalloc takes its hook out by itself.
  target_link_options(mimalloc-static INTERFACE $<$<PLATFORM_ID:Linux>:LINKER:-z,nodelete>)
endif()

# ---- the command-line program ----
# Headers only, so looking for the folder does for both platforms; Debian's package files would lead a cross build to /usr.
function(orva_find_headers target header folder_variable)
  if(TARGET ${target})
    return()
  endif()
  find_path(${folder_variable} ${header})
  if(NOT ${folder_variable})
    message(FATAL_ERROR
      "The headers of ${target} (${header}) are missing: install them, run scripts/setup, or set ORVA_BUILD_PROGRAM=OFF.")
  endif()
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} INTERFACE ${${folder_variable}}) # imported: their warnings stay their own
endfunction()
if(ORVA_BUILD_PROGRAM)
  orva_find_headers(CLI11::CLI11 CLI/CLI.hpp CLI11_INCLUDE_DIR)
  orva_find_headers(stb::stb stb/stb_image_write.h STB_INCLUDE_DIR)
endif()
if(ORVA_BUILD_PROGRAM OR ORVA_BUILD_FUZZERS) # the program's readers are fuzzed without the rest of it
  orva_find_headers(nlohmann_json::nlohmann_json nlohmann/json.hpp NLOHMANN_JSON_INCLUDE_DIR)
endif()

# ---- the tests ----
if(ORVA_BUILD_TESTS)
  find_package(GTest CONFIG REQUIRED) # GTest::gtest, GTest::gtest_main, GTest::gmock
endif()
