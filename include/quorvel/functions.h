// All free functions, by family.
#ifndef QUORVEL_FUNCTIONS_H
#define QUORVEL_FUNCTIONS_H

#include "quorvel/output.h"

#include "quorvel/sums.h"
#include "quorvel/products.h"
#include "quorvel/structured.h"
#include "quorvel/blocks.h"
#include "quorvel/matrix_functions.h"

#include "quorvel/small_inverses.h"
#include "quorvel/inverses.h"
#include "quorvel/cholesky.h"
#include "quorvel/ud.h"
#include "quorvel/householder.h"

#include "quorvel/regression.h"
#include "quorvel/kinematics.h"
#include "quorvel/rotation.h"
#include "quorvel/geodesy.h"
#include "quorvel/legendre.h"

#endif
