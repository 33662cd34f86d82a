// Random operations on both sparse kinds against a sorted map; after each one the store is checked as a whole.

#include <gtest/gtest.h>

#include "model/sparse_driver.h"

namespace quorvel::test {

// Everything that reads without changing.
template <class K>
void SparseDriver<K>::Read() {
  const K& a = *a_;
  for (unsigned i = 0; i < model_.rows; ++i) {
    for (unsigned j = 0; j < model_.cols; ++j) {
      Expect(SameBits(a(i, j), model_.Get(i, j)), "const access");
      Expect(SameBits((*a_)(i, j), model_.Get(i, j)), "element reference");
      Expect((a.Cell_Loc(i, j) != nullptr) == (model_.Find(i, j) != nullptr), "Cell_Loc");
    }
  }
  if (Empty()) return;
  const unsigned i = Row(), first = Col(), last = first + random_.Below(model_.cols - first);
  double sum = 0.0, squares = 0.0;
  bool empty = true;
  for (unsigned j = 0; j < model_.cols; ++j) {
    const double* value = model_.Find(i, j);
    if (value != nullptr) empty = false;
    if (value == nullptr || j < first || j > last) continue;
    sum += *value;
    squares += *value * *value;
  }
  Expect(SameBits(a.SumRow(i, first, last), sum), "SumRow");
  Expect(SameBits(a.SumSqRow(i, first, last), squares), "SumSqRow");
  Expect(a.IsRowEmpty(i) == empty, "IsRowEmpty");
  RegularSparseMatrix line(model_.cols, 1);
  a.GetRowElements(i, first, last, line);
  for (unsigned j = 0; j < model_.cols; ++j) {
    const bool stored_here = !kSymmetric || i <= j;
    const double expected = stored_here && first <= j && j <= last ? model_.Get(i, j) : 0.0;
    Expect(SameBits(std::as_const(line)(j, 0), expected + 0.0), "GetRowElements");
  }
  if constexpr (kSymmetric) {
    unsigned full = 0;
    for (unsigned k = 0; k < model_.rows; ++k) {
      for (unsigned l = 0; l < model_.cols; ++l) full += model_.Find(k, l) != nullptr ? 1u : 0u;
    }
    Expect(a.NumberNonZero() == full, "NumberNonZero");
  } else {
    const unsigned j = Col();
    double column = 0.0;
    bool none = true;
    for (unsigned k = 0; k < model_.rows; ++k) {
      if (const double* value = model_.Find(k, j)) {
        column += *value;
        none = false;
      }
    }
    Expect(SameBits(a.SumCol(j), column), "SumCol");
    Expect(a.IsColEmpty(j) == none, "IsColEmpty");
  }
}

// Every entry is as likely as any other.
template <class K>
const typename SparseDriver<K>::Operation SparseDriver<K>::kOperations[] = {
    {"Put", &SparseDriver::PutSeveral},
    {"Put", &SparseDriver::PutSeveral},
    {"Put", &SparseDriver::PutSeveral},
    {"Put", &SparseDriver::Put},
    {"Put", &SparseDriver::Put},
    {"Put", &SparseDriver::Put},
    {"Put zero", &SparseDriver::PutZero},
    {"Put zero", &SparseDriver::PutZero},
    {"compound", &SparseDriver::Compound},
    {"compound", &SparseDriver::Compound},
    {"compound", &SparseDriver::Compound},
    {"cell to cell", &SparseDriver::CellToCell},
    {"ClearRow or ClearCol", &SparseDriver::ClearLine},
    {"InsertRows or InsertCols", &SparseDriver::OpenLines},
    {"RemoveRows or RemoveCols", &SparseDriver::RemoveLines},
    {"SetSize", &SparseDriver::SetSize},
    {"NegateRow and its like", &SparseDriver::ChangeLine},
    {"*=", &SparseDriver::Scale},
    {"scalar assignment", &SparseDriver::Fill},
    {"Clear", &SparseDriver::ClearAll},
    {"copy", &SparseDriver::CopyConstruct},
    {"assignment", &SparseDriver::Assign},
    {"move or swap", &SparseDriver::MoveOrSwap},
    {"unary minus", &SparseDriver::Minus},
    {"diagonal sum", &SparseDriver::Diagonal},
    {"low level", &SparseDriver::LowLevel},
    {"low level", &SparseDriver::LowLevel},
    {"through dense", &SparseDriver::ThroughDense},
    {"read", &SparseDriver::Read},
    {"new matrix", &SparseDriver::RarelyRenew},
};

template <class K>
const unsigned SparseDriver<K>::kCount = sizeof kOperations / sizeof kOperations[0];

namespace {

#if defined(__arm__)  // runs in an emulator
constexpr unsigned kSteps = 20000;
#else
constexpr unsigned kSteps = 600000;
#endif

template <class K>
void Drive(std::uint64_t seed) {
  SparseDriver<K> driver(seed);
  for (unsigned step = 0; step < kSteps; ++step) {
    const std::string difference = driver.Step();
    ASSERT_EQ(difference, "") << "seed " << seed << ", step " << step;
    if (step < 20000 && step % 100 == 0) FeedDigest(driver.matrix());
  }
}

TEST(SparseModel, Regular) { Drive<RegularSparseMatrix>(20260703); }
TEST(SparseModel, Symmetric) { Drive<SymmetricSparseMatrix>(20260704); }

}  // namespace
}  // namespace quorvel::test
