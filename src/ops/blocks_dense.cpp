// CopySubMat between dense kinds.
#include "quorvel/blocks.h"

#include "ops/blocks.h"

#include "ops/block_rows.inc"
#include "ops/tables/blocks.h"

namespace detail = quorvel::detail;

QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, BLOCK_COPY)
QUORVEL_DENSE_BLOCK_SOURCES(BLOCK_DIAGONAL, DiagonalMatrix)
