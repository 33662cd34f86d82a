// Filters that run for a million steps: the covariance form, U-D factors and the square root of the information, and a sparse
// covariance, side by side on ill-conditioned models.
//
// Looked at: P stays symmetric to the last bit, D and the pivots of R never become negative, the forms agree within the bound
// of docs/FILTERS.md, and memory does not grow. QUORVEL_LONG_STEPS sets the number of steps (20000 without it).

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/digest.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

constexpr unsigned long kUsualSteps = 20000;

unsigned long Steps() {
  const char* const text = std::getenv("QUORVEL_LONG_STEPS");
  return text == nullptr ? kUsualSteps : std::strtoul(text, nullptr, 10);
}

// x(k + 1) = Phi x(k) + G w, w of covariance Q; measurement k is row k % rows(H) of H with variance r(k % rows(H)), times
// a quarter to four: the filter shall never come to rest.
struct Process {
  RegularMatrix Phi, G, H;
  DiagonalMatrix Q;
  std::vector<double> r;
  SymmetricMatrix P0;

  unsigned row(unsigned long step) const { return static_cast<unsigned>(step % H.nrows()); }
  double variance(unsigned long step) const {
    Random random(step);
    return r[row(step)] * std::ldexp(1.0, random.Integer(-2, 2));
  }
};

class CovarianceForm {
 public:
  explicit CovarianceForm(const Process& p) : process_(p), noise_(AQAT(p.G, p.Q)), P(p.P0), h_(1, P.ndim()) {}
  void Step(unsigned row, double r) {
    P = AQAT(process_.Phi, P) + noise_;
    for (unsigned j = 0; j < P.ndim(); ++j) h_(0, j) = process_.H(row, j);
    const RegularMatrix PHt = ABT(P, h_);
    before_ = P;
    s_ = scalar(h_ * PHt) + r;
    gain_ = PHt * (1.0 / s_);
    P -= AAT(PHt) * (1.0 / s_);
  }
  const SymmetricMatrix& before() const { return before_; }
  const RegularMatrix& gain() const { return gain_; }
  const RegularMatrix& h() const { return h_; }

 private:
  const Process& process_;
  SymmetricMatrix noise_;
  SymmetricMatrix before_;
  RegularMatrix gain_;
  double s_ = 0.0;

 public:
  SymmetricMatrix P;

 private:
  RegularMatrix h_;
};

class UDForm {
 public:
  explicit UDForm(const Process& p) : process_(p), h_(1, p.P0.ndim()) { UDFactor(U, D, p.P0); }
  void Step(unsigned row, double r) {
    UDTimeUpdate(U, D, process_.Phi, process_.G, process_.Q);
    for (unsigned j = 0; j < D.ndim(); ++j) h_(0, j) = process_.H(row, j);
    UDMeasurementUpdate(U, D, h_, r, K_);
  }
  SymmetricMatrix& Covariance() const { return AQAT(RegularMatrix(U), D); }

  UpperTriangularMatrix U;
  DiagonalMatrix D;

 private:
  const Process& process_;
  RegularMatrix h_, K_;
};

// R'R is the information matrix. The time update triangularises [Rw 0; -R/Phi G  R/Phi], whose first rows belong to the noise.
class InformationForm {
 public:
  explicit InformationForm(const Process& p)
      : process_(p), n_(p.P0.ndim()), q_(p.Q.ndim()), back_(inv(p.Phi)), R(n_), z_(n_, 1), a_(1, n_), za_(1, 1) {
    const LowerTriangularMatrix L(CholeskySquareRootLower(p.P0));  // P0 = L L', so R = inv(L)
    RegularMatrix root{LowerTriangularMatrix(inv(L))};
    HouseholderTransformation(root, true);
    R = UpperTriangularMatrix(triu(root));
  }
  void Step(unsigned row, double r) {
    const RegularMatrix A = R * back_;
    const RegularMatrix AG = A * process_.G;
    RegularMatrix stack(q_ + n_, q_ + n_);
    for (unsigned k = 0; k < q_; ++k) stack(k, k) = 1.0 / std::sqrt(process_.Q(k, k));
    for (unsigned i = 0; i < n_; ++i) {
      for (unsigned k = 0; k < q_; ++k) stack(q_ + i, k) = -AG(i, k);
      for (unsigned j = 0; j < n_; ++j) stack(q_ + i, q_ + j) = A(i, j);
    }
    HouseholderTransformation(stack, true);
    for (unsigned i = 0; i < n_; ++i) {
      for (unsigned j = i; j < n_; ++j) R(i, j) = std::as_const(stack)(q_ + i, q_ + j);
    }
    const double w = 1.0 / std::sqrt(r);
    for (unsigned j = 0; j < n_; ++j) a_(0, j) = w * process_.H(row, j);
    Householder_Reduction(1, R, z_, a_, za_);
  }
  SymmetricMatrix& Covariance() const { return AAT(RegularMatrix(inv(R))); }

 private:
  const Process& process_;
  unsigned n_, q_;
  RegularMatrix back_;

 public:
  UpperTriangularMatrix R;

 private:
  RegularMatrix z_, a_, za_;
};

// The covariance form in a sparse store that lives as long as the filter.
class SparseForm {
 public:
  explicit SparseForm(const Process& p)
      : process_(p), Phi_(p.Phi), noise_(SymmetricMatrix(AQAT(p.G, p.Q))), P(p.P0), all_(P.ndim()) {
    for (unsigned i = 0; i < P.ndim(); ++i) all_[i] = i;
  }
  void Step(unsigned row, double r) {
    const unsigned n = P.ndim();
    SymmetricSparseMatrix next(AQAT(Phi_, P, 0));
    P = std::as_const(next);
    P += noise_;
    RegularSparseMatrix b(n, 1);
    double s = r;
    for (unsigned i = 0; i < n; ++i) {
      double sum = 0.0;
      for (unsigned j = 0; j < n; ++j) sum += std::as_const(P)(i, j) * process_.H(row, j);
      b.Put(i, 0, sum);
      s += process_.H(row, i) * sum;
    }
    RankOneUpdateNZ(P, b, all_.data(), n, b, all_.data(), n, -1.0 / s);
  }

 private:
  const Process& process_;
  RegularSparseMatrix Phi_;
  SymmetricSparseMatrix noise_;

 public:
  SymmetricSparseMatrix P;

 private:
  std::vector<unsigned> all_;
};

// ---------------------------------------------------------------------------------------------------------------------
// The bound.

double Norm(const RegularMatrix& a) {  // Frobenius
  double sum = 0.0;
  for (unsigned k = 0; k < a.StoredCount(); ++k) sum += a.data()[k] * a.data()[k];
  return std::sqrt(sum);
}

std::vector<double> Deviations(const SymmetricMatrix& P) {
  std::vector<double> sigma(P.ndim());
  for (unsigned i = 0; i < P.ndim(); ++i) sigma[i] = std::sqrt(P(i, i));
  return sigma;
}

struct Bound {
  double condition;  // of the correlation matrix
  double memory;     // steps
  double reduction;  // of a variance by one measurement
  double value;
};

// 10 n eps * memory * (sqrt(condition) + reduction); see docs/FILTERS.md.
Bound BoundOf(const Process& process, CovarianceForm filter, unsigned long first) {
  const unsigned n = filter.P.ndim();
  const std::vector<double> sigma = Deviations(filter.P);
  SymmetricMatrix C(n);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) C(i, j) = std::as_const(filter.P)(i, j) / (sigma[i] * sigma[j]);
  }
  Bound bound{};
  bound.condition = Norm(RegularMatrix(C)) * Norm(RegularMatrix(SymmetricMatrix(inv(C))));
  // Sum of squared norms of the products of M = (I - K h) Phi, in units of the standard deviations.
  RegularMatrix product(eye(n, 1.0));
  bound.memory = 0.0;
  bound.reduction = 1.0;
  for (unsigned long step = first; step < first + 100000; ++step) {
    filter.Step(process.row(step), process.variance(step));
    RegularMatrix M = filter.gain() * filter.h() * process.Phi;
    M = process.Phi - M;
    product = M * product;
    RegularMatrix scaled(n, n);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) scaled(i, j) = product(i, j) * sigma[j] / sigma[i];
      bound.reduction = std::max(bound.reduction, filter.before()(i, i) / std::as_const(filter.P)(i, i));
    }
    const double now = Norm(scaled);
    bound.memory += now * now;
    if (now < 1e-3) break;
  }
  bound.value = 10.0 * n * std::numeric_limits<double>::epsilon() * bound.memory *
                (std::sqrt(bound.condition) + bound.reduction);
  return bound;
}

// Largest difference in units of the two standard deviations.
double Difference(const SymmetricMatrix& a, const SymmetricMatrix& b) {
  const std::vector<double> sigma = Deviations(b);
  double worst = 0.0;
  for (unsigned i = 0; i < a.ndim(); ++i) {
    for (unsigned j = i; j < a.ndim(); ++j) {
      const double d = std::fabs(a(i, j) - b(i, j)) / (sigma[i] * sigma[j]);
      if (!(d <= worst)) worst = d;
    }
  }
  return worst;
}

bool Symmetric(const SymmetricMatrix& P) {
  const RegularMatrix full(P);
  for (unsigned i = 0; i < P.ndim(); ++i) {
    for (unsigned j = 0; j < i; ++j) {
      if (!SameBits(full(i, j), full(j, i))) return false;
    }
  }
  return true;
}

void RunAll(const char* name, const Process& process) {
  const unsigned long steps = Steps();
  CovarianceForm covariance(process);
  UDForm ud(process);
  InformationForm information(process);
  SparseForm sparse(process);
  const unsigned n = process.P0.ndim();
  const unsigned long settled = std::min<unsigned long>(2000, steps / 2);
  long live = 0;
  std::size_t pool = 0;
  double worst_ud = 0.0, worst_information = 0.0, worst_sparse = 0.0;
  Bound bound{};
  for (unsigned long step = 0; step < steps; ++step) {
    const unsigned row = process.row(step);
    const double r = process.variance(step);
    covariance.Step(row, r);
    ud.Step(row, r);
    information.Step(row, r);
    sparse.Step(row, r);
    for (unsigned i = 0; i < n; ++i) {
      ASSERT_GE(std::as_const(ud.D)(i, i), 0.0) << name << ", step " << step;
      ASSERT_GT(std::as_const(covariance.P)(i, i), 0.0) << name << ", step " << step;
      ASSERT_GT(std::fabs(std::as_const(information.R)(i, i)), 0.0) << name << ", step " << step;
    }
    if (step == settled) {
      bound = BoundOf(process, covariance, step + 1);
      live = LiveBlocks();
      pool = sparse.P.HeapReserved();
    }
    if (step <= settled || (step % 997 != 0 && step + 1 != steps)) continue;
    ASSERT_TRUE(Symmetric(covariance.P)) << name << ", step " << step;
    worst_ud = std::max(worst_ud, Difference(covariance.P, SymmetricMatrix(ud.Covariance())));
    worst_information = std::max(worst_information, Difference(covariance.P, SymmetricMatrix(information.Covariance())));
    worst_sparse = std::max(worst_sparse, Difference(covariance.P, SymmetricMatrix(sparse.P)));
    ASSERT_LE(worst_ud, bound.value) << name << ", step " << step;
    ASSERT_LE(worst_information, bound.value) << name << ", step " << step;
    ASSERT_LE(worst_sparse, bound.value) << name << ", step " << step;
    ASSERT_EQ(FaultOf(sparse.P), "") << name << ", step " << step;
    ASSERT_EQ(LiveBlocks(), live) << name << ", step " << step;
    ASSERT_EQ(sparse.P.HeapReserved(), pool) << name << ", step " << step;
  }
  std::printf(
      "%s: %lu steps, condition of correlations %.1e, memory %.1e steps, reduction %.1e: bound %.1e; differences from the "
      "covariance form: U-D %.1e, information %.1e, sparse %.1e\n",
      name, steps, bound.condition, bound.memory, bound.reduction, bound.value, worst_ud, worst_information, worst_sparse);
  // The forms round differently: no difference at all would mean that nothing was compared.
  EXPECT_GT(worst_ud, 0.0);
  EXPECT_GT(worst_information, 0.0);
  if (steps == kUsualSteps) {
    digest::Feed(covariance.P);
    digest::Feed(ud.U);
    digest::Feed(ud.D);
    digest::Feed(information.R);
    FeedDigest(sparse.P);
  }
}

// A target tracked by precise ranges: position, velocity, acceleration, whose variances are 12 powers of ten apart.
TEST(LongRuns, Kinematic) {
  Process p;
  const double dt = 0.01;
  UpperTriangularMatrix Phi;
  Phi_PVA(Phi, dt);
  p.Phi = RegularMatrix(Phi);
  p.Phi(2, 2) = 0.999;
  p.G = RegularMatrix(3, 1);
  p.G(0, 0) = dt * dt * dt / 6, p.G(1, 0) = dt * dt / 2, p.G(2, 0) = dt;
  p.Q = DiagonalMatrix(1);
  p.Q(0, 0) = 100.0;
  p.H = RegularMatrix(1, 3);
  p.H(0, 0) = 1.0;
  p.r = {1e-6};
  p.P0 = SymmetricMatrix(3);
  p.P0(0, 0) = 1e6, p.P0(1, 1) = 1e4, p.P0(2, 2) = 1e2;
  RunAll("kinematic", p);
}

// Two sensors that see nearly the same combination of two slowly fading biases.
TEST(LongRuns, NearlyDependentMeasurements) {
  Process p;
  p.Phi = RegularMatrix(eye(2, 0.999));
  p.G = RegularMatrix(eye(2, 1.0));
  p.Q = DiagonalMatrix(2);
  p.Q(0, 0) = p.Q(1, 1) = 1e-3;
  p.H = RegularMatrix(2, 2);
  p.H(0, 0) = p.H(0, 1) = p.H(1, 0) = 1.0;
  p.H(1, 1) = 1.0 + 1e-4;
  p.r = {1e-10, 1e-10};
  p.P0 = SymmetricMatrix(2);
  p.P0(0, 0) = p.P0(1, 1) = 1e4;
  RunAll("nearly dependent", p);
}

// Clock, drift and a bias in units that differ by eight powers of ten, one of them seen only through another.
TEST(LongRuns, BadlyScaled) {
  Process p;
  p.Phi = RegularMatrix(4, 4);
  const double unit[] = {1e5, 1e-3, 1.0, 1e2};
  const double phi[4][4] = {{1, 0.1, 0, 0.01}, {0, 0.99, 0.02, 0}, {0, 0, 0.95, 0}, {0.001, 0, 0, 0.9}};
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) p.Phi(i, j) = phi[i][j] * unit[i] / unit[j];
  }
  p.G = RegularMatrix(4, 4);
  p.Q = DiagonalMatrix(4);
  p.P0 = SymmetricMatrix(4);
  for (unsigned i = 0; i < 4; ++i) {
    p.G(i, i) = unit[i];
    p.Q(i, i) = 1e-4 * (i + 1);
    p.P0(i, i) = 100.0 * unit[i] * unit[i];
  }
  p.H = RegularMatrix(2, 4);
  p.H(0, 0) = 1.0 / unit[0];
  p.H(1, 0) = 1.0 / unit[0], p.H(1, 3) = 0.5 / unit[3];
  p.r = {1e-8, 1e-2};
  RunAll("badly scaled", p);
}

}  // namespace
