# Two sets of flags, each written once: orva_arithmetic decides the bits of every result, orva_warnings what we do not let pass.
# Both are private to our own targets; nothing leaks to consumers.

add_library(orva_arithmetic INTERFACE)
if(MSVC)
  # /fp:precise does not contract; /EHs because exceptions pass through our extern "C" functions, which /EHsc assumes away.
  target_compile_options(orva_arithmetic INTERFACE /fp:precise /EHs)
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

add_library(orva_warnings INTERFACE)
if(MSVC)
  target_compile_options(orva_warnings INTERFACE /W4)
else()
  target_compile_options(orva_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(ORVA_WARNINGS_ARE_ERRORS)
    target_compile_options(orva_warnings INTERFACE -Werror)
  endif()
endif()
