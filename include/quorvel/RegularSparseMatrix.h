#ifndef QUORVEL_REGULARSPARSEMATRIX_H
#define QUORVEL_REGULARSPARSEMATRIX_H

#include "quorvel/Matrix.h"

#endif
