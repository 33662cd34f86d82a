// Codes of the matrix functions, with ordinary, dispensable and not-ok operands, and with a code pending.

#include "quorvel/matrix_functions.h"

#include <gtest/gtest.h>

#include <new>

#include "support/codes.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/plain.h"

namespace quorvel::test {
namespace {

using namespace kinds;

template <class K>
K NotOk(K matrix) {
  matrix.set_ok(false);
  return matrix;
}

// `call` refuses the operand with `code`, with and without a pending code, and destroys a dispensable one.
template <class K, class Call>
void Refuses(K bad, int code, Call call) {
  const bool ok = bad.ok();
  const auto temporary = [&]() -> K& {
    bad.set_ok(true);
    K& t = DispensableCopy(bad);
    bad.set_ok(ok);
    t.set_ok(ok);
    return t;
  };
  EXPECT_CODE(call(bad), code);
  EXPECT_CODE(call(temporary()), code);
  EXPECT_CODE_WHILE_PENDING(321, call(bad), 321);
  EXPECT_CODE_WHILE_PENDING(321, call(temporary()), 321);
  bad.set_ok(true);
  EXPECT_CODE_WHILE_PENDING(321, call(DispensableCopy(bad)), 321);
}

TEST(MatrixFunctionCodes, Transpose) {
  Refuses(
      NotOk(RegularMatrix(2, 3)), 51040, [](RegularMatrix & a) -> auto& { return transpose(a); });
  Refuses(
      NotOk(RegularMatrix(2, 3)), 51040, [](RegularMatrix & a) -> auto& { return transpose(a, &a); });
  Refuses(
      NotOk(UpperTriangularMatrix(2)), 51020, [](UpperTriangularMatrix & a) -> auto& { return transpose(a); });
  Refuses(
      NotOk(LowerTriangularMatrix(2)), 50140, [](LowerTriangularMatrix & a) -> auto& { return transpose(a); });
}

TEST(MatrixFunctionCodes, TransposeIntoAMatrixThatIsNotOk) {
  RegularMatrix a(2, 3);
  RegularMatrix out = NotOk(RegularMatrix(1, 1));
  EXPECT_CODE(transpose(a, &out), 50000);
  EXPECT_CODE(transpose(Dispensable<RegularMatrix>(2u, 3u), &out), 50000);
  RegularMatrix& dispensable_out = Dispensable<RegularMatrix>(1u, 1u);
  dispensable_out.set_ok(false);
  EXPECT_CODE(transpose(a, &dispensable_out), 50000);
  RegularMatrix bad = NotOk(RegularMatrix(2, 3));
  EXPECT_CODE(transpose(bad, &out), 51040);
}

TEST(MatrixFunctionCodes, Triangles) {
  using R = const RegularMatrix&;
  using S = const SymmetricMatrix&;
  Refuses(
      NotOk(RegularMatrix(2, 3)), 50420, [](R a) -> auto& { return sym(a); });
  Refuses(
      RegularMatrix(2, 3), 40420, [](R a) -> auto& { return sym(a); });
  Refuses(
      NotOk(RegularMatrix(2, 3)), 50390, [](R a) -> auto& { return triu(a); });
  Refuses(
      RegularMatrix(2, 3), 40390, [](R a) -> auto& { return triu(a); });
  Refuses(
      NotOk(RegularMatrix(2, 3)), 50410, [](R a) -> auto& { return tril(a); });
  Refuses(
      RegularMatrix(2, 3), 40410, [](R a) -> auto& { return tril(a); });
  Refuses(
      NotOk(SymmetricMatrix(2)), 50390, [](S a) -> auto& { return triu(a); });
  Refuses(
      NotOk(SymmetricMatrix(2)), 50410, [](S a) -> auto& { return tril(a); });
}

TEST(MatrixFunctionCodes, Diagonals) {
  Refuses(
      NotOk(RegularMatrix(2, 3)), 50460, [](const RegularMatrix& a) -> auto& { return diag(a); });
  Refuses(
      RegularMatrix(2, 3), 40460, [](const RegularMatrix& a) -> auto& { return diag(a); });
  Refuses(
      NotOk(SymmetricMatrix(2)), 50460, [](const SymmetricMatrix& a) -> auto& { return diag(a); });
  Refuses(
      NotOk(UpperTriangularMatrix(2)), 50460, [](const UpperTriangularMatrix& a) -> auto& { return diag(a); });
  Refuses(
      NotOk(LowerTriangularMatrix(2)), 50460, [](const LowerTriangularMatrix& a) -> auto& { return diag(a); });
}

TEST(MatrixFunctionCodes, SparseKinds) {
  Refuses(
      NotOk(RS(2, 3)), 51050, [](RS & a) -> auto& { return transpose(a); });
  Refuses(
      NotOk(RS(2, 3)), 50422, [](RS & a) -> auto& { return sym(a); });
  Refuses(
      RS(2, 3), 40422, [](RS & a) -> auto& { return sym(a); });
  Refuses(
      NotOk(RS(2, 3)), 50391, [](RS & a) -> auto& { return triu(a); });
  Refuses(
      RS(2, 3), 40391, [](RS & a) -> auto& { return triu(a); });
  Refuses(
      NotOk(RS(2, 3)), 50393, [](RS & a) -> auto& { return tril(a); });
  Refuses(
      RS(2, 3), 40393, [](RS & a) -> auto& { return tril(a); });
  Refuses(
      NotOk(SS(2)), 50391, [](SS & a) -> auto& { return triu(a); });
  Refuses(
      NotOk(SS(2)), 50393, [](SS & a) -> auto& { return tril(a); });
  Refuses(
      NotOk(RS(2, 3)), 50460, [](RS & a) -> auto& { return diag(a); });
  Refuses(
      RS(2, 3), 40460, [](RS & a) -> auto& { return diag(a); });
  Refuses(
      NotOk(SS(2)), 50460, [](SS & a) -> auto& { return diag(a); });
}

template <class K>
void NumbersRefuse(const K& a) {
  Refuses(NotOk(K(a)), 50460, [](const K& x) { return trace(x); });
  Refuses(NotOk(K(a)), 50430, [](const K& x) { return scalar(x); });
}

TEST(MatrixFunctionCodes, Numbers) {
  NumbersRefuse(RegularMatrix(2, 3));
  NumbersRefuse(SymmetricMatrix(2));
  NumbersRefuse(UpperTriangularMatrix(2));
  NumbersRefuse(LowerTriangularMatrix(2));
  NumbersRefuse(DiagonalMatrix(2));
  NumbersRefuse(RegularSparseMatrix(2, 3));
  NumbersRefuse(SymmetricSparseMatrix(2));
}

TEST(MatrixFunctionCodes, DotAndEyeIgnoreAPendingCode) {
  const RegularMatrix a(2, 1);
  EXPECT_NO_CODE_WHILE_PENDING(321, dot(a, a));
  EXPECT_NO_CODE_WHILE_PENDING(321, Drop(eye(2, 1.0)));
  RegularMatrix b(2, 2);
  RegularMatrix c(3, 3);
  EXPECT_NO_CODE_WHILE_PENDING(321, std::swap(b, c));
}

template <class A, class B>
void KronRefuses(A a, B b) {
  const A bad_a = NotOk(A(a));
  const B bad_b = NotOk(B(b));
  const A no_a;
  const B no_b;
  EXPECT_CODE(kron(bad_a, b), 50000);
  EXPECT_CODE(kron(a, bad_b), 50000);
  EXPECT_CODE(kron(no_a, b), 40000);
  EXPECT_CODE(kron(a, no_b), 40000);
  EXPECT_CODE(kron(no_a, no_b), 40000);
  EXPECT_CODE(kron(no_a, bad_b), 40000);  // the first operand is looked at first
  EXPECT_CODE_WHILE_PENDING(321, kron(a, b), 321);
  // Only the refused operand dies.
  const Held<A> x(DispensableCopy(a));
  const Held<B> y(DispensableCopy(b));
  EXPECT_CODE(kron(*x, Dispensable<B>()), 40000);
  EXPECT_CODE(kron(Dispensable<A>(), *y), 40000);
}

TEST(MatrixFunctionCodes, Kron) {
  const DiagonalMatrix d(2);
  const SymmetricMatrix s(2);
  const RegularMatrix r(2, 3);
  KronRefuses(d, d);
  KronRefuses(d, s);
  KronRefuses(s, d);
  KronRefuses(s, s);
  KronRefuses(d, r);
  KronRefuses(r, d);
  KronRefuses(s, r);
  KronRefuses(r, s);
  KronRefuses(r, r);
  const RegularSparseMatrix rs(2, 3);
  const SymmetricSparseMatrix ss(2);
  KronRefuses(d, rs);
  KronRefuses(rs, d);
  KronRefuses(r, rs);
  KronRefuses(rs, r);
  KronRefuses(rs, rs);
  KronRefuses(d, ss);
  KronRefuses(ss, d);
  KronRefuses(ss, ss);
  EXPECT_CODE(kron(RegularMatrix(0, 2), RegularMatrix(2, 0)), 40000);
  EXPECT_CODE(kron(SymmetricSparseMatrix(2, 3), SymmetricSparseMatrix(2)), 40000);  // made rectangular
  EXPECT_CODE(kron(DiagonalMatrix(2), SymmetricSparseMatrix(3, 2)), 40000);
}

TEST(MatrixFunctionCodes, TooLargeResults) {
  EXPECT_THROW(static_cast<void>(eye(1u << 28, 1.0)), std::bad_array_new_length);
  // 2^17 x 2^17 elements; and a row count beyond 32 bits.
  const DiagonalMatrix long_diagonal(1u << 14);
  const RegularMatrix row(8, 1);
  EXPECT_THROW(static_cast<void>(kron(long_diagonal, row)), std::bad_array_new_length);
  const DiagonalMatrix huge(1u << 17);
  EXPECT_THROW(static_cast<void>(kron(huge, huge)), std::bad_array_new_length);
  EXPECT_THROW(static_cast<void>(kron(DispensableCopy(huge), DispensableCopy(huge))), std::bad_array_new_length);
  const RegularSparseMatrix tall(1u << 17, 1);
  EXPECT_THROW(static_cast<void>(kron(tall, tall)), std::bad_array_new_length);
  EXPECT_EQ(GetErrorCode(), 0);
}

}  // namespace
}  // namespace quorvel::test
