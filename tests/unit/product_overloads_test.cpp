// Every product exists as declared, links, and is chosen without ambiguity whatever the constness of its operands.

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "../../src/ops/tables/products.h"
#include "../../src/ops/tables/structured.h"
#include "quorvel/quorvel.h"

namespace {

// The address of an overload exists only when it is defined and exported.
template <class Function>
void Links(Function* function, int& count) {
  EXPECT_NE(reinterpret_cast<const void*>(function), nullptr);
  ++count;
}

TEST(ProductOverloads, Products) {
  int count = 0;
#define QUORVEL_ROW(R, A, B)                              \
  Links<R&(R&, const A&, const B&)>(&Mult, count);        \
  Links<R&(const A&, const B&)>(&operator*, count);
  QUORVEL_DENSE_PRODUCTS(QUORVEL_ROW)
  QUORVEL_MIXED_PRODUCTS(QUORVEL_ROW)
  QUORVEL_SPARSE_PRODUCTS(QUORVEL_ROW)
#undef QUORVEL_ROW
  EXPECT_EQ(count, 2 * 7 * 7);
}

TEST(ProductOverloads, Scaling) {
  int count = 0;
#define QUORVEL_ROW(K)                              \
  Links<K&(K&, const K&, double)>(&Mult, count);    \
  Links<K&(K&, double)>(&operator*, count);         \
  Links<K&(const K&, double)>(&operator*, count);   \
  Links<K&(double, K&)>(&operator*, count);         \
  Links<K&(double, const K&)>(&operator*, count);
  QUORVEL_DENSE_SCALED(QUORVEL_ROW)
  QUORVEL_SPARSE_SCALED(QUORVEL_ROW)
#undef QUORVEL_ROW
  EXPECT_EQ(count, 5 * 7);
}

TEST(ProductOverloads, StructuredProducts) {
  int count = 0;
#define QUORVEL_ONE(NAME, R, K) Links<R&(const K&)>(&NAME, count);
#define QUORVEL_TWO(NAME, R, A, B) Links<R&(const A&, const B&)>(&NAME, count);
#define QUORVEL_BLOCKS(NAME, A, B) Links<SymmetricSparseMatrix&(const A&, const B&, unsigned)>(&NAME, count);
#define QUORVEL_ROW(R, K) QUORVEL_ONE(ATA, R, K)
  QUORVEL_DENSE_ATA(QUORVEL_ROW) QUORVEL_SPARSE_ATA(QUORVEL_ROW)
#undef QUORVEL_ROW
#define QUORVEL_ROW(R, K) QUORVEL_ONE(AAT, R, K)
  QUORVEL_DENSE_AAT(QUORVEL_ROW) QUORVEL_SPARSE_AAT(QUORVEL_ROW)
#undef QUORVEL_ROW
#define QUORVEL_ROW(R, K) QUORVEL_ONE(UTU, R, K)
  QUORVEL_DENSE_UTU(QUORVEL_ROW) QUORVEL_SPARSE_UTU(QUORVEL_ROW)
#undef QUORVEL_ROW
#define QUORVEL_ROW(R, K) QUORVEL_ONE(LTL, R, K)
  QUORVEL_DENSE_LTL(QUORVEL_ROW) QUORVEL_SPARSE_LTL(QUORVEL_ROW)
#undef QUORVEL_ROW
  EXPECT_EQ(count, 8);
#define QUORVEL_ROW(R, A, B) QUORVEL_TWO(ATB, R, A, B)
  QUORVEL_DENSE_ATB(QUORVEL_ROW) QUORVEL_SPARSE_ATB(QUORVEL_ROW)
#undef QUORVEL_ROW
#define QUORVEL_ROW(R, A, B) QUORVEL_TWO(ABT, R, A, B)
  QUORVEL_DENSE_ABT(QUORVEL_ROW) QUORVEL_SPARSE_ABT(QUORVEL_ROW)
#undef QUORVEL_ROW
  EXPECT_EQ(count, 8 + 9 + 9);
#define QUORVEL_ROW(R, A, B) QUORVEL_TWO(SymmetricOfProduct, R, A, B)
  QUORVEL_DENSE_SYMMETRIC_OF_PRODUCT(QUORVEL_ROW) QUORVEL_SPARSE_SYMMETRIC_OF_PRODUCT(QUORVEL_ROW)
#undef QUORVEL_ROW
#define QUORVEL_ROW(R, A, B) QUORVEL_TWO(SymmetricOfABT, R, A, B)
  QUORVEL_DENSE_SYMMETRIC_OF_ABT(QUORVEL_ROW) QUORVEL_SPARSE_SYMMETRIC_OF_ABT(QUORVEL_ROW)
#undef QUORVEL_ROW
  Links<SymmetricMatrix&(SymmetricMatrix&, const RegularSparseMatrix&, const RegularSparseMatrix&)>(
      &SymmetricOfProduct, count);
  EXPECT_EQ(count, 26 + 4 + 4 + 1);
#define QUORVEL_ROW(R, A, B) QUORVEL_TWO(ATPA, R, A, B)
  QUORVEL_DENSE_ATPA(QUORVEL_ROW) QUORVEL_SPARSE_ATPA(QUORVEL_ROW)
#undef QUORVEL_ROW
#define QUORVEL_ROW(R, A, B) QUORVEL_TWO(AQAT, R, A, B)
  QUORVEL_DENSE_AQAT(QUORVEL_ROW) QUORVEL_SPARSE_AQAT(QUORVEL_ROW)
#undef QUORVEL_ROW
#define QUORVEL_ROW(R, A, B) QUORVEL_TWO(SQS, R, A, B)
  QUORVEL_DENSE_SQS(QUORVEL_ROW) QUORVEL_SPARSE_SQS(QUORVEL_ROW)
#undef QUORVEL_ROW
  EXPECT_EQ(count, 35 + 4 + 7 + 4);
#define QUORVEL_ROW(A, B) QUORVEL_BLOCKS(ATPA, A, B)
  QUORVEL_ATPA_BLOCKS(QUORVEL_ROW)
#undef QUORVEL_ROW
#define QUORVEL_ROW(A, B) QUORVEL_BLOCKS(AQAT, A, B)
  QUORVEL_AQAT_BLOCKS(QUORVEL_ROW)
#undef QUORVEL_ROW
#define QUORVEL_ROW(A, B) QUORVEL_BLOCKS(SQS, A, B)
  QUORVEL_SQS_BLOCKS(QUORVEL_ROW)
#undef QUORVEL_ROW
  EXPECT_EQ(count, 50 + 6 + 7 + 5);
#define QUORVEL_ROW(A, P) Links<double(const A&, const P&)>(&PWeightedNorm, count);
  QUORVEL_DENSE_PWEIGHTED_NORM(QUORVEL_ROW) QUORVEL_SPARSE_PWEIGHTED_NORM(QUORVEL_ROW)
#undef QUORVEL_ROW
  EXPECT_EQ(count, 68 + 10);
}

// ---------------------------------------------------------------------------------------------------------------------
// Expressions: the kind of a product, for operands that are variables, constants, and temporaries.

template <class L, class R>
using ProductOf = decltype(std::declval<L>() * std::declval<R>());

#define QUORVEL_ROW(R, A, B)                                          \
  static_assert(std::is_same_v<ProductOf<A&, B&>, R&>);               \
  static_assert(std::is_same_v<ProductOf<const A&, B&>, R&>);         \
  static_assert(std::is_same_v<ProductOf<A&, const B&>, R&>);         \
  static_assert(std::is_same_v<ProductOf<const A&, const B&>, R&>);   \
  static_assert(std::is_same_v<ProductOf<A, B>, R&>);                 \
  static_assert(std::is_same_v<ProductOf<A, const B&>, R&>);
QUORVEL_DENSE_PRODUCTS(QUORVEL_ROW)
QUORVEL_MIXED_PRODUCTS(QUORVEL_ROW)
QUORVEL_SPARSE_PRODUCTS(QUORVEL_ROW)
#undef QUORVEL_ROW

#define QUORVEL_ROW(K)                                              \
  static_assert(std::is_same_v<ProductOf<K&, double>, K&>);         \
  static_assert(std::is_same_v<ProductOf<const K&, double>, K&>);   \
  static_assert(std::is_same_v<ProductOf<K, double>, K&>);          \
  static_assert(std::is_same_v<ProductOf<double, K&>, K&>);         \
  static_assert(std::is_same_v<ProductOf<double, const K&>, K&>);   \
  static_assert(std::is_same_v<ProductOf<double, K>, K&>);          \
  static_assert(std::is_same_v<ProductOf<K&, int>, K&>);            \
  static_assert(std::is_same_v<ProductOf<const K&, unsigned>, K&>); \
  static_assert(std::is_same_v<ProductOf<int, K&>, K&>);            \
  static_assert(std::is_same_v<ProductOf<unsigned, const K&>, K&>); \
  static_assert(std::is_same_v<ProductOf<float, K&>, K&>);          \
  static_assert(std::is_same_v<ProductOf<long, const K&>, K&>);
QUORVEL_DENSE_SCALED(QUORVEL_ROW)
QUORVEL_SPARSE_SCALED(QUORVEL_ROW)
#undef QUORVEL_ROW

// Elements are numbers: a product with one scales, and two of them multiply.
static_assert(std::is_same_v<decltype(std::declval<SymmetricMatrix&>()(0, 0) * std::declval<RegularMatrix&>()),
                             RegularMatrix&>);
static_assert(std::is_same_v<decltype(std::declval<const RegularMatrix&>() * std::declval<RegularSparseMatrix&>()(0, 0)),
                             RegularMatrix&>);
static_assert(std::is_same_v<decltype(std::declval<SymmetricMatrix&>()(0, 0) * std::declval<SymmetricMatrix&>()(0, 1)),
                             double>);
static_assert(std::is_same_v<decltype(2.0 * std::declval<RegularSparseMatrix&>()(0, 0)), double>);

TEST(ProductExpressions, Chains) {
  const RegularMatrix F(2, 2);
  SymmetricMatrix P(2);
  RegularMatrix H(1, 2);
  const DiagonalMatrix D(2);
  const RegularMatrix a(F * P * 2.0), b(H * F * D), c(2 * (H * P)), d((F * F) * (F * F));
  const SymmetricMatrix e(0.5 * ATPA(F, P)), f(AQAT(H * F, P)), g(SQS(D, P) * 3);
  EXPECT_EQ(a.nrows() + b.nrows() + c.nrows() + d.nrows() + e.ndim() + f.ndim() + g.ndim(), 11u);
}

}  // namespace
