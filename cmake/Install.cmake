# What cmake --install puts where, in four components: library (both, with the scheduler's DLL on Windows), program, headers (and
# what builds find the libraries by), licences. All of it may be moved as a whole afterwards: nothing holds an absolute path.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(cmakedir ${CMAKE_INSTALL_LIBDIR}/cmake/Orva_acc)
if(WIN32)
  set(docdir .) # where somebody who unpacked a zip looks
else()
  set(docdir ${CMAKE_INSTALL_DATAROOTDIR}/doc/orva-acc)
endif()

# ---- libraries and program ----

install(TARGETS Orva_acc Orva_tidy EXPORT Orva_acc
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT headers
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT headers
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(WIN32)
  install(FILES $<TARGET_FILE:TBB::tbb> DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)
endif()

if(ORVA_BUILD_PROGRAM)
  install(TARGETS orva RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
  # The library is beside the program in a build, and here where it was installed to.
  file(RELATIVE_PATH to_library ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(orva PROPERTIES INSTALL_RPATH "$ORIGIN;$ORIGIN/${to_library}")
endif()

# ---- what other compilers link with ----

# MSVC's linker and LLVM's take short import libraries, which MinGW's linker does not make; and only C names mean anything to
# them. LLVM's tool makes one out of a list of names. Without that tool only MinGW's own import library is installed.
if(MINGW)
  find_program(ORVA_LLVM_DLLTOOL NAMES llvm-dlltool-14 llvm-dlltool DOC "Makes the import libraries for MSVC's linker")
  foreach(library Orva_acc Orva_tidy)
    get_target_property(exports ${library} ORVA_EXPORTS)
    file(STRINGS ${exports} c_names REGEX "^ +orva_")
    list(JOIN c_names "\n" c_names)
    set(c_exports ${PROJECT_BINARY_DIR}/lib/${library}.def)
    file(CONFIGURE OUTPUT ${c_exports} CONTENT "LIBRARY ${library}.dll\nEXPORTS\n${c_names}\n" @ONLY)
    install(FILES ${c_exports} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT headers)

    if(ORVA_LLVM_DLLTOOL)
      add_custom_command(TARGET ${library} POST_BUILD
        COMMAND ${ORVA_LLVM_DLLTOOL} -m i386:x86-64 -d ${c_exports} -l ${PROJECT_BINARY_DIR}/lib/${library}.lib
        BYPRODUCTS ${PROJECT_BINARY_DIR}/lib/${library}.lib)
      install(FILES ${PROJECT_BINARY_DIR}/lib/${library}.lib DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT headers)
    endif()
  endforeach()
endif()

# ---- headers, and what builds find the libraries by ----

install(DIRECTORY include/orva DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT headers)

install(EXPORT Orva_acc NAMESPACE Orva:: FILE Orva_accTargets.cmake DESTINATION ${cmakedir} COMPONENT headers)
configure_package_config_file(cmake/install/Orva_accConfig.cmake.in Orva_accConfig.cmake
  INSTALL_DESTINATION ${cmakedir} PATH_VARS CMAKE_INSTALL_BINDIR CMAKE_INSTALL_LIBDIR)
# Until 1.0 a minor version may change the interface.
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/Orva_accConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/Orva_accConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/Orva_accConfigVersion.cmake
  DESTINATION ${cmakedir} COMPONENT headers)

file(RELATIVE_PATH to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" to_prefix ${to_prefix})
function(orva_install_pkg_config module library description requires)
  set(link_name ${library})
  if(MINGW) # by its whole name: with -static the linker would pass it over, and take the one for MSVC, which has no C++ names
    set(link_name :lib${library}.dll.a)
  endif()
  configure_file(cmake/install/library.pc.in ${module}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${module}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT headers)
endfunction()
orva_install_pkg_config(orva_acc Orva_acc "${PROJECT_DESCRIPTION}" "")
orva_install_pkg_config(orva_tidy Orva_tidy "Results of Orva_acc closed by index, with few triangles" orva_acc)

# ---- licences, and first steps ----

install(FILES THIRD-PARTY-NOTICES.md DESTINATION ${docdir}/licences COMPONENT licences)
install(FILES CHANGELOG.md DESTINATION ${docdir} COMPONENT headers)
install(FILES examples/box.h examples/box.hpp examples/wall.c examples/wall.cpp
  DESTINATION ${docdir}/examples COMPONENT headers)
