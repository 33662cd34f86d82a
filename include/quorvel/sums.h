// Free functions for sums and differences: Plus, Minus, operator+, operator-.
#ifndef QUORVEL_SUMS_H
#define QUORVEL_SUMS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
