# Holds if PROGRAM parallel starts its call and is still in it when the time is up.
list(REMOVE_ITEM PROGRAM "")
execute_process(COMMAND ${PROGRAM} parallel TIMEOUT 4 RESULT_VARIABLE result OUTPUT_VARIABLE output)
if(NOT output MATCHES "calling" OR output MATCHES "returned" OR NOT result MATCHES "timeout")
  message(FATAL_ERROR "expected a call that does not return; got '${result}' after:\n${output}")
endif()
message(STATUS "called, and had not returned when the time was up")
