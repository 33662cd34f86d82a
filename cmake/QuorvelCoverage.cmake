# Counting which lines and branches of src/ run, with gcov. Only the library is instrumented: scripts/coverage.sh puts it
# in the place of the release build's under the same test programs.
option(QUORVEL_COVERAGE "Instrument the library for gcov" OFF)
if(QUORVEL_COVERAGE)
  target_sources(quorvel_objects PRIVATE "${PROJECT_SOURCE_DIR}/tools/coverage/keep_counts.cpp")
  target_compile_options(quorvel_objects PRIVATE --coverage)
  # Each inlined copy would be counted by itself.
  target_compile_definitions(quorvel_objects PRIVATE always_inline=)
  target_compile_definitions(QuorvelStatic INTERFACE always_inline=)
  target_link_options(Quorvel PRIVATE --coverage)
  # The tests of internals bring their own copies of what stands in headers, and the linker may keep those: counted, too.
  target_compile_options(QuorvelStatic INTERFACE --coverage)
  target_link_options(QuorvelStatic INTERFACE --coverage -Wl,--undefined=quorvel_keeps_counts)
endif()
