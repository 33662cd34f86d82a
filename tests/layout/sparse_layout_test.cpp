// Layout of the sparse classes: fields in order, sizes where pointers have 4 bytes.
#include <gtest/gtest.h>

#include <cstddef>

#include "quorvel/quorvel.h"

namespace {

constexpr bool narrow = sizeof(void*) == 4;

static_assert(!narrow || (sizeof(SparseElement) == 24 && sizeof(SparseMatrix) == 44));
static_assert(sizeof(RegularSparseMatrix) == sizeof(SparseMatrix) &&
              sizeof(SymmetricSparseMatrix) == sizeof(SparseMatrix));
static_assert(offsetof(SparseElement, nextInRow) == 0 && offsetof(SparseElement, nextInCol) == sizeof(void*) &&
              offsetof(SparseElement, value) == 2 * sizeof(void*) &&
              offsetof(SparseElement, row) == 2 * sizeof(void*) + 8 &&
              offsetof(SparseElement, col) == 2 * sizeof(void*) + 12);

TEST(SparseLayout, StoreFieldsInOrder) {
  const RegularSparseMatrix a(2, 3);
  const auto at = [&a](const void* field) {
    return static_cast<std::size_t>(static_cast<const char*>(field) - reinterpret_cast<const char*>(&a));
  };
  const std::size_t p = sizeof(void*), base = sizeof(Matrix);
  EXPECT_EQ(at(&a.freeHead), base);
  EXPECT_EQ(at(&a.firstBlock), base + p);
  EXPECT_EQ(at(&a.rowHeads), base + 2 * p);
  EXPECT_EQ(at(&a.colHeads), base + 3 * p);
  EXPECT_EQ(at(&a.used), base + 4 * p);
  EXPECT_EQ(at(&a.rows), base + 4 * p + 4);
  EXPECT_EQ(at(&a.cols), base + 4 * p + 8);
  EXPECT_EQ(at(&a.growBy), base + 4 * p + 12);
}

TEST(SparseLayout, ProxyIsAMatrixAndACell) {
  EXPECT_EQ(sizeof(SparseMatrix::proxy), sizeof(void*) + 8);
}

}  // namespace
