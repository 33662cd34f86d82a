// Kernels for x86-64 with 512-bit registers (AVX-512F), eight doubles at a time.
//
// Built with the flags of that instruction set (cmake/QuorvelKernels.cmake), only where it exists. The intrinsics would
// bring in a header of the C++ library through mm_malloc.h, which is not needed here and therefore kept out.
#define _MM_MALLOC_H_INCLUDED
#define __MM_MALLOC_H
// GCC takes the "undefined" registers in its own intrinsics for a mistake.
#pragma GCC diagnostic ignored "-Wuninitialized"
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>

#define QUORVEL_KERNELS_NAME avx512
#define QUORVEL_KERNELS_LANES 8
#include "ops/kernels/instance.inc"
