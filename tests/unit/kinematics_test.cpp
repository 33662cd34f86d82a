// Transition and process-noise matrices of the kinematic models.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/random.h"

namespace quorvel::test {
namespace {

using PhiFunction = void (*)(UpperTriangularMatrix&, double);
using QFunction = void (*)(SymmetricMatrix&, double, double);

struct Model {
  const char* name;
  unsigned order;
  PhiFunction phi;
  QFunction q;
};

const std::array<Model, 3> kModels = {Model{"PV", 2, Phi_PV, Q_PV}, Model{"PVA", 3, Phi_PVA, Q_PVA},
                                      Model{"PVAJ", 4, Phi_PVAJ, Q_PVAJ}};

using Square = std::vector<std::vector<long double>>;

long double Factorial(unsigned n) { return n == 0 ? 1.0L : static_cast<long double>(n) * Factorial(n - 1); }

// exp(F dt) of the chain of integrators: dt^(j - i) / (j - i)!
Square Transition(unsigned n, long double dt) {
  Square phi(n, std::vector<long double>(n, 0.0L));
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) phi[i][j] = std::pow(dt, static_cast<long double>(j - i)) / Factorial(j - i);
  }
  return phi;
}

// Integral of phi(s) g g' phi(s)' over 0 .. dt: the last column of phi(s) holds s^a / a!, a = n - 1 - i, so element
// (i, j) is dt^(a + b + 1) / (a! b! (a + b + 1)).
Square Noise(unsigned n, long double dt, long double sigma) {
  Square q(n, std::vector<long double>(n, 0.0L));
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j < n; ++j) {
      const unsigned a = n - 1 - i, b = n - 1 - j;
      q[i][j] = sigma * sigma * std::pow(dt, static_cast<long double>(a + b + 1)) /
                (Factorial(a) * Factorial(b) * static_cast<long double>(a + b + 1));
    }
  }
  return q;
}

template <class K>
void ExpectNear(const K& got, const Square& want, const char* what) {
  ASSERT_EQ(got.ndim(), want.size()) << what;
  for (unsigned i = 0; i < got.ndim(); ++i) {
    for (unsigned j = 0; j < got.ndim(); ++j) {
      const double expected = static_cast<double>(want[i][j]);
      const double element = static_cast<const K&>(got)(i, j);
      // A handful of roundings, each of half a unit.
      EXPECT_NEAR(element, expected, 16 * std::numeric_limits<double>::epsilon() * std::fabs(expected))
          << what << " (" << i << ", " << j << ")";
    }
  }
}

TEST(Kinematics, AreTheIntegralsOfTheModels) {
  Random random(61);
  for (const Model& model : kModels) {
    for (int trial = 0; trial < 50; ++trial) {
      const double dt = random.Uniform(-30.0, 30.0);
      const double sigma = random.Uniform(0.0, 5.0);
      UpperTriangularMatrix phi;
      SymmetricMatrix q;
      model.phi(phi, dt);
      model.q(q, dt, sigma);
      ExpectNear(phi, Transition(model.order, dt), model.name);
      ExpectNear(q, Noise(model.order, dt, sigma), model.name);
      digest::Feed(phi);
      digest::Feed(q);
    }
  }
}

// Going dt1 and then dt2 is going dt1 + dt2: Phi = Phi2 Phi1, Q = Phi2 Q1 Phi2' + Q2.
TEST(Kinematics, TimeUpdatesCompose) {
  const double dt1 = 0.75, dt2 = 1.5, sigma = 2.5;
  for (const Model& model : kModels) {
    const unsigned n = model.order;
    UpperTriangularMatrix phi1, phi2, phi;
    SymmetricMatrix q1, q2, q;
    model.phi(phi1, dt1);
    model.phi(phi2, dt2);
    model.phi(phi, dt1 + dt2);
    model.q(q1, dt1, sigma);
    model.q(q2, dt2, sigma);
    model.q(q, dt1 + dt2, sigma);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) {
        double product = 0.0, noise = q2(i, j);
        for (unsigned k = 0; k < n; ++k) {
          product += phi2(i, k) * phi1(k, j);
          for (unsigned l = 0; l < n; ++l) noise += phi2(i, k) * q1(k, l) * phi2(j, l);
        }
        EXPECT_NEAR(phi(i, j), product, 1e-14) << model.name;
        EXPECT_NEAR(q(i, j), noise, 1e-13 * noise) << model.name;
      }
    }
  }
}

TEST(Kinematics, NoTimeIsTheIdentityWithoutNoise) {
  for (const Model& model : kModels) {
    UpperTriangularMatrix phi;
    SymmetricMatrix q;
    model.phi(phi, 0.0);
    model.q(q, 0.0, 3.0);
    for (unsigned i = 0; i < model.order; ++i) {
      for (unsigned j = 0; j < model.order; ++j) EXPECT_EQ(phi(i, j), i == j ? 1.0 : 0.0);
    }
    EXPECT_TRUE(q == 0.0) << model.name;
  }
}

TEST(Kinematics, BringTheMatrixToTheirOrder) {
  UpperTriangularMatrix phi(5);
  phi = 7.0;
  Phi_PV(phi, 0.25);
  ASSERT_EQ(phi.ndim(), 2u);
  EXPECT_EQ(phi(0, 0), 1.0);
  EXPECT_EQ(phi(0, 1), 0.25);
  EXPECT_EQ(phi(1, 1), 1.0);
  EXPECT_EQ(phi.capacity(), 15u);  // storage never shrinks
  phi.set_nsing(4);
  Phi_PVAJ(phi, 0.25);
  EXPECT_EQ(phi.ndim(), 4u);
  EXPECT_EQ(phi.nsing(), 4);  // the count is not touched
  EXPECT_EQ(phi.capacity(), 15u);

  SymmetricMatrix q(1);
  q.set_nsing(3);
  Q_PVAJ(q, 1.0, 1.0);
  EXPECT_EQ(q.ndim(), 4u);
  EXPECT_EQ(q.capacity(), 10u);
  EXPECT_EQ(q.nsing(), 3);
}

TEST(Kinematics, EveryElementIsWritten) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Model& model : kModels) {
    UpperTriangularMatrix phi(model.order);
    SymmetricMatrix q(model.order);
    phi = nan;
    q = nan;
    model.phi(phi, 2.0);
    model.q(q, 2.0, 0.5);
    EXPECT_TRUE(phi >= 0.0) << model.name;
    EXPECT_TRUE(q > 0.0) << model.name;
  }
}

TEST(Kinematics, WorkedNoise) {
  SymmetricMatrix q;
  Q_PVA(q, 1.0, 2.0);
  EXPECT_EQ(q(0, 0), 0.2);
  EXPECT_EQ(q(0, 1), 0.5);
  EXPECT_EQ(q(2, 2), 4.0);
}

TEST(Kinematics, NegativeTimeTurnsOddPowers) {
  for (const Model& model : kModels) {
    UpperTriangularMatrix phi, back;
    SymmetricMatrix q, mirrored;
    model.phi(phi, 1.25);
    model.phi(back, -1.25);
    model.q(q, 1.25, 1.5);
    model.q(mirrored, -1.25, 1.5);
    for (unsigned i = 0; i < model.order; ++i) {
      for (unsigned j = i; j < model.order; ++j) {
        EXPECT_EQ(back(i, j), (j - i) % 2 == 0 ? phi(i, j) : -phi(i, j)) << model.name;
        // Powers of dt in Q: (n - 1 - i) + (n - 1 - j) + 1.
        EXPECT_EQ(mirrored(i, j), (i + j) % 2 == 0 ? -q(i, j) : q(i, j)) << model.name;
      }
    }
  }
}

// 1/20, 1/8 and 1/2 are factors; 3, 6, 24, 30, 72 and 252 divide. Powers: dt^3 = dt dt^2, dt^4 = dt^2 dt^2,
// dt^5 = dt dt^4. Intervals are searched for which another reading gives other bits, so that the test can tell.
TEST(Kinematics, GroupingsAreKept) {
  int twentieth = 0, dt4_left = 0, dt5_left = 0, sixth = 0;
  Random random(62);
  for (int trial = 0; trial < 200; ++trial) {
    const double dt = random.Uniform(0.0, 3.0);
    const double dt2 = dt * dt;
    const double dt3 = dt * dt2;
    const double dt4 = dt2 * dt2;
    const double dt5 = dt * dt4;
    SymmetricMatrix pva, pvaj, pv;
    Q_PVA(pva, dt, 1.0);
    Q_PVAJ(pvaj, dt, 1.0);
    Q_PV(pv, dt, 0.7);
    EXPECT_EQ(pva(0, 0), dt2 * dt3 * 0.05);
    EXPECT_EQ(pva(0, 1), dt4 * 0.125);
    EXPECT_EQ(pva(0, 2), dt3 / 6.0);
    EXPECT_EQ(pvaj(0, 0), dt3 * dt4 / 252.0);
    EXPECT_EQ(pvaj(0, 1), dt3 * dt3 / 72.0);
    EXPECT_EQ(pvaj(0, 2), dt5 / 30.0);
    EXPECT_EQ(pvaj(0, 3), dt4 / 24.0);
    EXPECT_EQ(pvaj(1, 1), dt5 * 0.05);
    EXPECT_EQ(pvaj(2, 2), dt3 / 3.0);
    const double s = dt * 0.7 * 0.7;
    EXPECT_EQ(pv(1, 1), s);
    EXPECT_EQ(pv(0, 1), dt * s * 0.5);
    EXPECT_EQ(pv(0, 0), dt * (dt * s) / 3.0);
    twentieth += pvaj(1, 1) != dt5 / 20.0;
    dt4_left += pva(0, 1) != dt3 * dt * 0.125;
    dt5_left += pvaj(0, 2) != dt2 * dt3 / 30.0;
    sixth += pva(0, 2) != dt3 * (1.0 / 6.0);
  }
  EXPECT_GT(twentieth, 0);
  EXPECT_GT(dt4_left, 0);
  EXPECT_GT(dt5_left, 0);
  EXPECT_GT(sixth, 0);
}

// The scaling differs between the models: inside the products for PV, of the finished matrix for the others.
TEST(Kinematics, ScalingAtTheEdges) {
  const double inf = std::numeric_limits<double>::infinity();
  SymmetricMatrix q;
  Q_PV(q, inf, 0.0);
  EXPECT_TRUE(std::isnan(q(0, 0)) && std::isnan(q(0, 1)) && std::isnan(q(1, 1)));
  Q_PVA(q, inf, 0.0);
  EXPECT_TRUE(q == 0.0);
  Q_PVAJ(q, inf, 0.0);
  EXPECT_TRUE(q == 0.0);
  Q_PV(q, 1e-200, 1e200);
  EXPECT_EQ(q(1, 1), 1e-200 * 1e200 * 1e200);
  Q_PVA(q, 1e-200, 1e200);  // sigma^2 overflows before it meets dt
  EXPECT_EQ(q(2, 2), inf);
}

}  // namespace
}  // namespace quorvel::test
