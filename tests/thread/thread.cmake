# What is different about the tests when they run under the thread sanitizer; included by tests/CMakeLists.txt.

# Does it see a race at all?
add_executable(planted_race thread/planted_race.cpp)
target_include_directories(planted_race PRIVATE unit)
target_link_libraries(planted_race PRIVATE Orva_acc_objects mimalloc-static test_support orva_arithmetic orva_warnings)
add_test(NAME planted_race_is_reported
  COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:planted_race> -P ${CMAKE_CURRENT_LIST_DIR}/reports.cmake)

# Every set takes ten times as long here; races do not hide in the hundredth one.
target_compile_definitions(api_tests PRIVATE ORVA_TEST_SETS=40)

# The library imports the sanitizer here.
set_tests_properties(binary_interface PROPERTIES DISABLED TRUE)

set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${CMAKE_CURRENT_LIST_DIR}/disabled.cmake)
