// CopySubMat with a sparse matrix on one side or both.
#include "quorvel/blocks.h"

#include "ops/block_rows.inc"
#include "ops/sparse_block_copy.h"
#include "ops/tables/blocks.h"

namespace detail = quorvel::detail;

QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, BLOCK_COPY)
QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, BLOCK_COPY)
QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, BLOCK_COPY)
QUORVEL_SPARSE_BLOCK_SOURCES(BLOCK_DIAGONAL, DiagonalMatrix)
