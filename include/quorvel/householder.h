// Free functions for Householder triangularisation.
#ifndef QUORVEL_HOUSEHOLDER_H
#define QUORVEL_HOUSEHOLDER_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
