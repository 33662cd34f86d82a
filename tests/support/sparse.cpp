#include "support/sparse.h"

#include <algorithm>
#include <ostream>

#include "support/digest.h"

namespace quorvel::test {
namespace {

// The pool as numbered records: block after block in the order of the block chain.
class Pool {
 public:
  static constexpr unsigned kOutside = 0xFFFFFFFFu;

  explicit Pool(const SparseMatrix& a) : grow_(a.growBy) {
    for (const SparseElement* b = a.firstBlock; b != nullptr; b = b[grow_ - 1].nextInCol) blocks_.push_back(b);
    for (unsigned k = 0; k < blocks_.size(); ++k) order_.push_back(k);
    std::sort(order_.begin(), order_.end(), [this](unsigned x, unsigned y) { return blocks_[x] < blocks_[y]; });
  }

  unsigned size() const { return static_cast<unsigned>(blocks_.size()) * grow_; }
  unsigned block_count() const { return static_cast<unsigned>(blocks_.size()); }
  bool is_link(unsigned number) const { return number % grow_ == grow_ - 1; }

  unsigned number_of(const SparseElement* e) const {
    auto place = std::upper_bound(order_.begin(), order_.end(), e,
                                  [this](const SparseElement* x, unsigned k) { return x < blocks_[k]; });
    if (place == order_.begin()) return kOutside;
    const unsigned k = *--place;
    return e < blocks_[k] + grow_ ? k * grow_ + static_cast<unsigned>(e - blocks_[k]) : kOutside;
  }

 private:
  unsigned grow_;
  std::vector<const SparseElement*> blocks_;
  std::vector<unsigned> order_;
};

enum class Use : char { kNone, kInRow, kInBoth, kFree };

std::string At(const SparseElement& e) { return "(" + std::to_string(e.row) + ", " + std::to_string(e.col) + ")"; }

// Walks the row lists, then the column lists, marking each record.
std::string FaultInLists(const SparseMatrix& a, const Pool& pool, std::vector<Use>& uses) {
  unsigned in_rows = 0;
  unsigned in_cols = 0;
  for (unsigned i = 0; i < a.rows; ++i) {
    const SparseElement* before = nullptr;
    for (const SparseElement* e = a.rowHeads[i]; e != nullptr; before = e, e = e->nextInRow) {
      const unsigned k = pool.number_of(e);
      if (k == Pool::kOutside) return "an element of row " + std::to_string(i) + " is not in the pool";
      if (pool.is_link(k)) return "block link used as element " + At(*e);
      if (uses[k] != Use::kNone) return "record of " + At(*e) + " is in the row lists twice";
      uses[k] = Use::kInRow;
      ++in_rows;
      if (e->row != i) return "element " + At(*e) + " is in row list " + std::to_string(i);
      if (e->col >= a.cols) return "element " + At(*e) + " is outside";
      if (before != nullptr && before->col >= e->col) return "row list not ascending at " + At(*e);
      if (a.kind() == Matrix::symmetric_sparse && e->col < e->row) return "below the diagonal: " + At(*e);
    }
  }
  for (unsigned j = 0; j < a.cols; ++j) {
    const SparseElement* before = nullptr;
    for (const SparseElement* e = a.colHeads[j]; e != nullptr; before = e, e = e->nextInCol) {
      const unsigned k = pool.number_of(e);
      if (k == Pool::kOutside) return "an element of column " + std::to_string(j) + " is not in the pool";
      if (uses[k] != Use::kInRow) return "record of " + At(*e) + " is in column lists twice or in no row list";
      uses[k] = Use::kInBoth;
      ++in_cols;
      if (e->col != j) return "element " + At(*e) + " is in column list " + std::to_string(j);
      if (before != nullptr && before->row >= e->row) return "column list not ascending at " + At(*e);
    }
  }
  if (in_rows != in_cols) return "rows hold " + std::to_string(in_rows) + ", columns " + std::to_string(in_cols);
  if (in_rows != a.used) return "used is " + std::to_string(a.used) + ", stored " + std::to_string(in_rows);
  return "";
}

std::string FaultInChain(const SparseMatrix& a, const Pool& pool, std::vector<Use>& uses) {
  for (const SparseElement* e = a.freeHead; e != nullptr; e = e->nextInCol) {
    const unsigned k = pool.number_of(e);
    if (k == Pool::kOutside) return "a free record is not in the pool";
    if (uses[k] != Use::kNone) return "record " + std::to_string(k) + " is in use or free twice";
    uses[k] = Use::kFree;
    if (pool.is_link(k) && e->nextInCol != nullptr) return "a block link is free and not the end mark";
  }
  return "";
}

}  // namespace

std::string FaultOf(const SparseMatrix& a) {
  if ((a.rows == 0) != (a.rowHeads == nullptr)) return "row heads do not fit the row count";
  if ((a.cols == 0) != (a.colHeads == nullptr)) return "column heads do not fit the column count";
  if (a.firstBlock != nullptr && a.growBy < 2) return "blocks of " + std::to_string(a.growBy) + " records";
  const Pool pool(a);
  std::vector<Use> uses(pool.size(), Use::kNone);
  const std::string fault = FaultInLists(a, pool, uses);
  return fault.empty() ? FaultInChain(a, pool, uses) : fault;
}

bool operator==(const Cell& a, const Cell& b) {
  return a.row == b.row && a.col == b.col && SameBits(a.value, b.value);
}

std::ostream& operator<<(std::ostream& out, const Cell& cell) {
  return out << "(" << cell.row << ", " << cell.col << ") = " << cell.value;
}

std::vector<Cell> CellsOf(const SparseMatrix& a) {
  std::vector<Cell> cells;
  for (unsigned i = 0; i < a.rows; ++i) {
    for (const SparseElement* e = a.rowHeads[i]; e != nullptr; e = e->nextInRow) {
      cells.push_back({e->row, e->col, e->value});
    }
  }
  return cells;
}

unsigned BlocksOf(const SparseMatrix& a) { return Pool(a).block_count(); }

unsigned ChainOf(const SparseMatrix& a) {
  unsigned count = 0;
  for (const SparseElement* e = a.freeHead; e != nullptr; e = e->nextInCol) ++count;
  return count;
}

std::vector<unsigned> PlacesOf(const SparseMatrix& a) {
  const Pool pool(a);
  std::vector<unsigned> places;
  for (unsigned i = 0; i < a.rows; ++i) {
    for (const SparseElement* e = a.rowHeads[i]; e != nullptr; e = e->nextInRow) places.push_back(pool.number_of(e));
  }
  for (unsigned j = 0; j < a.cols; ++j) {
    for (const SparseElement* e = a.colHeads[j]; e != nullptr; e = e->nextInCol) places.push_back(pool.number_of(e));
  }
  places.push_back(Pool::kOutside);
  for (const SparseElement* e = a.freeHead; e != nullptr; e = e->nextInCol) places.push_back(pool.number_of(e));
  return places;
}

void FeedDigest(const SparseMatrix& a) {
  digest::Feed(a.rows);
  digest::Feed(a.cols);
  digest::Feed(a.nsing());
  for (const Cell& cell : CellsOf(a)) {
    digest::Feed(cell.row);
    digest::Feed(cell.col);
    digest::Feed(cell.value);
  }
}

void Scatter(SparseMatrix& a, unsigned count, Random& random) {
  while (count-- > 0) {
    const unsigned row = random.Below(a.rows);
    const unsigned col = random.Below(a.cols);
    a.Put(row, col, random.Integer(-9, 9));
  }
}

}  // namespace quorvel::test
