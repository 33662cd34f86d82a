// What the laws of structured products share: operands of fitting shapes, and the congruence as a formula.

#ifndef QUORVEL_TESTS_LAWS_STRUCTURED_LAWS_H
#define QUORVEL_TESTS_LAWS_STRUCTURED_LAWS_H

#include "laws/product_laws.h"

namespace quorvel::test::laws {

// The sizes of both operands.
struct Sizes {
  unsigned a_rows, a_cols, b_rows, b_cols;
};

// Makes square kinds square: a change of one size is taken over by whatever must equal it.
template <class A, class B>
Sizes Adapt(Sizes s, bool rows_equal, bool cols_equal) {
  for (int pass = 0; pass < 2; ++pass) {
    if (!rectangular<A>) s.a_cols = s.a_rows;
    if (!rectangular<B>) s.b_cols = s.b_rows;
    if (rows_equal) s.b_rows = s.a_rows;
    if (cols_equal) s.b_cols = s.a_cols;
    if (!rectangular<A>) s.a_rows = s.a_cols;
    if (!rectangular<B>) s.b_rows = s.b_cols;
    if (rows_equal) s.a_rows = s.b_rows;
    if (cols_equal) s.a_cols = s.b_cols;
  }
  return s;
}

enum class Fit { kRows, kCols, kProduct };  // rows equal, columns equal, columns of a = rows of b

template <class A, class B>
Sizes SizesFor(Shape3 s, Fit fit) {
  if (fit == Fit::kRows) return Adapt<A, B>({s.k, s.m, s.k, s.n}, true, false);
  if (fit == Fit::kCols) return Adapt<A, B>({s.m, s.k, s.n, s.k}, false, true);
  // As rows of the transposed a.
  const Sizes t = Adapt<A, B>({s.k, s.m, s.k, s.n}, true, false);
  return {t.a_cols, t.a_rows, t.b_rows, t.b_cols};
}

template <class A, class B, class Operation, class Oracle>
void CheckPair(const char* name, unsigned seed, Fit fit, bool square_result, Operation operation, Oracle oracle) {
  Random random(seed);
  ForEachShape(seed, [&](Shape3 s, Pattern pattern) {
    if (square_result) s.n = s.m;
    const Sizes sizes = SizesFor<A, B>(s, fit);
    const A a = Sample<A>(sizes.a_rows, sizes.a_cols, pattern, random);
    const B b = Sample<B>(sizes.b_rows, sizes.b_cols, pattern, random);
    const Masked expected = oracle(MaskedOf(a), MaskedOf(b));
    const std::string call = Call(name, s, pattern);
    if (s.m < 6 && s.k < 6 && s.n < 6) {
      ExpectInEveryState(a, b, operation, expected, call);
    } else {
      Expect(operation(a, b), expected, call);
    }
  });
}

template <class A, class Operation, class Oracle>
void CheckOne(const char* name, unsigned seed, Operation operation, Oracle oracle) {
  Random random(seed);
  ForEachShape(seed, [&](Shape3 s, Pattern pattern) {
    const A a = Sample<A>(s.m, s.k, pattern, random);
    const Masked expected = oracle(MaskedOf(a));
    const std::string call = Call(name, s, pattern);
    const NoLeak no_leak;
    Expect(operation(a), expected, call);
    Expect(operation(DispensableCopy(a)), expected, call + ", dispensable");
  });
}

// X Q X' with the inner product first, each as a sum over existing positions; w always exists.
inline Masked CongruenceOf(const Masked& x, const Masked& q) {
  return MaskedUpper(MaskedProduct(MaskedProduct(x, q), MaskedTranspose(x)));
}

}  // namespace quorvel::test::laws

#endif
