# Compiler and linker flags of everything built here: library, tests, examples, benchmarks.

# Results are the same to the last bit everywhere, so a*b + c is never fused. This holds for the
# tests too: their reference computations must round like the library.
add_compile_options(-ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86)")
  add_compile_options(-msse2 -mfpmath=sse) # the x87 unit keeps extended intermediate results
endif()

if(QUORVEL_SANITIZE)
  add_compile_options("-fsanitize=${QUORVEL_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options("-fsanitize=${QUORVEL_SANITIZE}")
endif()

# Language level, visibility and warnings of one target of ours.
function(quorvel_flags target)
  set_target_properties(${target} PROPERTIES
    CXX_STANDARD 17
    CXX_STANDARD_REQUIRED ON
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(QUORVEL_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# A shared object must name everything it needs. Clang leaves the sanitizers' symbols to the
# program, so there the check is impossible.
function(quorvel_link_flags target)
  # Calls from the library to itself go straight to their target, not through a table that a program
  # could redirect: that is a good part of the cost of a product of two 3 x 3 matrices.
  target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
  target_link_options(${target} PRIVATE "-Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/quorvel.map")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${PROJECT_SOURCE_DIR}/cmake/quorvel.map")
  if(NOT (QUORVEL_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()
