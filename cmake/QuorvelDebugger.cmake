# The debugger's printers: beside the library in the build tree, in gdb's auto-load folder when installed.

quorvel_python_table("${QUORVEL_CODES_offset}" QUORVEL_CODE_OFFSETS)
quorvel_python_table("${QUORVEL_CODES_code}" QUORVEL_CODE_OPERATIONS)
quorvel_python_table("${QUORVEL_CODES_fixed}" QUORVEL_CODE_FIXED)
set(quorvel_printers "libQuorvel.so.${PROJECT_VERSION}-gdb.py")
configure_file("${PROJECT_SOURCE_DIR}/tools/gdb/quorvel-gdb.py.in" "${PROJECT_BINARY_DIR}/${quorvel_printers}" @ONLY)
set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/src/core/codes.h")
if(QUORVEL_INSTALL)
  install(FILES "${PROJECT_BINARY_DIR}/${quorvel_printers}"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load/${CMAKE_INSTALL_FULL_LIBDIR}")
endif()
