# Reads the table of functions: QORVANE_NAMES has the exported names of the served functions, twins included.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS frame/functions.inc)
file(STRINGS frame/functions.inc rows REGEX "^FUNCTION\\(")
set(QORVANE_NAMES nuvGetNumThreads nuvSetNumThreads)
foreach(row IN LISTS rows)
  string(REGEX REPLACE "^FUNCTION\\(([A-Za-z0-9_]+),.*" "nuvs\\1" name "${row}")
  list(APPEND QORVANE_NAMES ${name} ${name}_Idx)
endforeach()
