# The debugger's printers, beside the library: gdb loads them with it, wherever the installed tree is moved. A package
# whose library stays where it is may put them into gdb's own folder instead, as distributions do:
# share/gdb/auto-load and behind it the library's full path.
set(QUORVEL_GDB_DIR "${CMAKE_INSTALL_LIBDIR}" CACHE STRING "Where gdb's printers are installed")

quorvel_python_table("${QUORVEL_CODES_offset}" QUORVEL_CODE_OFFSETS)
quorvel_python_table("${QUORVEL_CODES_code}" QUORVEL_CODE_OPERATIONS)
quorvel_python_table("${QUORVEL_CODES_fixed}" QUORVEL_CODE_FIXED)
set(quorvel_printers "libQuorvel.so.${PROJECT_VERSION}-gdb.py")
configure_file("${PROJECT_SOURCE_DIR}/tools/gdb/quorvel-gdb.py.in" "${PROJECT_BINARY_DIR}/${quorvel_printers}" @ONLY)
set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/src/core/codes.h")
if(QUORVEL_INSTALL)
  install(FILES "${PROJECT_BINARY_DIR}/${quorvel_printers}" DESTINATION "${QUORVEL_GDB_DIR}")
endif()
