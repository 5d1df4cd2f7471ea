# The tests that cannot hold in a process of a sanitizer. Read by ctest after it has learnt of all tests.

# The sanitizer itself takes malloc and operator new over.
set_tests_properties(HostProcess.KeepsItsOwnMalloc PROPERTIES DISABLED TRUE)

# The sanitizer has terabytes of addresses reserved, and ends the process when it is refused more.
set_tests_properties(HostProcess.OutOfMemoryPassesThroughTheCInterfaceAndTheProcessGoesOn PROPERTIES DISABLED TRUE)
