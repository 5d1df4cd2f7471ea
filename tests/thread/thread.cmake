# What is different about the tests when they run under the thread sanitizer; included by tests/CMakeLists.txt.

# Does it see a race at all?
add_executable(planted_race thread/planted_race.cpp)
target_include_directories(planted_race PRIVATE unit)
target_link_libraries(planted_race PRIVATE Orva_acc_objects mimalloc-static test_support orva_arithmetic orva_warnings)
add_test(NAME planted_race_is_reported
  COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:planted_race> -P ${CMAKE_CURRENT_LIST_DIR}/reports.cmake)
