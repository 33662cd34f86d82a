// The store as a whole: construction, moves, the pool's blocks, clearing and releasing, heap figures.
#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "core/storage.h"
#include "sparse/pool.h"

static_assert(sizeof(void*) != 4 || (sizeof(SparseElement) == 24 && offsetof(SparseElement, value) == 8));
static_assert(sizeof(void*) != 4 || sizeof(SparseMatrix) == 44);

namespace {

using Heads = std::unique_ptr<SparseElement*[]>;

// never all ways: a count of 32 bits fits, which the language asks
Heads NewHeads(unsigned count) { return count == 0 ? nullptr : Heads(new SparseElement*[count]()); }

SparseElement* LinkSlot(SparseElement* block, unsigned growBy) noexcept { return block + growBy - 1; }

}  // namespace

SparseMatrix::SparseMatrix(class_type kind) noexcept
    : Matrix(kind),
      freeHead(nullptr),
      firstBlock(nullptr),
      rowHeads(nullptr),
      colHeads(nullptr),
      used(0),
      rows(0),
      cols(0),
      growBy(0) {}

SparseMatrix::SparseMatrix(class_type kind, unsigned rowCount, unsigned colCount) : SparseMatrix(kind) {
  Initialize(rowCount, colCount);
}

SparseMatrix::SparseMatrix(SparseMatrix&& source) noexcept : Matrix(std::move(source)) {
  TakeStore(source);
  source.DestroyIfDispensable();
}

SparseMatrix& SparseMatrix::operator=(SparseMatrix&& source) noexcept {
  if (this == &source) return *this;
  Matrix::operator=(std::move(source));
  FreeMemory();
  TakeStore(source);
  source.DestroyIfDispensable();
  return *this;
}

SparseMatrix::~SparseMatrix() { FreeMemory(); }

void SparseMatrix::TakeStore(SparseMatrix& source) noexcept {
  freeHead = std::exchange(source.freeHead, nullptr);
  firstBlock = std::exchange(source.firstBlock, nullptr);
  rowHeads = std::exchange(source.rowHeads, nullptr);
  colHeads = std::exchange(source.colHeads, nullptr);
  used = std::exchange(source.used, 0u);
  rows = std::exchange(source.rows, 0u);
  cols = std::exchange(source.cols, 0u);
  growBy = std::exchange(source.growBy, 0u);
}

void SparseMatrix::SwapStore(SparseMatrix& other) noexcept {
  if (this == &other) return;
  SwapState(other);
  std::swap(freeHead, other.freeHead);
  std::swap(firstBlock, other.firstBlock);
  std::swap(rowHeads, other.rowHeads);
  std::swap(colHeads, other.colHeads);
  std::swap(used, other.used);
  std::swap(rows, other.rows);
  std::swap(cols, other.cols);
  std::swap(growBy, other.growBy);
}

void SparseMatrix::GetSize(size_type& rowCount, size_type& colCount) const {
  rowCount = rows;
  colCount = cols;
}

void SparseMatrix::Initialize(unsigned rowCount, unsigned colCount) {
  Heads newRows = NewHeads(rowCount);
  Heads newCols = NewHeads(colCount);
  freeHead = nullptr;
  firstBlock = nullptr;
  rowHeads = newRows.release();
  colHeads = newCols.release();
  used = 0;
  rows = rowCount;
  cols = colCount;
  growBy = 0;
}

SparseElement* quorvel::detail::AddBlock(SparseMatrix& a) {
  unsigned count = a.growBy;
  if (count == 0) {
    RequireSize(std::min(a.rows, a.cols), 20);
    count = std::min(a.rows, a.cols) + 20;
  }
  // One record cannot be an element and the link at once.
  if (count == 1) count = 2;
  // never all ways: a count of 32 bits fits, which the language asks
  SparseElement* const block = new SparseElement[count];
  a.growBy = count;
  SparseElement* const link = LinkSlot(block, count);
  link->nextInCol = nullptr;
  if (a.firstBlock == nullptr) {
    a.firstBlock = block;
    link->nextInRow = block;
  } else {
    SparseElement*& lastBlock = LinkSlot(a.firstBlock, count)->nextInRow;
    LinkSlot(lastBlock, count)->nextInCol = block;
    lastBlock = block;
  }
  return block;
}

void SparseMatrix::AllocateMoreSpaces() {
  SparseElement* const block = quorvel::detail::AddBlock(*this);
  quorvel::detail::ChainRecords(*this, block, LinkSlot(block, growBy));
}

void SparseMatrix::Clear() noexcept {
  for (SparseElement* block = firstBlock; block != nullptr;) {
    SparseElement* const nextBlock = LinkSlot(block, growBy)->nextInCol;
    for (unsigned i = 0; i + 2 < growBy; ++i) block[i].nextInCol = block + i + 1;
    block[growBy - 2].nextInCol = nextBlock;
    block = nextBlock;
  }
  freeHead = firstBlock;
  if (rowHeads != nullptr) std::fill_n(rowHeads, rows, nullptr);
  if (colHeads != nullptr) std::fill_n(colHeads, cols, nullptr);
  used = 0;
}

void SparseMatrix::FreeMemory() noexcept {
  for (SparseElement* block = firstBlock; block != nullptr;) {
    SparseElement* const nextBlock = LinkSlot(block, growBy)->nextInCol;
    delete[] block;  // never all ways: the language asks whether the block is null, as the loop did
    block = nextBlock;
  }
  delete[] rowHeads;
  delete[] colHeads;
  freeHead = nullptr;
  firstBlock = nullptr;
  rowHeads = nullptr;
  colHeads = nullptr;
  used = 0;
  rows = 0;
  cols = 0;
  growBy = 0;
}

bool SparseMatrix::SetGrowBy(unsigned n) noexcept {
  if (firstBlock != nullptr) return false;
  growBy = n + 1;
  return true;
}

std::size_t SparseMatrix::HeapReserved() const {
  std::size_t slots = 0;
  for (const SparseElement* block = firstBlock; block != nullptr; block = block[growBy - 1].nextInCol) slots += growBy;
  return 4 * (6 * slots + rows + cols);
}

std::size_t SparseMatrix::HeapUsed() const { return 4 * (6 * std::size_t{used} + rows + cols); }
