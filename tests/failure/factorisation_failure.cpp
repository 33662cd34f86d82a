// Every allocation of the factorisations failed in turn: 10680, nothing leaked, ordinary operands as they were.

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <tuple>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/grid.h"
#include "support/make.h"
#include "support/truth_table.h"

using namespace quorvel::test;

namespace {

// Runs the call with ever later failing allocations, on ordinary and on dispensable operands made by `prepare`, until
// it succeeds; `after` looks at ordinary operands after a failure. Returns the number of allocations of ordinary ones.
template <class Prepare, class Call, class After>
unsigned FailEach(Prepare prepare, Call call, After after) {
  unsigned count = 0;
  for (const bool dispensable : {true, false}) {
    for (unsigned k = 1;; ++k) {
      Operand operand(dispensable, -1);
      auto operands = prepare(operand);
      std::optional<int> code;
      bool failed;
      {
        FailAllocations fail(k, Fail::kFromThenOn);
        code = CodeOf([&] { call(operands); });
        failed = fail.failed();
      }
      if (!failed) {
        EXPECT_EQ(code, std::nullopt);
        count = k - 1;
        break;
      }
      EXPECT_EQ(code, std::optional<int>(10680)) << "allocation " << k << (dispensable ? ", dispensable" : "");
      if (!dispensable) after(operands);
    }
  }
  return count;
}

Grid Definite(unsigned n) {
  Random random(n);
  return SymmetricSample(Family::kDefinite, n, random);
}

template <class Call>
void OnSymmetric(unsigned n, unsigned allocations, Call call) {
  const Grid a = Definite(n);
  const auto prepare = [&](Operand& o) {
    SymmetricMatrix& s = o.Make<SymmetricMatrix>(n);
    const SymmetricMatrix values(SymmetricOf(a));
    for (unsigned k = 0; k < values.StoredCount(); ++k) s.data()[k] = values.data()[k];
    return std::ref(s);
  };
  const unsigned count = FailEach(
      prepare, [&](std::reference_wrapper<SymmetricMatrix> s) { call(s.get()); },
      [&](std::reference_wrapper<SymmetricMatrix> s) { ExpectSameValues(GridOf(std::as_const(s.get())), a, "operand"); });
  EXPECT_EQ(count, allocations) << "order " << n;
}

}  // namespace

// The result object and its array; scratch only above order 24.
TEST(FactorisationMemory, Cholesky) {
  for (const unsigned n : {5u, 24u, 25u}) {
    const unsigned scratch = n > 24 ? 1 : 0;  // of the upper root only
    OnSymmetric(n, 2, [](SymmetricMatrix& a) { Release(CholeskyFactor(a, 1e-12)); });
    OnSymmetric(n, 2, [](SymmetricMatrix& a) { Release(CholeskySquareRootLower(a)); });
    OnSymmetric(n, 2 + scratch, [](SymmetricMatrix& a) { Release(CholeskySquareRootUpper(a)); });
  }
}

// The factor and the inverse: two objects, one array.
TEST(FactorisationMemory, InverseByCholesky) {
  for (const unsigned n : {1u, 4u, 24u}) {
    OnSymmetric(n, 3, [](SymmetricMatrix& a) { Release(InverseByCholesky(a, 1e-12)); });
  }
}

namespace {

// The sparse store and the scratch of the sparse factors run out of memory as std::bad_alloc.
template <class K, class Call>
void SparseOutOfMemory(Call call) {
  const Grid a = Definite(12);
  for (const bool dispensable : {false, true}) {
    for (unsigned k = 1;; ++k) {
      ASSERT_LT(k, 300u);
      Operand operand(dispensable, -1);
      K& A = operand.Make<K>(12u, 12u);
      for (unsigned i = 0; i < 12; ++i) {
        for (unsigned j = 0; j < 12; ++j) A.Put(i, j, a(i, j));
      }
      bool out_of_memory = false, failed;
      {
        FailAllocations fail(k, Fail::kFromThenOn);
        try {
          call(A);
        } catch (const std::bad_alloc&) {
          out_of_memory = true;
        }
        failed = fail.failed();
      }
      EXPECT_EQ(out_of_memory, failed) << k;
      EXPECT_EQ(ErrorState(), 0);
      if (!failed) break;
      if (!dispensable) ExpectSameValues(GridOf(std::as_const(A)), a, "operand");
    }
  }
}

}  // namespace

TEST(FactorisationMemory, Sparse) {
  using S = SymmetricSparseMatrix;
  using R = RegularSparseMatrix;
  SparseOutOfMemory<S>([](S& a) { Release(CholeskyFactor(a, 1e-12)); });
  SparseOutOfMemory<S>([](S& a) { Release(CholeskySquareRootLower(a)); });
  SparseOutOfMemory<S>([](S& a) { Release(CholeskySquareRootUpper(a)); });
  SparseOutOfMemory<R>([](R& a) { Release(HouseholderTransformation(a, false)); });
  SparseOutOfMemory<R>([](R& a) { Release(HouseholderTransformation(a, true)); });
}

TEST(FactorisationMemory, UDFactors) {
  for (const unsigned n : {5u, 24u, 25u}) {
    const unsigned scratch = n > 24 ? 1 : 0;
    OnSymmetric(n, 2 + scratch, [](SymmetricMatrix& p) {
      UpperTriangularMatrix U;
      DiagonalMatrix D;
      UDFactor(U, D, p);
    });
    OnSymmetric(n, 2 + scratch, [](SymmetricMatrix& p) {
      UpperTriangularMatrix U;
      DiagonalMatrix D;
      UDDecomposition(U, D, p);
    });
    OnSymmetric(n, 2 + scratch, [](SymmetricMatrix& p) {
      UpperTriangularMatrix U;
      UDDecomposition(U, p);
    });
  }
}

TEST(FactorisationMemory, UDUpdates) {
  for (const unsigned n : {5u, 24u, 25u}) {
    const auto measurement = [n](Operand& o) {
      auto& U = o.Make<UpperTriangularMatrix>(n);
      auto& D = o.Make<DiagonalMatrix>(n);
      auto& K = o.Make<RegularMatrix>();
      auto& h = o.Make<RegularMatrix>(1u, n);
      D = 2.0;
      return std::make_tuple(std::ref(U), std::ref(D), std::ref(K), std::ref(h));
    };
    const auto unchanged = [](auto& operands) {
      EXPECT_TRUE(std::get<0>(operands) == 0.0);
      EXPECT_TRUE(std::get<1>(operands) == 2.0);
    };
    const unsigned scratch = n > 24 ? 1 : 0;
    EXPECT_EQ(FailEach(measurement,
                       [](auto& operands) {
                         auto& [U, D, K, h] = operands;
                         UDMeasurementUpdate(U, D, h, 1.0, K);
                         Release(U, D, K);
                       },
                       unchanged),
              1 + scratch);
    const auto time = [n](Operand& o) {
      auto& U = o.Make<UpperTriangularMatrix>(n);
      auto& D = o.Make<DiagonalMatrix>(n);
      auto& Phi = o.Make<RegularMatrix>(n, n);
      auto& Q = o.Make<DiagonalMatrix>(n);
      D = 2.0;
      return std::make_tuple(std::ref(U), std::ref(D), std::ref(Phi), std::ref(Q));
    };
    EXPECT_EQ(FailEach(time,
                       [](auto& operands) {
                         auto& [U, D, Phi, Q] = operands;
                         UDTimeUpdate(U, D, Phi, Phi, Q);
                         Release(U, D);
                       },
                       unchanged),
              scratch);
  }
}

TEST(FactorisationMemory, Householder) {
  for (const unsigned m : {5u, 24u, 25u, 80u, 200u}) {
    const unsigned scratch = m > 80 ? 1 : 0;
    const Grid a = Definite(m);
    Grid tall(m, 4);
    for (unsigned i = 0; i < m; ++i) {
      for (unsigned j = 0; j < 4; ++j) tall(i, j) = a(i, j);
    }
    const auto prepare = [&](Operand& o) {
      RegularMatrix& A = o.Make<RegularMatrix>(m, 4u);
      for (std::size_t k = 0; k < tall.e.size(); ++k) A.data()[k] = tall.e[k];
      return std::ref(A);
    };
    const auto unchanged = [&](std::reference_wrapper<RegularMatrix> A) {
      ExpectSameValues(GridOf(std::as_const(A.get())), tall, "operand");
    };
    for (const bool in_place : {true, false}) {
      const unsigned count = FailEach(
          prepare,
          [&](std::reference_wrapper<RegularMatrix> A) { Release(HouseholderTransformation(A.get(), in_place)); },
          unchanged);
      EXPECT_EQ(count, scratch + (in_place ? 0 : 2)) << m;
    }
  }
}

TEST(FactorisationMemory, OuterProduct) {
  const auto prepare = [](Operand& o) {
    RegularMatrix& x = o.Make<RegularMatrix>(4u, 1u);
    return std::make_pair(std::ref(x), std::ref(o.Make<RegularMatrix>(4u, 1u)));
  };
  EXPECT_EQ(FailEach(prepare, [](auto& xy) { Release(MOutPrd(xy.first, xy.second)); }, [](auto&) {}), 2u);
}

// Above order 24 the reduction needs scratch, and without it nothing is changed.
TEST(FactorisationMemory, Reduction) {
  UpperTriangularMatrix R(30);
  RegularMatrix zR(30, 1), A(2, 30), zA(2, 1);
  A = 1.0;
  {
    FailAllocations fail(1, Fail::kOnce);
    EXPECT_CODE(Householder_Reduction(2, R, zR, A, zA), 10680);
  }
  EXPECT_TRUE(R == 0.0);
  EXPECT_TRUE(A == 1.0);
}
