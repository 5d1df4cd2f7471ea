# What scripts/package asks CPack for: a zip on Windows; a tar.gz and a Debian package on Linux. One package holds everything,
# because all of it is small: the libraries, the program, and what other builds need.

set(CPACK_PACKAGE_NAME orva-acc)
set(CPACK_PACKAGE_VENDOR Orva_acc)
set(CPACK_PACKAGE_CONTACT "Orva_acc maintainers <orva-acc@packages.invalid>" CACHE STRING "Who answers for these packages")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
if(WIN32)
  set(CPACK_SYSTEM_NAME windows-x86_64)
else()
  set(CPACK_SYSTEM_NAME linux-x86_64)
endif()
set(CPACK_PACKAGE_FILE_NAME orva-acc-${PROJECT_VERSION}-${CPACK_SYSTEM_NAME})
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

# Runs between the copying of the files and the packing of them.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/packages/complete.cmake)
set(CPACK_ORVA_SOURCE_DIR ${PROJECT_SOURCE_DIR})
set(CPACK_ORVA_OBJDUMP ${CMAKE_OBJDUMP})

# note: /usr/lib, not Debian's folder for the architecture: the layout of the tar.gz, from the same build. Both are searched.
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Union, difference and intersection of two meshes, or of one and many:
the libraries, the program orva, and what is needed to build with them in
C and in C++. The same input gives the same bits on every platform.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON) # libtbb12 and the C and C++ libraries, in the versions that the files ask for
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/bin) # the program's own library is in no package yet
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=") # whatever is linked to this one runs with later ones of the same name
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/packages/triggers)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

include(CPack)
