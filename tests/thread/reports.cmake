# Holds if the thread sanitizer reports the race in PROGRAM shared, in the function in which it was planted and on both
# of its sides, and nothing in PROGRAM apart. A crash is no report; nor is a race somewhere else.
foreach(which shared apart)
  execute_process(COMMAND ${PROGRAM} ${which} RESULT_VARIABLE ${which}_result OUTPUT_VARIABLE output ERROR_VARIABLE report)
  set(${which} "'${PROGRAM} ${which}' ended with '${${which}_result}' and wrote:\n${output}\n${report}")
endforeach()

set(planted "CSGNode<double>::invert\\(\\)")
if(NOT shared_result EQUAL 66 # the sanitizer's own exit code
    OR NOT shared MATCHES "WARNING: ThreadSanitizer: data race.*${planted}.*Previous (read|write).*${planted}.*SUMMARY")
  message(FATAL_ERROR "the planted race was not reported: ${shared}")
endif()
if(NOT apart_result EQUAL 0 OR NOT apart MATCHES "changed\n" OR apart MATCHES "ThreadSanitizer")
  message(FATAL_ERROR "something was reported where nothing is wrong: ${apart}")
endif()
message(STATUS "reported where it was planted, and only there")
