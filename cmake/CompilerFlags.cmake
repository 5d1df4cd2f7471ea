# Three sets of flags, each written once: orva_arithmetic decides the bits of every result, orva_hardening what an attacker meets,
# orva_warnings what we do not let pass. All are private to our own targets; nothing leaks to consumers.

add_library(orva_arithmetic INTERFACE)
if(MSVC)
  # /fp:precise does not contract. Exceptions pass through our extern "C" functions, which /EHsc, among CMake's own flags, assumes
  # away; note: /EHs behind it would not take that back, /EHsc- does.
  target_compile_options(orva_arithmetic INTERFACE /fp:precise /EHsc-)
else()
  # No fused multiply-add (Clang's default contracts), no fast-math, no -march beyond x86-64's SSE2: the same bits everywhere.
  # No code in this project calls sqrt where bits count: MinGW's rounds twice, and at -O0 even -fno-math-errno does not replace it.
  # Exceptions pass through extern "C" functions by default with GCC and Clang.
  target_compile_options(orva_arithmetic INTERFACE -ffp-contract=off -fno-fast-math -fno-math-errno)
endif()

# For every target of ours, C and test programs included: a sanitizer sees only what was compiled with it.
set(ORVA_SANITIZE "" CACHE STRING "Sanitizers to build our own targets with, named as in -fsanitize=")
if(ORVA_SANITIZE)
  # Dividing by zero is arithmetic here, not a mistake: a triangle without area gets a NaN plane. All else stops the program.
  add_compile_options(-fsanitize=${ORVA_SANITIZE} -fno-sanitize=float-divide-by-zero -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ORVA_SANITIZE})
endif()

# For what is shipped, the library and the program; tests/hardening/ reads all of it back from the built files. None of it
# touches arithmetic. Not together with a sanitizer, which watches the same things by means of its own.
add_library(orva_hardening INTERFACE)
if(NOT MSVC AND NOT ORVA_SANITIZE)
  # The folder of a release build stays out of it: built elsewhere it is the same, byte for byte (scripts/reproducible).
  target_compile_options(orva_hardening INTERFACE $<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>)
  target_compile_options(orva_hardening INTERFACE -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  if(MINGW)
    # At the link as well: the compiler then adds libssp, which has the guard and the checked functions.
    target_link_options(orva_hardening INTERFACE
      -fstack-protector-strong -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat)
  elseif(UNIX)
    # note: the linker marks a file as fit for control-flow enforcement when each of its parts is marked. Debian 12's own crti.o
    # is not, though all it has are plain calls and returns: so we say that the shadow stack suits. Of the indirect branches we
    # must not say it, for that crti.o's _init does not begin with endbr64, as all functions compiled here do.
    target_compile_options(orva_hardening INTERFACE -fcf-protection)
    target_link_options(orva_hardening INTERFACE
      LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack LINKER:-z,shstk)
  endif()
endif()

add_library(orva_warnings INTERFACE)
if(MSVC)
  target_compile_options(orva_warnings INTERFACE /W4)
else()
  target_compile_options(orva_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(ORVA_WARNINGS_ARE_ERRORS)
    target_compile_options(orva_warnings INTERFACE -Werror)
  endif()
endif()
