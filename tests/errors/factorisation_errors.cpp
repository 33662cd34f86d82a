// Codes of the factorisations and updates: every operand in every state, every size that does not fit.

#include <gtest/gtest.h>

#include <utility>

#include "quorvel/quorvel.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/truth_table.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

TEST(FactorisationCodes, Cholesky) {
  TruthTable({50510}, [](Operand& o) { Release(CholeskyFactor(o.Make<S>(3u), 1e-12)); });
  TruthTable({50510}, [](Operand& o) { Release(CholeskyFactor(std::as_const(o.Make<S>(3u)), 1e-12)); });
  TruthTable({50000}, [](Operand& o) { Release(CholeskySquareRootLower(o.Make<S>(3u))); });
  TruthTable({50000}, [](Operand& o) { Release(CholeskySquareRootUpper(o.Make<S>(3u))); });
}

TEST(FactorisationCodes, InverseByCholesky) {
  for (const unsigned n : {1u, 2u, 3u, 4u, 6u}) {
    const int code = n == 2 || n == 3 ? 50000 : 50510;
    TruthTable({code}, [n](Operand& o) { Release(InverseByCholesky(o.Make<S>(n), 1e-12)); });
  }
  for (const unsigned n : {1u, 2u, 3u, 4u, 6u}) {
    const int code = n == 2 || n == 3 ? 50000 : 50510;
    TruthTable({code}, [n](Operand& o) { Release(InverseByCholesky(o.Make<SymmetricSparseMatrix>(n), 1e-12)); });
  }
  S empty;
  empty.set_ok(false);
  EXPECT_CODE(Release(InverseByCholesky(empty, 1e-12)), 50510);
  empty.set_ok(true);
  EXPECT_CODE_WHILE_PENDING(40999, Release(InverseByCholesky(empty, 1e-12)), 40999);
}

TEST(FactorisationCodes, UDFactors) {
  const auto three = [](auto factor, Operand& o) {
    U& u = o.Make<U>(3u);
    D& d = o.Make<D>(3u);
    S& p = o.Make<S>(3u);
    factor(u, d, p);
    Release(u, d);
  };
  // The older form does not look at P.
  TruthTable({50000, 50000, 0}, [&](Operand& o) { three([](U& u, D& d, S& p) { UDDecomposition(u, d, p); }, o); });
  TruthTable({50000, 50000, 50000}, [&](Operand& o) { three([](U& u, D& d, S& p) { UDFactor(u, d, p); }, o); });
  TruthTable({50000, 0}, [](Operand& o) {
    U& u = o.Make<U>(3u);
    UDDecomposition(u, o.Make<S>(3u));
    Release(u);
  });
}

// A dispensable factor cannot be resized with its elements kept: 60000 to shrink it, 40000 to let it grow.
TEST(FactorisationCodes, DispensableFactorsOfAnotherOrder) {
  S p(3);
  for (unsigned i = 0; i < 3; ++i) p(i, i) = 1.0;
  U u;
  D d;
  EXPECT_CODE(UDDecomposition(u, Dispensable<D>(4u), p), 60000);
  EXPECT_CODE(UDDecomposition(u, Dispensable<D>(2u), p), 40000);
  EXPECT_CODE(UDDecomposition(Dispensable<U>(4u), d, p), 60000);
  EXPECT_CODE(UDDecomposition(Dispensable<U>(2u), d, DispensableCopy(p)), 40000);
  EXPECT_CODE(UDFactor(Dispensable<U>(5u), Dispensable<D>(5u), DispensableCopy(p)), 60000);
  EXPECT_CODE(UDFactor(Dispensable<U>(1u), d, p), 40000);
  EXPECT_CODE(UDDecomposition(Dispensable<U>(1u), p), 40000);
  U& to_empty = Dispensable<U>(2u);
  D& to_empty_too = Dispensable<D>(2u);
  EXPECT_NO_CODE(UDFactor(to_empty, to_empty_too, S()));
  EXPECT_EQ(to_empty.ndim(), 0u);
  Release(to_empty, to_empty_too);
}

// D is checked and resized before U is looked at.
TEST(FactorisationCodes, UDDecompositionTakesDBeforeU) {
  const S p(3);
  U not_ok(3);
  not_ok.set_ok(false);
  EXPECT_CODE(UDDecomposition(not_ok, Dispensable<D>(4u), p), 60000);
  EXPECT_CODE(UDDecomposition(not_ok, Dispensable<D>(2u), p), 40000);
  D d(4);
  EXPECT_CODE(UDDecomposition(not_ok, d, p), 50000);
  EXPECT_EQ(d.ndim(), 3u);
  d.SetSize(2, 2, false);
  EXPECT_CODE(UDDecomposition(Dispensable<U>(1u), d, p), 40000);
  EXPECT_EQ(d.ndim(), 3u);
}

TEST(FactorisationCodes, UDUpdates) {
  TruthTable({50000, 50000, 50000, 50000}, [](Operand& o) {
    U& u = o.Make<U>(3u);
    D& d = o.Make<D>(3u);
    R& h = o.Make<R>(1u, 3u);
    R& k = o.Make<R>(3u, 1u);
    UDMeasurementUpdate(u, d, h, 1.0, k);
    Release(u, d, k);
  });
  TruthTable({50000, 50000, 50000, 50000, 50000}, [](Operand& o) {
    U& u = o.Make<U>(3u);
    D& d = o.Make<D>(3u);
    R& phi = o.Make<R>(3u, 3u);
    R& g = o.Make<R>(3u, 2u);
    UDTimeUpdate(u, d, phi, g, o.Make<D>(2u));
    Release(u, d);
  });
  TruthTable({50000, 50000, 50000, 50000}, [](Operand& o) {
    U& u = o.Make<U>(3u);
    D& d = o.Make<D>(3u);
    R& phi = o.Make<R>(3u, 3u);
    UDTimeUpdate(u, d, phi, o.Make<S>(3u));
    Release(u, d);
  });
}

TEST(FactorisationCodes, UDUpdateSizes) {
  const auto measure = [](unsigned n, unsigned d, unsigned rows, unsigned cols) {
    Refuses(40000, [=](Operand& o) {
      UDMeasurementUpdate(o.Make<U>(n), o.Make<D>(d), o.Make<R>(rows, cols), 1.0, o.Make<R>());
    });
  };
  measure(3, 2, 3, 1);
  measure(3, 3, 2, 1);
  measure(3, 3, 1, 4);
  measure(3, 3, 3, 3);
  measure(0, 0, 0, 0);
  const auto time = [](unsigned n, unsigned d, unsigned rows, unsigned cols, unsigned g, unsigned w, unsigned q) {
    Refuses(40000, [=](Operand& o) {
      UDTimeUpdate(o.Make<U>(n), o.Make<D>(d), o.Make<R>(rows, cols), o.Make<R>(g, w), o.Make<D>(q));
    });
  };
  time(3, 2, 3, 3, 3, 2, 2);
  time(3, 3, 2, 3, 3, 2, 2);
  time(3, 3, 3, 4, 3, 2, 2);
  time(3, 3, 3, 3, 2, 2, 2);
  time(3, 3, 3, 3, 3, 1, 2);
  Refuses(40000, [](Operand& o) { UDTimeUpdate(o.Make<U>(3u), o.Make<D>(3u), o.Make<R>(3u, 3u), o.Make<S>(2u)); });
  Refuses(40000, [](Operand& o) { UDTimeUpdate(o.Make<U>(3u), o.Make<D>(2u), o.Make<R>(3u, 3u), o.Make<S>(3u)); });
}

TEST(FactorisationCodes, OperandsGivenTwiceDieOnce) {
  R& same = Dispensable<R>(3u, 3u);
  U u(3);
  EXPECT_CODE(UDTimeUpdate(u, Dispensable<D>(2u), same, same, D(2)), 40000);
  D d(3);
  R& phi_and_g = Dispensable<R>(3u, 3u);
  EXPECT_NO_CODE(UDTimeUpdate(u, d, phi_and_g, phi_and_g, D(3)));
  D& weights = Dispensable<D>(3u);  // D and Q are one object: the factor lives
  EXPECT_NO_CODE(UDTimeUpdate(u, weights, R(3, 3), R(3, 3), weights));
  Release(weights);
  R& column = Dispensable<R>(3u, 1u);
  EXPECT_NO_CODE(UDMeasurementUpdate(u, d, column, 1.0, column));
  Release(column);
}

TEST(FactorisationCodes, SparseCholesky) {
  using Sparse = SymmetricSparseMatrix;
  TruthTable({50510}, [](Operand& o) { Release(CholeskyFactor(o.Make<Sparse>(3u), 1e-12)); });
  TruthTable({50510}, [](Operand& o) { Release(CholeskyFactor(std::as_const(o.Make<Sparse>(3u)), 1e-12)); });
  TruthTable({50000}, [](Operand& o) { Release(CholeskySquareRootLower(o.Make<Sparse>(3u))); });
  TruthTable({50000}, [](Operand& o) { Release(CholeskySquareRootUpper(o.Make<Sparse>(3u))); });
  Refuses(40393, [](Operand& o) {
    Sparse& a = o.Make<Sparse>(3u);
    const bool dispensable = a.dispensable();
    a.set_dispensable(false);
    a.InsertRows(3, 1);
    a.set_dispensable(dispensable);
    Release(CholeskyFactor(a, 1e-12));
  });
  Refuses(40000, [](Operand& o) {
    Sparse& a = o.Make<Sparse>(3u);
    const bool dispensable = a.dispensable();
    a.set_dispensable(false);
    a.InsertRows(3, 1);
    a.set_dispensable(dispensable);
    Release(CholeskySquareRootUpper(a));
  });
}

TEST(FactorisationCodes, SparseRankOne) {
  using Vector = RegularSparseMatrix;
  const unsigned index[1] = {1};
  TruthTable({0, 0, 0}, [&](Operand& o) {
    RegularSparseMatrix& a = o.Make<RegularSparseMatrix>(3u, 3u);
    Vector& x = o.Make<Vector>(3u, 1u);
    RankOneUpdateNZ(a, x, index, 1, o.Make<Vector>(3u, 1u), index, 1, 1.0);
    Release(a);
  });
  TruthTable({0, 0, 0}, [&](Operand& o) {
    SymmetricSparseMatrix& a = o.Make<SymmetricSparseMatrix>(3u);
    Vector& x = o.Make<Vector>(3u, 1u);
    RankOneUpdateNZ(a, x, index, 1, o.Make<Vector>(3u, 1u), index, 1, 1.0);
    Release(a);
  });
}

TEST(FactorisationCodes, RankOne) {
  const double v[3] = {1.0, 2.0, 3.0};
  TruthTable({50400}, [&](Operand& o) {
    S& p = o.Make<S>(3u);
    RankOneUpdate(p, v, 1.0);
    Release(p);
  });
  const unsigned index[1] = {1};
  // With vectors only the pending code is thrown.
  TruthTable({0, 0, 0}, [](Operand& o) {
    S& a = o.Make<S>(3u);
    R& x = o.Make<R>(3u, 1u);
    RankOneUpdate(a, x, o.Make<R>(3u, 1u), 1.0);
    Release(a);
  });
  TruthTable({0, 0, 0}, [](Operand& o) {
    R& a = o.Make<R>(3u, 2u);
    R& x = o.Make<R>(3u, 1u);
    RankOneUpdate(a, x, o.Make<R>(1u, 2u), 1.0);
    Release(a);
  });
  TruthTable({0, 0, 0}, [&](Operand& o) {
    S& a = o.Make<S>(3u);
    R& x = o.Make<R>(3u, 1u);
    RankOneUpdateNZ(a, x, index, 1, o.Make<R>(3u, 1u), index, 1, 1.0);
    Release(a);
  });
  TruthTable({0, 0, 0}, [&](Operand& o) {
    R& a = o.Make<R>(3u, 2u);
    R& x = o.Make<R>(3u, 1u);
    RankOneUpdateNZ(a, x, index, 1, o.Make<R>(2u, 1u), index, 1, 1.0);
    Release(a);
  });
  R& all = Dispensable<R>(1u, 1u);  // target and both vectors
  EXPECT_NO_CODE(RankOneUpdate(all, all, all, 1.0));
  Release(all);
}

TEST(FactorisationCodes, Householder) {
  TruthTable({50000}, [](Operand& o) { Release(HouseholderTransformation(o.Make<R>(3u, 2u), true)); });
  TruthTable({50000}, [](Operand& o) { Release(HouseholderTransformation(o.Make<R>(3u, 2u), false)); });
  using Sparse = RegularSparseMatrix;
  TruthTable({50000}, [](Operand& o) { Release(HouseholderTransformation(o.Make<Sparse>(3u, 2u), true)); });
  TruthTable({50000}, [](Operand& o) { Release(HouseholderTransformation(o.Make<Sparse>(3u, 2u), false)); });
  Refuses(40000, [](Operand& o) { HouseholderTransformation(o.Make<Sparse>(2u, 3u)); });
  Refuses(40000, [](Operand& o) { HouseholderTransformation(o.Make<R>(2u, 3u)); });
  Refuses(40000, [](Operand& o) { HouseholderTransformation(o.Make<R>(2u, 3u), true); });
}

// It checks nothing: it works while a code is pending and on matrices that are not ok.
TEST(FactorisationCodes, ReductionLooksAtNoFlag) {
  U r(1);
  R zr(1, 1), a(1, 1), za(1, 1);
  r(0, 0) = zr(0, 0) = 3.0;
  a(0, 0) = za(0, 0) = 4.0;
  r.set_ok(false);
  EXPECT_NO_CODE_WHILE_PENDING(40999, Householder_Reduction(1, r, zr, a, za));
  EXPECT_EQ(std::as_const(zr)(0, 0), 5.0);
  D d(2);
  d.set_ok(false);
  EXPECT_NO_CODE_WHILE_PENDING(40999, SingularityCountULD(d));
  EXPECT_EQ(d.nsing(), 2);
}

TEST(FactorisationCodes, TimesSelf) {
  TruthTable({50000, 50000}, [](Operand& o) {
    R& v = o.Make<R>(3u, 1u);
    VecEqMatrixTimesSelf(v, o.Make<U>(3u));
    Release(v);
  });
  TruthTable({50000, 50000}, [](Operand& o) {
    R& v = o.Make<R>(0u, 1u);
    VecEqMatrixTimesSelf(v, o.Make<U>(0u));
    Release(v);
  });
  Refuses(40000, [](Operand& o) { VecEqMatrixTimesSelf(o.Make<R>(3u, 2u), o.Make<U>(3u)); });
  Refuses(40000, [](Operand& o) { VecEqMatrixTimesSelf(o.Make<R>(3u, 1u), o.Make<U>(2u)); });
  Refuses(40000, [](Operand& o) { VecEqMatrixTimesSelf(o.Make<R>(0u, 0u), o.Make<U>(0u)); });
}

TEST(FactorisationCodes, OuterProduct) {
  TruthTable({50000, 50000}, [](Operand& o) {
    R& x = o.Make<R>(3u, 1u);
    Release(MOutPrd(x, o.Make<R>(3u, 1u)));
  });
  Refuses(40000, [](Operand& o) { Release(MOutPrd(o.Make<R>(3u, 2u), o.Make<R>(3u, 1u))); });
  Refuses(40000, [](Operand& o) { Release(MOutPrd(o.Make<R>(3u, 1u), o.Make<R>(3u, 2u))); });
  Refuses(40000, [](Operand& o) { Release(MOutPrd(o.Make<R>(3u, 1u), o.Make<R>(4u, 1u))); });
  R& same = Dispensable<R>(1u, 3u);
  EXPECT_CODE(Release(MOutPrd(same, same)), 40000);
}

TEST(FactorisationCodes, NonZeros) {
  unsigned index[4];
  // Flags are not read.
  for (const unsigned n : {0u, 2u}) {
    TruthTable({0, 0}, [&](Operand& o) {
      R& x = o.Make<R>(3u, 1u);
      R& out = o.Make<R>(4u, 1u);
      EXPECT_EQ(SetNonZeros(n, x, out, index), 0u);
      Release(out);
    });
  }
  for (const unsigned n : {0u, 2u}) {
    Refuses(40360, [&](Operand& o) { SetNonZeros(n, o.Make<R>(3u, 2u), o.Make<R>(4u, 1u), index); });
  }
  Refuses(60360, [&](Operand& o) { SetNonZeros(4, o.Make<R>(3u, 1u), o.Make<R>(4u, 1u), index); });
  Refuses(60360, [&](Operand& o) { SetNonZeros(4, o.Make<R>(4u, 1u), o.Make<R>(3u, 1u), index); });
  Refuses(60360, [&](Operand& o) { SetNonZeros(4, o.Make<R>(4u, 1u), o.Make<R>(4u, 0u), index); });
  R& same = Dispensable<R>(3u, 2u);
  EXPECT_CODE(SetNonZeros(1, same, same, index), 40360);
}
