// Free functions for blocks: CopySubMat, GetSubMat, SubMat.
#ifndef QUORVEL_BLOCKS_H
#define QUORVEL_BLOCKS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
