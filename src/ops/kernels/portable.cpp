// Kernels in plain C++: one double at a time. Runs everywhere, and is what 32-bit ARM uses.
#define QUORVEL_KERNELS_NAME portable
#define QUORVEL_KERNELS_LANES 1
#include "ops/kernels/instance.inc"
