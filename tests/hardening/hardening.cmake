# Registers the tests of what hardens the libraries and the program; included by tests/CMakeLists.txt.

function(orva_reads_hardening test target)
  add_test(NAME ${test} COMMAND ${CMAKE_COMMAND} -DFILE=$<TARGET_FILE:${target}> -DOURS=_ZNK?4orva|main
    -DOBJDUMP=${CMAKE_OBJDUMP} -DREADELF=${CMAKE_READELF} -P ${PROJECT_SOURCE_DIR}/tests/hardening/reads.cmake)
endfunction()

orva_reads_hardening(hardened_library Orva_acc)
orva_reads_hardening(hardened_library_tidy Orva_tidy)
if(ORVA_BUILD_PROGRAM)
  orva_reads_hardening(hardened_program orva)
endif()

# The opposite of each flag; every one of them has to be missed.
add_executable(unhardened hardening/unhardened.cpp)
target_compile_options(unhardened PRIVATE -fno-stack-protector -U_FORTIFY_SOURCE)
if(MINGW)
  target_link_options(unhardened PRIVATE
    -Wl,--disable-dynamicbase -Wl,--disable-high-entropy-va -Wl,--disable-nxcompat -Wl,--image-base=0x400000)
  set(missing "the stack protector, HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT, an image base beyond 4 GiB")
else()
  target_compile_options(unhardened PRIVATE -fcf-protection=none)
  target_link_options(unhardened PRIVATE LINKER:-z,norelro LINKER:-z,lazy LINKER:-z,execstack)
  set(missing "the stack protector, RELRO, NOW, a stack without execution, SHSTK, FORTIFY, endbr64")
endif()
orva_reads_hardening(hardening_is_missed unhardened)
set_tests_properties(hardening_is_missed PROPERTIES PASS_REGULAR_EXPRESSION "lacks: ${missing}\\.")
