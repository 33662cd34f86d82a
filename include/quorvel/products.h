// Free functions for products and scaling: Mult, operator*.
#ifndef QUORVEL_PRODUCTS_H
#define QUORVEL_PRODUCTS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
