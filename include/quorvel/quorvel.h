// Everything: the seven matrix kinds and all functions.
#ifndef QUORVEL_QUORVEL_H
#define QUORVEL_QUORVEL_H

#include "quorvel/DiagonalMatrix.h"
#include "quorvel/LowerTriangularMatrix.h"
#include "quorvel/Matrix.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/SparseMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/SymmetricSparseMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"
#include "quorvel/functions.h"

#endif
