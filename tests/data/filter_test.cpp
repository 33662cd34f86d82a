// Worked examples of filters with published results, each by several forms of the filter.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "data/files.h"
#include "quorvel/quorvel.h"
#include "support/digest.h"

namespace quorvel::test::data {
namespace {

constexpr double kPrinted = 0.50001e-4;  // four decimals

// The numbers of the rows that follow the heading line, one after the other.
class Stream {
 public:
  explicit Stream(const std::string& name) {
    for (const std::string& line : Lines(name)) {
      for (double v : Numbers(line)) values_.push_back(v);
    }
  }
  RegularMatrix Next(unsigned rows, unsigned cols) {
    RegularMatrix m(rows, cols);
    EXPECT_LE(at_ + rows * cols, values_.size());
    m.Assign(values_.data() + at_, rows, cols);
    at_ += rows * cols;
    return m;
  }
  bool AtEnd() const { return at_ == values_.size(); }

 private:
  std::vector<double> values_;
  std::size_t at_ = 0;
};

template <class K>
void ExpectPrinted(const K& got, const RegularMatrix& want, const char* what) {
  ASSERT_EQ(got.nrows(), want.nrows());
  ASSERT_EQ(got.ncols(), want.ncols());
  for (unsigned i = 0; i < want.nrows(); ++i) {
    for (unsigned j = 0; j < want.ncols(); ++j) {
      EXPECT_NEAR(got(i, j), want(i, j), kPrinted) << what << " (" << i << ", " << j << ")";
    }
  }
}

// The numeric lines of a result file as one stream: text and size lines hold no numbers alone.
TEST(FilterData, KalmanFilterStep) {
  NEEDS_DATA("filters/FB01VD.dat");
  Stream data("filters/FB01VD.dat"), results("filters/FB01VD.res");
  data.Next(1, 4);  // order 4, 3 inputs, 2 outputs, tolerance
  const SymmetricMatrix P(sym(data.Next(4, 4)));
  const RegularMatrix A = data.Next(4, 4), B = data.Next(4, 3);
  const SymmetricMatrix Q(sym(data.Next(3, 3)));
  const RegularMatrix C = data.Next(2, 4);
  const SymmetricMatrix R(sym(data.Next(2, 2)));
  ASSERT_TRUE(data.AtEnd());
  const RegularMatrix wantP = results.Next(4, 4), wantK = results.Next(4, 2), wantRoot = results.Next(2, 2);
  ASSERT_TRUE(results.AtEnd());

  // Covariance form.
  const SymmetricMatrix S(AQAT(C, P) + R);
  SymmetricMatrix inverse(S);
  inv2x2(inverse, true);
  const RegularMatrix PCt(ABT(P, C));
  const RegularMatrix K(PCt * inverse);
  const SymmetricMatrix updated(P - AQAT(K, S));
  const SymmetricMatrix predicted(AQAT(A, updated) + AQAT(B, Q));
  ExpectPrinted(K, wantK, "gain");
  ExpectPrinted(predicted, wantP, "covariance");
  digest::Feed(predicted);

  // The upper root U of S = U'U.
  const UpperTriangularMatrix root(transpose(CholeskyFactor(S, 1e-12)));
  ExpectPrinted(root, wantRoot, "root of the innovations' covariance");

  // U-D form: the measurements are uncorrelated (R = 1) and taken one by one.
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  UDFactor(U, D, P);
  RegularMatrix gain;
  for (unsigned i = 0; i < 2; ++i) {
    const RegularMatrix h(C(i, i, 0, 3));
    UDMeasurementUpdate(U, D, h, R(i, i), gain);
  }
  UDTimeUpdate(U, D, A, SymmetricMatrix(AQAT(B, Q)));
  ExpectPrinted(SymmetricMatrix(AQAT(U, SymmetricMatrix(D))), wantP, "covariance from U-D");
}

// Rows of a triangular factor with their diagonal made positive.
RegularMatrix PositiveRows(RegularMatrix R) {
  for (unsigned i = 0; i < R.nrows(); ++i) {
    if (R(i, i) < 0) R.NegateRow(i);
  }
  return R;
}

TEST(FilterData, SquareRootInformationFilter) {
  NEEDS_DATA("filters/FB01SD.dat");
  Stream data("filters/FB01SD.dat");
  const RegularMatrix Ainv = data.Next(4, 4), C = data.Next(2, 4), Rinv = data.Next(2, 2), AinvB = data.Next(4, 2),
                      Qinv = data.Next(2, 2);
  RegularMatrix Sinv = data.Next(4, 4);
  const RegularMatrix Z = data.Next(2, 1), X = data.Next(4, 1), RinvY = data.Next(2, 1);
  ASSERT_TRUE(data.AtEnd());

  RegularMatrix z(Sinv * X);
  for (int step = 0; step < 3; ++step) {
    // Unknowns: two noise inputs, four states. The noise is the prior, the old state and the outputs are measurements.
    UpperTriangularMatrix R(6);
    RegularMatrix zR(6, 1), A(6, 6), zA(6, 1);
    const RegularMatrix zw(Qinv * Z), inputs(Sinv * AinvB), states(Sinv * Ainv), outputs(Rinv * C);
    for (unsigned i = 0; i < 2; ++i) {
      for (unsigned k = i; k < 2; ++k) R(i, k) = Qinv(i, k);
      zR(i) = zw(i);
    }
    for (unsigned i = 0; i < 4; ++i) {
      for (unsigned k = 0; k < 2; ++k) A(i, k) = inputs(i, k);
      for (unsigned k = 0; k < 4; ++k) A(i, k + 2) = states(i, k);
      zA(i) = z(i);
    }
    for (unsigned i = 0; i < 2; ++i) {
      for (unsigned k = 0; k < 4; ++k) A(i + 4, k + 2) = outputs(i, k);
      zA(i + 4) = RinvY(i);
    }
    // The same by triangularising all rows at once.
    RegularMatrix all(8, 7);
    for (unsigned i = 0; i < 8; ++i) {
      for (unsigned k = 0; k < 6; ++k) all(i, k) = i < 2 ? R(i, k) : A(i - 2, k);
      all(i, 6) = i < 2 ? zR(i) : zA(i - 2);
    }
    HouseholderTransformation(all, true);

    Householder_Reduction(6, R, zR, A, zA);
    digest::Feed(R);
    for (unsigned i = 0; i < 6; ++i) {
      for (unsigned k = i; k < 6; ++k) EXPECT_NEAR(R(i, k), all(i, k), 1e-13);
      EXPECT_NEAR(zR(i), all(i, 6), 1e-13);
    }
    Sinv = R(2, 5, 2, 5);
    z = zR(2, 5, 0, 0);
  }

  RegularMatrix wantSinv(4, 4), wantX(4, 1);
  unsigned row = 0, state = 0;
  for (const std::string& line : Lines("filters/FB01SD.res")) {
    const std::vector<double> v = Numbers(line);
    if (v.size() == 4) {
      ASSERT_LT(row, 4u);
      for (unsigned k = 0; k < 4; ++k) wantSinv(row, k) = v[k];
      ++row;
    } else if (v.size() == 2) {
      ASSERT_EQ(++state, static_cast<unsigned>(v[0]));
      wantX(state - 1) = v[1];
    }
  }
  ASSERT_EQ(row, 4u);
  ASSERT_EQ(state, 4u);
  ExpectPrinted(PositiveRows(Sinv), PositiveRows(wantSinv), "root of the information");
  for (unsigned i = 4; i-- > 0;) {
    for (unsigned k = i + 1; k < 4; ++k) z(i) -= Sinv(i, k) * z(k);
    z(i) /= Sinv(i, i);
  }
  ExpectPrinted(z, wantX, "state");
}

// The level of the Nile: a random walk (variance 1469.1 a year) observed with variance 15099.
class Nile : public ::testing::Test {
 protected:
  static constexpr double kObservation = 15099.0, kLevel = 1469.1;
  static std::vector<double> Flow() {
    std::vector<double> flow;
    const Table table = ReadCsv("filters/Nile.csv");
    for (std::size_t i = 0; i < table.rows.size(); ++i) flow.push_back(Number(table.at(i, "value")));
    EXPECT_EQ(flow.size(), 100u);
    return flow;
  }
  static double Term(double innovation, double variance) {
    return -0.5 * (std::log(2 * std::acos(-1.0)) + std::log(variance) + innovation * innovation / variance);
  }
};

#define NEEDS_NILE NEEDS_DATA("filters/Nile.csv")

TEST_F(Nile, CovarianceForm) {
  NEEDS_NILE;
  // Exact diffuse start: the first observation is the first estimate. Or: a large variance, the first term left out.
  for (const bool exact : {true, false}) {
    const std::vector<double> flow = Flow();
    SymmetricMatrix P(1), Q(1), R(1);
    RegularMatrix H(1, 1), x(1, 1);
    H = 1.0;
    Q = kLevel;
    R = kObservation;
    P = exact ? kObservation : 1e7;
    x = exact ? flow[0] : 0.0;
    double likelihood = 0, gain = 0;
    for (std::size_t t = exact ? 1 : 0; t < flow.size(); ++t) {
      if (t > 0) P += Q;
      const SymmetricMatrix S(AQAT(H, P) + R);
      const RegularMatrix K(ABT(P, H) * (1.0 / S(0, 0)));
      RegularMatrix innovation(-(H * x));
      innovation(0) += flow[t];
      if (t > 0) likelihood += Term(innovation(0), S(0, 0));
      x += K * innovation;
      P -= AQAT(K, S);
      gain = K(0);
    }
    EXPECT_NEAR(P(0, 0), 4032.16, 0.005);
    EXPECT_NEAR(gain, 0.2670, kPrinted);
    EXPECT_NEAR(likelihood, exact ? -632.5456 : -632.5442, kPrinted);
    EXPECT_NEAR(x(0), 798.370, 0.0005);
  }
}

TEST_F(Nile, UDForm) {
  NEEDS_NILE;
  const std::vector<double> flow = Flow();
  UpperTriangularMatrix U(1);
  DiagonalMatrix D(1), Q(1);
  U = 1.0;
  D = kObservation;
  Q = kLevel;
  RegularMatrix one(1, 1), K;
  one = 1.0;
  double x = flow[0], likelihood = 0;
  for (std::size_t t = 1; t < flow.size(); ++t) {
    UDTimeUpdate(U, D, one, one, Q);
    const double innovation = flow[t] - x;
    likelihood += Term(innovation, UDMeasurementUpdate(U, D, one, kObservation, K));
    x += K(0) * innovation;
  }
  EXPECT_NEAR(D(0, 0), 4032.16, 0.005);
  EXPECT_NEAR(K(0), 0.2670, kPrinted);
  EXPECT_NEAR(likelihood, -632.5456, kPrinted);
  EXPECT_NEAR(x, 798.370, 0.0005);
}

// Unknowns: the step of the level, and the level after it. Old level = new level - step.
TEST_F(Nile, InformationForm) {
  NEEDS_NILE;
  const std::vector<double> flow = Flow();
  double root = 1 / std::sqrt(kObservation), z = flow[0] * root;
  for (std::size_t t = 1; t < flow.size(); ++t) {
    UpperTriangularMatrix R(2);
    RegularMatrix zR(2, 1), A(2, 2), zA(2, 1);
    R(0, 0) = 1 / std::sqrt(kLevel);
    A(0, 0) = -root;
    A(0, 1) = root;
    zA(0) = z;
    A(1, 1) = 1 / std::sqrt(kObservation);
    zA(1) = flow[t] / std::sqrt(kObservation);
    Householder_Reduction(2, R, zR, A, zA);
    root = R(1, 1);
    z = zR(1);
  }
  EXPECT_NEAR(1 / (root * root), 4032.16, 0.005);
  EXPECT_NEAR(z / root, 798.370, 0.0005);
}

}  // namespace
}  // namespace quorvel::test::data
