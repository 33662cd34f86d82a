// Sums of operands that do not go together: the code of every pair, in every ownership state, and who is left.

#include <gtest/gtest.h>

#include <optional>

#include "support/codes.h"
#include "support/plain.h"
#include "support/sums.h"

namespace quorvel::test {
namespace {

constexpr int kUnlike = 40000;
constexpr int kNotOk = 50000;

enum class Wrong { kSize, kFirst, kSecond, kBoth };

// The code of an operation on these kinds; of two sparse matrices, when the result is not formed in the second.
template <class A, class B>
constexpr int CodeOfKinds() {
  if (kSparse<A> || kSparse<B>) return 0;
  return std::is_same_v<A, B> ? 340 : 280;
}

template <class K>
K Operand(unsigned n, unsigned elements) {
  K a(n, n);
  for (unsigned k = 0; k < n && k < elements; ++k) a(k, k) = 1.0 + k;
  return a;
}

template <class Op, class R, class A, class B>
class Refusals {
 public:
  // Sizes n and m; the operand with more elements is the first when n >= m.
  static void Check(Wrong wrong, unsigned n, unsigned m) {
    for (int state = 0; state < 4; ++state) {
      SCOPED_TRACE(::testing::Message() << A().ClassName() << " " << Op::name() << " " << B().ClassName() << ", case "
                                        << static_cast<int>(wrong) << ", state " << state);
      A a = Operand<A>(n, n);
      B b = Operand<B>(wrong == Wrong::kSize ? m : n, m);
      if (wrong == Wrong::kFirst || wrong == Wrong::kBoth) a.set_ok(false);
      if (wrong == Wrong::kSecond || wrong == Wrong::kBoth) b.set_ok(false);
      const int offset = wrong == Wrong::kSize ? kUnlike : kNotOk;
      const int code = CodeOfKinds<A, B>() + offset;
      const Plain before_a = PlainOf(a), before_b = PlainOf(b);

      Expect(Formed(a, b, state) + code, a, b, state, [](A& x, B& y) { static_cast<void>(Op::apply(x, y)); });
      R other = Operand<R>(2, 2);
      Expect(code, a, b, state, [&](A& x, B& y) { Op::assign(other, x, y); });
      EXPECT_TRUE(Same(other, PlainOf(Operand<R>(2, 2))));
      EXPECT_TRUE(other.ok());
      CheckResultIsOperand(a, b, state, code);
      EXPECT_TRUE(Same(a, before_a));
      EXPECT_TRUE(Same(b, before_b));
    }
  }

 private:
  // Operands as they are, or as temporaries in the same condition.
  template <class K>
  static K& Given(K& a, bool dispensable) {
    if (!dispensable) return a;
    const bool ok = a.ok();
    a.set_ok(true);
    K& temporary = DispensableCopy(a);
    a.set_ok(ok);
    temporary.set_ok(ok);
    return temporary;
  }
  static A& First(A& a, int state) { return Given(a, (state & 1) != 0); }
  static B& Second(B& b, int state) { return Given(b, (state & 2) != 0); }

  // A difference of two sparse matrices that would be formed in the second one adds to the code.
  static int Formed(const A& a, const B& b, int state) {
    if constexpr (kSparse<A> && kSparse<B> && Op::minus) {
      const bool first = (state & 1) && std::is_same_v<A, R>;
      const bool second = (state & 2) && std::is_same_v<B, R>;
      if (a.used >= b.used ? !first && second : second || !first) return 293;
    }
    return 0;
  }

  // The call with operands in the given state throws the code, and a pending one before it.
  template <class Call>
  static void Expect(int code, A& a, B& b, int state, Call call) {
    A* x = &First(a, state);
    B* y = &Second(b, state);
    EXPECT_EQ(CodeOf([&] { call(*x, *y); }), std::optional<int>(code));
    x = &First(a, state);
    y = &Second(b, state);
    EXPECT_EQ(CodeWhilePending(77, [&] { call(*x, *y); }), std::optional<int>(77));
  }

  // An ordinary operand that is the result too, in the three-operand and the compound form.
  static void CheckResultIsOperand(A& a, B& b, int state, int code) {
    if constexpr (std::is_same_v<A, R>) {
      if ((state & 1) == 0) {
        Expect(code, a, b, state, [](A& x, B& y) { Op::assign(x, x, y); });
        Expect(code, a, b, state, [](A& x, B& y) { Op::compound(x, y); });
      }
    }
    if constexpr (std::is_same_v<B, R>) {
      const bool reversed = kSparse<A> && kSparse<B> && Op::minus;
      if ((state & 2) == 0) {
        Expect(code + (reversed ? 293 : 0), a, b, state, [](A& x, B& y) { Op::assign(y, x, y); });
      }
    }
  }
};

template <class Op>
struct CheckRefusals {
  template <class R, class A, class B>
  void pair() const {
    for (const unsigned m : {2u, 5u}) {
      Refusals<Op, R, A, B>::Check(Wrong::kSize, 3, m);
      Refusals<Op, R, A, B>::Check(Wrong::kFirst, 3, m);
      Refusals<Op, R, A, B>::Check(Wrong::kSecond, 3, m);
      Refusals<Op, R, A, B>::Check(Wrong::kBoth, 3, m);
    }
  }
};

TEST(SumErrors, DenseSums) { ForEachDenseSum(CheckRefusals<PlusOp>()); }
TEST(SumErrors, DenseDifferences) { ForEachDenseSum(CheckRefusals<MinusOp>()); }
TEST(SumErrors, SumsWithSparse) { ForEachSumWithSparse(CheckRefusals<PlusOp>()); }
TEST(SumErrors, DifferencesWithSparse) { ForEachSumWithSparse(CheckRefusals<MinusOp>()); }

// A result that is not ok is refused after the operands, which die.
struct CheckResultNotOk {
  template <class R, class A, class B>
  void pair() const {
    const A a = Operand<A>(3, 3);
    const B b = Operand<B>(3, 3);
    for (const bool dispensable_result : {false, true}) {
      R fixed;
      for (int state = 0; state < 4; ++state) {
        R& result = dispensable_result ? Dispensable<R>() : fixed;
        result.set_ok(false);
        const A& x = state & 1 ? DispensableCopy(a) : a;
        const B& y = state & 2 ? DispensableCopy(b) : b;
        EXPECT_CODE(Plus(result, x, y), 50000);
      }
      EXPECT_EQ(fixed.ok(), dispensable_result);
    }
    // The operands' own failure comes first.
    R result;
    result.set_ok(false);
    const A wrong = Operand<A>(2, 2);
    EXPECT_CODE(Minus(result, wrong, b), (CodeOfKinds<A, B>() + kUnlike));
  }
};

TEST(SumErrors, ResultNotOk) {
  ForEachDenseSum(CheckResultNotOk());
  ForEachSumWithSparse(CheckResultNotOk());
}

// One object in both places dies once.
template <class K>
void CheckSameObject() {
  const int code = CodeOfKinds<K, K>() + kNotOk;
  const auto bad = []() -> K& {
    K& a = Dispensable<K>(3u, 3u);
    a.set_ok(false);
    return a;
  };
  EXPECT_CODE(
      [&] {
        K& a = bad();
        static_cast<void>(a + a);
      }(),
      code);
  EXPECT_CODE(
      [&] {
        K& a = bad();
        static_cast<void>(a - a);
      }(),
      code);
  EXPECT_CODE(
      [&] {
        K& a = bad();
        Plus(a, a, a);
      }(),
      code);
  EXPECT_CODE(
      [&] {
        K& a = bad();
        K r;
        Minus(r, a, a);
      }(),
      code);
  EXPECT_CODE(
      [&] {
        K& a = bad();
        a += a;
      }(),
      code);
  EXPECT_CODE_WHILE_PENDING(
      5,
      [&] {
        K& a = bad();
        a -= a;
      }(),
      5);
}

TEST(SumErrors, OneObjectTwice) {
  CheckSameObject<RegularMatrix>();
  CheckSameObject<SymmetricMatrix>();
  CheckSameObject<UpperTriangularMatrix>();
  CheckSameObject<LowerTriangularMatrix>();
  CheckSameObject<DiagonalMatrix>();
  CheckSameObject<RegularSparseMatrix>();
  CheckSameObject<SymmetricSparseMatrix>();
}

// A sparse matrix in place with a dense one: the conversion looks at its source first, then the sum at the sizes.
template <class X, class Y>
void CheckConverted(int conversion_code) {
  X x = Operand<X>(3, 3);
  Y y = Operand<Y>(3, 3);
  Y other_size = Operand<Y>(2, 2);
  EXPECT_CODE(x += other_size, 40000);
  EXPECT_CODE(x -= DispensableCopy(other_size), 40000);
  EXPECT_CODE_WHILE_PENDING(9, x += DispensableCopy(y), 9);
  Y bad = Operand<Y>(3, 3);
  bad.set_ok(false);
  EXPECT_CODE(x += bad, conversion_code + kNotOk);
  X temporary_source = Operand<X>(3, 3);
  EXPECT_CODE(DispensableCopy(temporary_source) -= bad, conversion_code + kNotOk);
  EXPECT_CODE(DispensableCopy(temporary_source) -= other_size, 40000);
  x.set_ok(false);
  EXPECT_CODE(x -= DispensableCopy(y), kNotOk);
  EXPECT_CODE(x -= bad, conversion_code + kNotOk);
}

TEST(SumErrors, SparseInPlaceWithDense) {
  CheckConverted<RegularSparseMatrix, RegularMatrix>(2260);
  CheckConverted<RegularSparseMatrix, SymmetricMatrix>(2260);
  CheckConverted<RegularSparseMatrix, UpperTriangularMatrix>(2260);
  CheckConverted<RegularSparseMatrix, LowerTriangularMatrix>(2260);
  CheckConverted<SymmetricSparseMatrix, SymmetricMatrix>(140);
}

// A dispensable sparse result cannot be resized; it and the operands die.
TEST(SumErrors, DispensableSparseResultOfAnotherSize) {
  const RegularSparseMatrix a = Operand<RegularSparseMatrix>(3, 3);
  const DiagonalMatrix d = Operand<DiagonalMatrix>(3, 3);
  EXPECT_CODE(Plus(Dispensable<RegularSparseMatrix>(2u, 2u), a, a), 40000);
  EXPECT_CODE(Plus(Dispensable<RegularSparseMatrix>(5u, 5u), DispensableCopy(a), DispensableCopy(a)), 60000);
  EXPECT_CODE(Minus(Dispensable<RegularSparseMatrix>(), DispensableCopy(a), d), 40000);
  RegularSparseMatrix& fits = Dispensable<RegularSparseMatrix>(3u, 3u);
  EXPECT_NO_CODE(Plus(fits, a, d));
  EXPECT_EQ(fits(2, 2), 6.0);
  Drop(fits);
}

}  // namespace
}  // namespace quorvel::test
