// Kernels for x86-64 with 128-bit registers (SSE2), two doubles at a time.
//
// Built with the flags of that instruction set (cmake/QuorvelKernels.cmake), only where it exists. The intrinsics would
// bring in a header of the C++ library through mm_malloc.h, which is not needed here and therefore kept out.
#define _MM_MALLOC_H_INCLUDED
#define __MM_MALLOC_H
#include <immintrin.h>

#define QUORVEL_KERNELS_NAME sse2
#define QUORVEL_KERNELS_LANES 2
#include "ops/kernels/instance.inc"
