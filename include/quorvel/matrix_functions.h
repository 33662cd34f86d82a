// Free functions for matrix functions: transpose, sym, triu, tril, diag, trace, scalar, eye, dot, kron, std::swap.
#ifndef QUORVEL_MATRIX_FUNCTIONS_H
#define QUORVEL_MATRIX_FUNCTIONS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
