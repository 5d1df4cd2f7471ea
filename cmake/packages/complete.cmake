# Adds to the files of a package what can only be said of them once they are there: README.txt, what each binary needs, hashes;
# or what Debian wants instead. CPack runs this with its own variables, before it packs.

set(root ${CPACK_TEMPORARY_DIRECTORY})
set(source ${CPACK_ORVA_SOURCE_DIR})
set(PROJECT_VERSION ${CPACK_PACKAGE_VERSION}) # as the templates call it

# run(COMMAND...): its output is in `output`.
macro(run)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endmacro()

if(CPACK_GENERATOR STREQUAL "DEB")
  # What the program looks in beyond the system's folders is for the other package.
  file(RPATH_REMOVE FILE ${root}/usr/bin/orva)

  set(doc ${root}/usr/share/doc/orva-acc)
  set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
  run(date -u -R -d "@$ENV{SOURCE_DATE_EPOCH}")
  file(WRITE ${doc}/changelog.Debian
    "orva-acc (${version}) unstable; urgency=medium\n\n"
    "  * Version ${CPACK_PACKAGE_VERSION}: see changelog.gz.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${output}\n")
  file(RENAME ${doc}/CHANGELOG.md ${doc}/changelog)
  run(gzip -9n ${doc}/changelog.Debian ${doc}/changelog)

  # Of the notices only what is inside: mimalloc in the library, CLI11 in the program. The rest is the system's.
  file(READ ${source}/THIRD-PARTY-NOTICES.md notices)
  set(copyright "Orva_acc\nCopyright the authors of Orva_acc\n")
  foreach(part mimalloc CLI11)
    string(FIND "${notices}" "\n## ${part}\n" begin)
    string(SUBSTRING "${notices}" ${begin} -1 section)
    string(REGEX REPLACE "^\n## [^\n]*\n" "" section "${section}")
    string(FIND "${section}" "\n## " end)
    string(SUBSTRING "${section}" 0 ${end} section)
    string(REGEX REPLACE "\n```(text)?" "" section "${section}")
    string(APPEND copyright "\nIt contains ${part}, on these terms:\n${section}")
  endforeach()
  file(WRITE ${doc}/copyright "${copyright}")
else()
  if(CPACK_SYSTEM_NAME MATCHES "windows")
    set(system windows)
    set(binaries "bin/*.dll" "bin/*.exe")
    set(needed "DLL Name: ")
    set(line_end CRLF)
  else()
    set(system linux)
    set(binaries "lib/*.so*" "bin/*")
    set(needed "NEEDED +")
    set(line_end LF)
  endif()
  configure_file(${source}/cmake/packages/README-${system}.txt.in ${root}/README.txt @ONLY NEWLINE_STYLE ${line_end})

  set(needs "What each binary loads, read from the files. Whatever is not in this folder belongs to the system.\n")
  list(TRANSFORM binaries PREPEND ${root}/)
  file(GLOB binaries LIST_DIRECTORIES OFF ${binaries})
  foreach(binary IN LISTS binaries)
    if(IS_SYMLINK ${binary})
      continue()
    endif()
    run(${CPACK_ORVA_OBJDUMP} -p ${binary})
    string(REGEX MATCHALL "${needed}[^\n]+" names "${output}")
    list(TRANSFORM names REPLACE "${needed}" "    ")
    list(JOIN names "\n" names)
    file(RELATIVE_PATH name ${root} ${binary})
    string(APPEND needs "\n${name}\n${names}\n")
  endforeach()
  file(CONFIGURE OUTPUT ${root}/NEEDS.txt CONTENT "${needs}" @ONLY NEWLINE_STYLE ${line_end})

  run(sh -c "cd '${root}' && find . -type f | LC_ALL=C sort | sed 's,^\\./,,' | xargs -d '\\n' sha256sum")
  file(WRITE ${root}/SHA256SUMS "${output}\n")
endif()

# The time of the commit on every file, the same rights whoever builds.
run(chmod -R u=rwX,go=rX ${root})
run(find ${root} -exec touch -h -d "@$ENV{SOURCE_DATE_EPOCH}" {} +)
