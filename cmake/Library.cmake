# What both libraries have in common.

# orva_add_library(NAME SHORT SOURCES...): the shared library NAME, Orva::SHORT to whoever uses it, and NAME_objects, all of it
# compiled once, which the tests of the internals link too. Its exports stand in cmake/exports/SHORT-*; the property ORVA_EXPORTS
# names the list of this platform.
function(orva_add_library name short)
  string(TOUPPER ${name} upper)
  add_library(${name}_objects OBJECT ${ARGN})
  target_compile_features(${name}_objects PUBLIC cxx_std_20)
  target_compile_definitions(${name}_objects PUBLIC ${upper}_BUILDING)
  target_include_directories(${name}_objects PUBLIC include src)
  target_link_libraries(${name}_objects PRIVATE orva_arithmetic orva_hardening orva_warnings)
  set_target_properties(${name}_objects PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)

  if(ORVA_COVERAGE) # unoptimised, so that every branch that counts is one of the source's
    target_compile_options(${name}_objects PRIVATE --coverage -fprofile-update=atomic -O0)
    target_link_options(${name}_objects INTERFACE --coverage)
  endif()

  add_library(${name} SHARED)
  add_library(Orva::${short} ALIAS ${name})
  target_compile_features(${name} INTERFACE cxx_std_17) # all that the headers need
  target_include_directories(${name} INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
  target_link_libraries(${name} PRIVATE ${name}_objects orva_hardening)
  set_target_properties(${name} PROPERTIES SOVERSION ${ORVA_SOVERSION} LINKER_LANGUAGE CXX EXPORT_NAME ${short})
  if(WIN32)
    set_target_properties(${name} PROPERTIES PREFIX "")
  endif()

  # Exactly the reviewed names leave the library. MSVC goes by the marks in the headers alone: its C++ names are other ones.
  if(MINGW)
    set(exports ${PROJECT_SOURCE_DIR}/cmake/exports/${short}-windows.def)
    target_sources(${name} PRIVATE ${exports})
    target_link_options(${name} PRIVATE -Wl,--exclude-all-symbols)
  elseif(UNIX)
    set(exports ${PROJECT_SOURCE_DIR}/cmake/exports/${short}-linux.map)
    target_link_options(${name} PRIVATE -Wl,--version-script=${exports} -Wl,--no-undefined)
    set_target_properties(${name} PROPERTIES LINK_DEPENDS ${exports})
  endif()
  set_target_properties(${name} PROPERTIES ORVA_EXPORTS "${exports}")
endfunction()
