# The manual: `cmake --build . --target manual` writes it to manual/html in the build folder, from docs/ and the public
# headers. It needs Doxygen, and MathJax (2, as in Debian's libjs-mathjax) for the formulas: a copy of what they need
# goes beside the pages, so that they can be read anywhere without a network.

find_program(QUORVEL_DOXYGEN doxygen)
find_path(QUORVEL_MATHJAX MathJax.js PATHS /usr/share/javascript/mathjax NO_DEFAULT_PATH)
mark_as_advanced(QUORVEL_DOXYGEN QUORVEL_MATHJAX)
if(NOT QUORVEL_DOXYGEN)
  return()
endif()

set(QUORVEL_MANUAL_DIR "${PROJECT_BINARY_DIR}/manual")
set(QUORVEL_MANUAL_TOOLS "${PROJECT_SOURCE_DIR}/tools/manual")

# Pages and headers in the order of the contents; the order of the headers is that of the two collective ones.
file(GLOB pages CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/manual/*.md" "${PROJECT_SOURCE_DIR}/docs/*.md")
set(QUORVEL_MANUAL_INPUT ${pages})
foreach(collection quorvel functions)
  file(STRINGS "${PROJECT_SOURCE_DIR}/include/quorvel/${collection}.h" includes REGEX "^#include \"quorvel/")
  foreach(include IN LISTS includes)
    string(REGEX REPLACE "^#include \"(.*)\"$" "${PROJECT_SOURCE_DIR}/include/\\1" header "${include}")
    list(APPEND QUORVEL_MANUAL_INPUT "${header}")
  endforeach()
endforeach()
file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/include/quorvel/*.h")
list(APPEND QUORVEL_MANUAL_INPUT ${headers})
list(REMOVE_DUPLICATES QUORVEL_MANUAL_INPUT)
list(FILTER QUORVEL_MANUAL_INPUT EXCLUDE REGEX "/(export|forward)\\.h$") # nothing for users
list(JOIN QUORVEL_MANUAL_INPUT "\" \\\n                         \"" QUORVEL_MANUAL_INPUT)
configure_file("${QUORVEL_MANUAL_TOOLS}/Doxyfile.in" "${QUORVEL_MANUAL_DIR}/Doxyfile" @ONLY)

set(quorvel_manual_command
  "${QUORVEL_MANUAL_TOOLS}/build.sh" "${QUORVEL_DOXYGEN}" "${QUORVEL_MANUAL_DIR}")
add_custom_target(manual
  COMMAND ${quorvel_manual_command} "${QUORVEL_MATHJAX}"
  COMMENT "Writing the manual to ${QUORVEL_MANUAL_DIR}/html"
  VERBATIM)
