# What is different about the tests when they run under a sanitizer; included by tests/CMakeLists.txt.

# Everything takes ten times as long here, and what is watched for does not hide in the hundredth set of a kind.
target_compile_definitions(api_tests PRIVATE ORVA_TEST_SETS=40)
foreach(program IN ITEMS unit_tests allocation_tests)
  target_compile_definitions(${program} PRIVATE ORVA_TEST_PART=10)
endforeach()

# The libraries import the sanitizer here.
set_tests_properties(binary_interface binary_interface_tidy PROPERTIES DISABLED TRUE)

# It has terabytes of addresses reserved, and ends the process when it is refused more.
foreach(operation RANGE 4)
  set_tests_properties(limited_memory_${operation} PROPERTIES DISABLED TRUE)
endforeach()

set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${CMAKE_CURRENT_LIST_DIR}/disabled.cmake)

if(ORVA_SANITIZE MATCHES "address")
  target_compile_definitions(equivalence_tests PRIVATE ORVA_TEST_PART=10)

  # Does it see what the library never does? The program does one such thing a run, named by its argument.
  add_executable(planted_errors sanitize/planted_errors.cpp)
  target_include_directories(planted_errors PRIVATE unit)
  target_link_libraries(planted_errors PRIVATE Orva_acc_objects mimalloc-static test_support orva_arithmetic orva_warnings)
  foreach(error IN ITEMS "overrun=heap-buffer-overflow" "late=heap-use-after-free" "lost=detected memory leaks" "shift=runtime error: shift")
    string(REGEX MATCH "^[a-z]+" name ${error})
    string(REGEX REPLACE "^[a-z]+=" "" report ${error})
    add_test(NAME planted_${name}_is_reported COMMAND planted_errors ${name})
    set_tests_properties(planted_${name}_is_reported PROPERTIES PASS_REGULAR_EXPRESSION ${report})
  endforeach()
  add_test(NAME nothing_planted_nothing_reported COMMAND planted_errors none)
endif()
