// Products when memory runs out: every allocation failed in turn. Operands that are dispensable die, nothing leaks (the
// leak check of the room), and other operands are as they were.

#include <new>
#include <optional>

#include "support/allocations.h"
#include "support/codes.h"
#include "support/operations.h"

namespace {

using namespace quorvel::test;

constexpr int kOutOfMemory = 10680;

// Runs `call` with the k-th allocation failing, for every k that it needs; make() prepares the operands.
template <class Make>
void FailEachAllocation(const std::string& name, Make make) {
  unsigned k = 1;
  for (;; ++k) {
    auto call = make();
    std::optional<int> code;
    bool failed;
    {
      FailAllocations fail(k, Fail::kOnce);
      // Lists and pools of sparse matrices report exhausted memory as the language does.
      try {
        code = CodeOf(call);
      } catch (const std::bad_alloc&) {
        code = kOutOfMemory;
      }
      failed = fail.failed();
    }
    if (!failed) {
      EXPECT_EQ(code, std::nullopt) << name;
      break;
    }
    EXPECT_EQ(code, std::optional<int>(kOutOfMemory)) << name << ", allocation " << k;
    ASSERT_LT(k, 200u) << name;
  }
}

struct CheckFailures {
  template <class A, class B, class Call>
  void operator()(const char* name, int, A*, B*, Call call) const {
    Random random(1);
    // 70 is beyond the scratch on the stack.
    for (const unsigned n : {3u, 70u}) {
      const A a = Sample<A>(n, n, Pattern::kInteger, random);
      const B b = Sample<B>(n, n, Pattern::kInteger, random);
      for (int state = 0; state < 4; ++state) {
        if (n > 3 && (state == 1 || state == 2)) continue;
        FailEachAllocation(name, [&] {
          const A& x = state & 1 ? DispensableCopy(a) : a;
          const B& y = state & 2 ? DispensableCopy(b) : b;
          return [&x, &y, call] { Drop(call(x, y)); };
        });
      }
    }
  }
};

TEST(ProductFailures, EveryDensePair) { ForEachDensePair(CheckFailures()); }

TEST(ProductFailures, EverySparsePair) { ForEachSparsePair(CheckFailures()); }

TEST(ProductFailures, EveryPairWithBlocks) { ForEachBlockPair(0, CheckFailures()); }

TEST(ProductFailures, GramForms) {
  for (const bool dispensable : {false, true}) {
    const RegularMatrix a(4, 3);
    const UpperTriangularMatrix u(3);
    const LowerTriangularMatrix l(3);
    Random random(3);
    const RegularSparseMatrix r = Sample<RegularSparseMatrix>(6, 6, Pattern::kInteger, random);
    const auto operand = [dispensable](const auto& m) -> decltype(m) { return dispensable ? DispensableCopy(m) : m; };
    FailEachAllocation("ATA", [&] { return [&x = operand(a)] { Drop(ATA(x)); }; });
    FailEachAllocation("AAT", [&] { return [&x = operand(a)] { Drop(AAT(x)); }; });
    FailEachAllocation("UTU", [&] { return [&x = operand(u)] { Drop(UTU(x)); }; });
    FailEachAllocation("sparse ATA", [&] { return [&x = operand(r)] { Drop(ATA(x)); }; });
    FailEachAllocation("sparse AAT", [&] { return [&x = operand(r)] { Drop(AAT(x)); }; });
    FailEachAllocation("sparse UTU", [&] { return [&x = operand(r)] { Drop(UTU(x)); }; });
    FailEachAllocation("sparse LTL", [&] { return [&x = operand(r)] { Drop(LTL(x)); }; });
    FailEachAllocation("LTL", [&] { return [&x = operand(l)] { Drop(LTL(x)); }; });
  }
}

// From this size on A' B and A' A take scratch beside their results.
TEST(ProductFailures, DistantLines) {
  const RegularMatrix a(400, 400), b(400, 400), c(500, 500);
  FailEachAllocation("ATB", [&] { return [&x = DispensableCopy(a), &b] { Drop(ATB(x, b)); }; });
  FailEachAllocation("ATA", [&] { return [&x = DispensableCopy(c)] { Drop(ATA(x)); }; });
}

// The result of Mult is as good as before when no memory is left for it; one that is an operand and dispensable dies.
TEST(ProductFailures, Mult) {
  const RegularMatrix a(3, 3), b(3, 3);
  RegularMatrix result(2, 2);
  result(1, 1) = 8.0;
  {
    FailAllocations fail(1, Fail::kOnce);
    const RegularMatrix& x = a;
    EXPECT_EQ(CodeOf([&] { Mult(result, x, b); }), std::optional<int>(kOutOfMemory));
  }
  EXPECT_EQ(Mult(result, a, b).nrows(), 3u);
  FailEachAllocation("Mult(A, A, B)", [&] {
    RegularMatrix* const d = &DispensableCopy(a);
    return [d, &b] { Drop(Mult(*d, *d, b)); };
  });
  FailEachAllocation("Mult(result, A, B)", [&] {
    return [&x = DispensableCopy(a), &y = DispensableCopy(b)] {
      RegularMatrix fresh;
      Mult(fresh, x, y);
    };
  });
}

template <class K>
void CheckScaling() {
  Random random(2);
  const K a = Sample<K>(3, 3, Pattern::kInteger, random);
  FailEachAllocation("A * s", [&] { return [&a] { Drop(a * 2.0); }; });
  FailEachAllocation("s * dispensable A", [&] { return [&x = DispensableCopy(a)] { Drop(2.0 * x); }; });
  FailEachAllocation("Mult(result, A, s)", [&] {
    return [&x = DispensableCopy(a)] {
      K fresh;
      Mult(fresh, x, 2.0);
    };
  });
}

TEST(ScalingFailures, EverySparseKind) {
  CheckScaling<RegularSparseMatrix>();
  CheckScaling<SymmetricSparseMatrix>();
}

TEST(ScalingFailures, EveryDenseKind) {
  CheckScaling<RegularMatrix>();
  CheckScaling<SymmetricMatrix>();
  CheckScaling<UpperTriangularMatrix>();
  CheckScaling<LowerTriangularMatrix>();
  CheckScaling<DiagonalMatrix>();
}

}  // namespace
