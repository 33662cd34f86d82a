// Every product and structured product as one list of calls, for tests that treat them alike.

#ifndef QUORVEL_TESTS_SUPPORT_OPERATIONS_H
#define QUORVEL_TESTS_SUPPORT_OPERATIONS_H

#include <gtest/gtest.h>

#include "../../src/ops/tables/products.h"
#include "../../src/ops/tables/structured.h"
#include "support/make.h"
#include "support/masked.h"

namespace quorvel::test {

// Takes a result's life, as an operation that consumes it would.
inline void Drop(const Matrix& result) { result.DestroyIfDispensable(); }
inline void Drop(double) {}

#define QUORVEL_VISIT_TIMES(R, A, B) QUORVEL_VISIT_PRODUCT(320, A, B)
#define QUORVEL_VISIT_SPARSE_TIMES(R, A, B) QUORVEL_VISIT_PRODUCT(294, A, B)
#define QUORVEL_VISIT_PRODUCT(CODE, A, B)                                               \
  visit(#A " * " #B, CODE, static_cast<A*>(nullptr), static_cast<B*>(nullptr),           \
        [](const A& a, const B& b) -> decltype(auto) { return a * b; });
#define QUORVEL_VISIT(NAME, CODE, A, B)                                                 \
  visit(#NAME "(" #A ", " #B ")", CODE, static_cast<A*>(nullptr), static_cast<B*>(nullptr), \
        [](const A& a, const B& b) -> decltype(auto) { return NAME(a, b); });
#define QUORVEL_VISIT_ATB(R, A, B) QUORVEL_VISIT(ATB, 320, A, B)
#define QUORVEL_VISIT_ABT(R, A, B) QUORVEL_VISIT(ABT, 320, A, B)
#define QUORVEL_VISIT_SP(R, A, B) QUORVEL_VISIT(SymmetricOfProduct, 320, A, B)
#define QUORVEL_VISIT_SABT(R, A, B) QUORVEL_VISIT(SymmetricOfABT, 320, A, B)
#define QUORVEL_VISIT_ATPA(R, A, B) QUORVEL_VISIT(ATPA, 0, A, B)
#define QUORVEL_VISIT_AQAT(R, A, B) QUORVEL_VISIT(AQAT, 0, A, B)
#define QUORVEL_VISIT_SQS(R, A, B) QUORVEL_VISIT(SQS, 0, A, B)
#define QUORVEL_VISIT_NORM(A, B) QUORVEL_VISIT(PWeightedNorm, 0, A, B)

// Calls visit(name, code, a, b, call) for every operation of two dense operands: `code` is the operation's, `a` and `b`
// are null pointers that carry the kinds, and call(x, y) applies the operation.
template <class Visit>
void ForEachDensePair(Visit visit) {
  QUORVEL_DENSE_PRODUCTS(QUORVEL_VISIT_TIMES)
  QUORVEL_DENSE_ATB(QUORVEL_VISIT_ATB)
  QUORVEL_DENSE_ABT(QUORVEL_VISIT_ABT)
  QUORVEL_DENSE_SYMMETRIC_OF_PRODUCT(QUORVEL_VISIT_SP)
  QUORVEL_DENSE_SYMMETRIC_OF_ABT(QUORVEL_VISIT_SABT)
  QUORVEL_DENSE_ATPA(QUORVEL_VISIT_ATPA)
  QUORVEL_DENSE_AQAT(QUORVEL_VISIT_AQAT)
  QUORVEL_DENSE_SQS(QUORVEL_VISIT_SQS)
  QUORVEL_DENSE_PWEIGHTED_NORM(QUORVEL_VISIT_NORM)
}

// The same with a sparse operand.
template <class Visit>
void ForEachSparsePair(Visit visit) {
  QUORVEL_MIXED_PRODUCTS(QUORVEL_VISIT_TIMES)
  QUORVEL_SPARSE_PRODUCTS(QUORVEL_VISIT_SPARSE_TIMES)
  QUORVEL_SPARSE_ATB(QUORVEL_VISIT_ATB)
  QUORVEL_SPARSE_ABT(QUORVEL_VISIT_ABT)
  QUORVEL_SPARSE_SYMMETRIC_OF_PRODUCT(QUORVEL_VISIT_SP)
  QUORVEL_SPARSE_SYMMETRIC_OF_ABT(QUORVEL_VISIT_SABT)
  QUORVEL_SPARSE_ATPA(QUORVEL_VISIT_ATPA)
  QUORVEL_SPARSE_AQAT(QUORVEL_VISIT_AQAT)
  QUORVEL_SPARSE_SQS(QUORVEL_VISIT_SQS)
  QUORVEL_SPARSE_PWEIGHTED_NORM(QUORVEL_VISIT_NORM)
}

// ATPA, AQAT and SQS with a block size.
#define QUORVEL_VISIT_BLOCKS(NAME, A, B)                                                            \
  visit(#NAME "(" #A ", " #B ", block)", 0, static_cast<A*>(nullptr), static_cast<B*>(nullptr), \
        [=](const A& a, const B& b) -> decltype(auto) { return NAME(a, b, block); });
#define QUORVEL_VISIT_ATPA_BLOCKS(A, B) QUORVEL_VISIT_BLOCKS(ATPA, A, B)
#define QUORVEL_VISIT_AQAT_BLOCKS(A, B) QUORVEL_VISIT_BLOCKS(AQAT, A, B)
#define QUORVEL_VISIT_SQS_BLOCKS(A, B) QUORVEL_VISIT_BLOCKS(SQS, A, B)

template <class Visit>
void ForEachBlockPair(unsigned block, Visit visit) {
  QUORVEL_ATPA_BLOCKS(QUORVEL_VISIT_ATPA_BLOCKS)
  QUORVEL_AQAT_BLOCKS(QUORVEL_VISIT_AQAT_BLOCKS)
  QUORVEL_SQS_BLOCKS(QUORVEL_VISIT_SQS_BLOCKS)
}

}  // namespace quorvel::test

#endif
