# Kernel sources named after an instruction set are built with that set's flags, and only for
# processors that have it. Every other source is built for the baseline of the platform.

# The register tiles need their loops unrolled, which -O2 does not do. Whoever chose a lower level gets that. What the
# compiler would make vectors of besides is short, and sooner done by elements. A root need not set errno, so it is the
# instruction alone.
set(quorvel_kernel_optimise "$<$<CONFIG:Release>:-O3>;-fno-tree-vectorize;-fno-tree-slp-vectorize;-fno-math-errno")
if(CMAKE_CXX_FLAGS_RELEASE MATCHES "-O[01s]")
  set(quorvel_kernel_optimise "")
endif()
set_source_files_properties("${PROJECT_SOURCE_DIR}/src/ops/kernels/portable.cpp" PROPERTIES
  COMPILE_OPTIONS "${quorvel_kernel_optimise}")

set(quorvel_kernel_flags_sse2 -msse2)
set(quorvel_kernel_flags_avx2 -mavx2 -mno-fma)
set(quorvel_kernel_flags_avx512 -mavx512f -mavx512dq -mavx512vl)
if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang") # where it would switch AVX-512 off again
  list(APPEND quorvel_kernel_flags_avx512 -mno-fma)
endif()

set(QUORVEL_KERNEL_SETS) # those that are built beside the portable one
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(QUORVEL_KERNEL_SETS sse2 avx2 avx512)
endif()

foreach(set IN ITEMS sse2 avx2 avx512)
  set(source "${PROJECT_SOURCE_DIR}/src/ops/kernels/${set}.cpp")
  if(set IN_LIST QUORVEL_KERNEL_SETS)
    set_source_files_properties("${source}" PROPERTIES
      COMPILE_OPTIONS "${quorvel_kernel_flags_${set}};${quorvel_kernel_optimise}")
  else()
    list(REMOVE_ITEM quorvel_sources "${source}")
  endif()
endforeach()
