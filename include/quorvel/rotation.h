// Free functions for rotation matrices about the axes.
#ifndef QUORVEL_ROTATION_H
#define QUORVEL_ROTATION_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
