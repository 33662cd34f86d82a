// Free functions for structured products: ATA, AAT, ATB, ABT, ATPA, AQAT, SQS, PWeightedNorm, UTU, LTL, ....
#ifndef QUORVEL_STRUCTURED_H
#define QUORVEL_STRUCTURED_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
