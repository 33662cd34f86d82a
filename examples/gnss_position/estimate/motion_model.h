// How receiver and clock are expected to move between two epochs.
#ifndef GNSS_POSITION_ESTIMATE_MOTION_MODEL_H
#define GNSS_POSITION_ESTIMATE_MOTION_MODEL_H

#include "estimate/filter_form.h"

namespace gnss {

/// Roots of the power spectral densities of the white noise that drives each pair of states, m/s^1.5, and what is known
/// of the state before the first measurement (standard deviations, m and m/s).
struct MotionModel {
  double acceleration = 0.0003;
  double clock_acceleration = 0.3;
  double initial_position = 100.0;
  double initial_velocity = 0.01;
  double initial_clock = 100.0;
  double initial_drift = 10.0;

  static MotionModel Standing() { return {}; }
  static MotionModel Walking();
  static MotionModel Driving();
};

/// Transition over dt seconds; the shift is zero.
Transition TransitionOver(double dt, const MotionModel& model);
SymmetricMatrix InitialCovariance(const MotionModel& model);

}  // namespace gnss

#endif
