#ifndef QUORVEL_SPARSEMATRIX_H
#define QUORVEL_SPARSEMATRIX_H

#include "quorvel/Matrix.h"

#endif
