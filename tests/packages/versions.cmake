# Compares VERSION, the project's, with what repeats it below SOURCE.

file(READ ${SOURCE}/vcpkg.json vcpkg)
string(JSON vcpkg GET "${vcpkg}" version)
file(STRINGS ${SOURCE}/CHANGELOG.md changes REGEX "^## " LIMIT_COUNT 1)
string(REGEX REPLACE "^## ([^ ]+).*" "\\1" changes "${changes}")

foreach(place vcpkg changes)
  if(NOT ${place} STREQUAL VERSION)
    message(FATAL_ERROR "CMakeLists.txt says version ${VERSION}; ${place} (vcpkg.json, CHANGELOG.md) says '${${place}}'")
  endif()
endforeach()
