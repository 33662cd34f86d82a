// Free functions for kinematic transition and process-noise models.
#ifndef QUORVEL_KINEMATICS_H
#define QUORVEL_KINEMATICS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
