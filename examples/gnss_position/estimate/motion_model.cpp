#include "estimate/motion_model.h"

namespace gnss {
namespace {

using Index = Matrix::size_type;

// Writes the 2 x 2 block of one pair of states on the diagonal of a big upper triangular or symmetric matrix.
template <typename Packed>
void PutPair(Packed& big, Index at, const Packed& pair) {
  big(at, at) = pair(0, 0);
  big(at, at + 1) = pair(0, 1);
  big(at + 1, at + 1) = pair(1, 1);
}

}  // namespace

MotionModel MotionModel::Walking() {
  MotionModel model;
  model.acceleration = 0.3;
  model.initial_velocity = 2.0;
  return model;
}

MotionModel MotionModel::Driving() {
  MotionModel model;
  model.acceleration = 0.5;
  model.initial_velocity = 20.0;
  return model;
}

Transition TransitionOver(double dt, const MotionModel& model) {
  UpperTriangularMatrix phi_pair;
  UpperTriangularMatrix back_pair;
  SymmetricMatrix noise_pair;
  Phi_PV(phi_pair, dt);
  Phi_PV(back_pair, -dt);

  Transition out;
  out.phi = UpperTriangularMatrix(kStates);
  out.phi_inverse = UpperTriangularMatrix(kStates);
  out.noise = SymmetricMatrix(kStates);
  out.shift = RegularMatrix(kStates, 1);
  for (Index at = 0; at < kStates; at += 2) {
    Q_PV(noise_pair, dt, at == kClock ? model.clock_acceleration : model.acceleration);
    PutPair(out.phi, at, phi_pair);
    PutPair(out.phi_inverse, at, back_pair);
    PutPair(out.noise, at, noise_pair);
  }
  return out;
}

SymmetricMatrix InitialCovariance(const MotionModel& model) {
  SymmetricMatrix p(kStates);
  for (Index at = 0; at < kStates; at += 2) {
    const bool clock = at == kClock;
    const double offset = clock ? model.initial_clock : model.initial_position;
    const double rate = clock ? model.initial_drift : model.initial_velocity;
    p(at, at) = offset * offset;
    p(at + 1, at + 1) = rate * rate;
  }
  return p;
}

}  // namespace gnss
