// Layout of the classes and order of the virtual operations. Sizes and offsets are fixed where pointers have 4 bytes;
// wider machines keep the order.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "quorvel/quorvel.h"

namespace {

constexpr bool narrow = sizeof(void*) == 4;

static_assert(sizeof(Matrix::size_type) == 4 && sizeof(Matrix::nsing_type) == 4 && sizeof(Matrix::class_type) == 1);
static_assert(!narrow || (sizeof(Matrix) == 12 && sizeof(SingleArrayMatrix) == 20 && sizeof(SquareMatrix) == 24));
static_assert(!narrow || (sizeof(RegularMatrix) == 28 && sizeof(TriMatrix) == 24 && sizeof(SymmetricMatrix) == 24));
static_assert(!narrow || (sizeof(UpperTriangularMatrix) == 24 && sizeof(DiagonalMatrix) == 24));
static_assert(!narrow || (sizeof(LowerTriangularMatrix) == 24 && sizeof(SquareMatrix::proxy) == 12));
static_assert(sizeof(MatrixException) == sizeof(int));

// Reads a field out of the object representation.
template <class T>
T At(const void* object, std::size_t offset) {
  T value;
  std::memcpy(&value, static_cast<const unsigned char*>(object) + offset, sizeof value);
  return value;
}

TEST(Layout, FieldsInOrder) {
  const std::size_t p = sizeof(void*);
  RegularMatrix a(2, 3);
  a.set_nsing(0x01020304);
  a.set_ok(false);
  EXPECT_EQ(At<int>(&a, p), 0x01020304);
  EXPECT_EQ(At<unsigned char>(&a, p + 4), 1);
  a.set_ok(true);
  a.set_dispensable(true);
  EXPECT_EQ(At<unsigned char>(&a, p + 4), 2);
  a.set_dispensable(false);
  EXPECT_EQ(At<unsigned char>(&a, p + 5), 0);
  const std::size_t array = narrow ? 12 : 16;
  EXPECT_EQ(At<double*>(&a, array), a.data());
  EXPECT_EQ(At<unsigned>(&a, array + p), 6u);
  EXPECT_EQ(At<unsigned>(&a, array + p + 4), 2u);
  EXPECT_EQ(At<unsigned>(&a, array + p + 8), 3u);
  const UpperTriangularMatrix u(4);
  EXPECT_EQ(At<unsigned char>(&u, p + 5), 2);
  EXPECT_EQ(At<unsigned>(&u, array + p), 10u);
  EXPECT_EQ(At<unsigned>(&u, array + p + 4), 4u);
}

TEST(Layout, KindTags) {
  EXPECT_EQ(RegularMatrix().kind(), 0);
  EXPECT_EQ(SymmetricMatrix().kind(), 1);
  EXPECT_EQ(UpperTriangularMatrix().kind(), 2);
  EXPECT_EQ(LowerTriangularMatrix().kind(), 3);
  EXPECT_EQ(DiagonalMatrix().kind(), 4);
  EXPECT_EQ(Matrix::npos, 0xFFFFFFFFu);
  const unsigned* address = &Matrix::npos;  // an exported object, not only a constant
  EXPECT_EQ(*address, 0xFFFFFFFFu);
}

TEST(Layout, Names) {
  EXPECT_STREQ(RegularMatrix().ClassName(), "RegularMatrix");
  EXPECT_STREQ(SymmetricMatrix().ClassName(), "SymmetricMatrix");
  EXPECT_STREQ(UpperTriangularMatrix().ClassName(), "UpperTriangularMatrix");
  EXPECT_STREQ(LowerTriangularMatrix().ClassName(), "LowerTriangularMatrix");
  EXPECT_STREQ(DiagonalMatrix().ClassName(), "DiagonalMatrix");
  EXPECT_FALSE(RegularMatrix().IsSymmetric());
  EXPECT_TRUE(SymmetricMatrix().IsSymmetric());
  EXPECT_FALSE(UpperTriangularMatrix().IsSymmetric());
  EXPECT_FALSE(LowerTriangularMatrix().IsSymmetric());
  EXPECT_TRUE(DiagonalMatrix().IsSymmetric());
}

// A pointer to a virtual member function holds the slot: its offset in the virtual table plus 1 (Itanium ABI), or that
// offset with the mark in the second word (ARM).
template <class Member>
unsigned SlotOf(Member member) {
  static_assert(sizeof member == 2 * sizeof(void*));
#if defined(__arm__)
  const std::uintptr_t offset = At<std::uintptr_t>(&member, 0);
  EXPECT_EQ(At<std::uintptr_t>(&member, sizeof(void*)) & 1, 1u);
#else
  const std::uintptr_t offset = At<std::uintptr_t>(&member, 0) - 1;
#endif
  return static_cast<unsigned>(offset / sizeof(void*));
}

TEST(Layout, VirtualSlots) {
  // Slots 0 and 1 are the destructors.
  EXPECT_EQ(SlotOf(&Matrix::PrintArray), 2u);
  EXPECT_EQ(SlotOf(&Matrix::HeapReserved), 3u);
  EXPECT_EQ(SlotOf(&Matrix::HeapUsed), 4u);
  EXPECT_EQ(SlotOf(&Matrix::ClassName), 5u);
  EXPECT_EQ(SlotOf(&Matrix::IsSymmetric), 6u);
  EXPECT_EQ(SlotOf(&Matrix::GetSize), 7u);
  EXPECT_EQ(SlotOf(&Matrix::SetSize), 8u);
  EXPECT_EQ(SlotOf(&SingleArrayMatrix::StoredCount), 9u);
  EXPECT_EQ(SlotOf(&SingleArrayMatrix::GetArrayCount), 10u);
  EXPECT_EQ(SlotOf(&SquareMatrix::InsertRowsAndCols), 11u);
  EXPECT_EQ(SlotOf(&SquareMatrix::RemoveRowsAndCols), 12u);
}

}  // namespace
