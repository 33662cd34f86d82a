// Random operations on a sparse matrix and on its model, side by side.

#ifndef QUORVEL_TESTS_MODEL_SPARSE_DRIVER_H
#define QUORVEL_TESTS_MODEL_SPARSE_DRIVER_H

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "quorvel/quorvel.h"
#include "model/sparse_model.h"
#include "support/random.h"
#include "support/sparse.h"

namespace quorvel::test {

template <class K>
class SparseDriver {
 public:
  static constexpr bool kSymmetric = std::is_same_v<K, SymmetricSparseMatrix>;

  explicit SparseDriver(std::uint64_t seed) : random_(seed), model_{kSymmetric, 0, 0} { Renew(); }

  const K& matrix() const { return *a_; }

  // One operation, then the comparison; returns what differs.
  std::string Step() {
    const Operation& chosen = kOperations[random_.Below(kCount)];
    name_ = chosen.name;
    (this->*chosen.run)();
    const std::string difference = wrong_.empty() ? Difference() : wrong_;
    return difference.empty() ? "" : std::string(name_) + ": " + difference;
  }

 private:
  struct Operation {
    const char* name;
    void (SparseDriver::*run)();
  };

  static constexpr unsigned kLargest = 7;

  // A size; seldom 0.
  unsigned Size() { return random_.Chance(12) ? 0 : 1 + random_.Below(kLargest); }
  unsigned Row() { return random_.Below(model_.rows); }
  unsigned Col() { return random_.Below(model_.cols); }
  double Value() { return 0.25 * random_.Integer(-8, 8); }
  bool Empty() const { return model_.rows == 0 || model_.cols == 0; }
  void Expect(bool holds, const char* what) {
    if (!holds && wrong_.empty()) wrong_ = what;
  }

  std::string Difference() const {
    const std::string fault = FaultOf(*a_);
    if (!fault.empty()) return fault;
    if (a_->rows != model_.rows || a_->cols != model_.cols) return "size";
    if (a_->used != model_.cells.size()) return "used";
    auto cell = model_.cells.begin();
    for (unsigned i = 0; i < a_->rows; ++i) {
      for (const SparseElement* e = a_->rowHeads[i]; e != nullptr; e = e->nextInRow, ++cell) {
        if (std::make_pair(e->row, e->col) != cell->first || !SameBits(e->value, cell->second)) {
          return "element (" + std::to_string(e->row) + ", " + std::to_string(e->col) + ")";
        }
      }
    }
    if (ChainOf(*a_) != model_.pool.chain) return "length of the free chain";
    const std::size_t slots = std::size_t{model_.pool.blocks} * model_.pool.grow;
    if (a_->HeapReserved() != 4 * (6 * slots + model_.rows + model_.cols)) return "HeapReserved";
    if (a_->HeapUsed() != 4 * (6 * model_.cells.size() + model_.rows + model_.cols)) return "HeapUsed";
    return "";
  }

  // A new matrix of another size and block size.
  void Renew() {
    const unsigned m = Size();
    const unsigned n = kSymmetric ? m : Size();
    a_ = std::make_unique<K>(m, n);
    model_ = {kSymmetric, m, n};
    if (random_.Chance(2)) {
      const unsigned grow = random_.Below(9);
      Expect(a_->SetGrowBy(grow), "SetGrowBy");
      model_.pool.grow = grow + 1;
    }
  }
  void RarelyRenew() {
    if (random_.Chance(20)) Renew();
  }

  void Put() {
    if (Empty()) return;
    const unsigned i = Row(), j = Col();
    const double v = Value();
    a_->Put(i, j, v);
    model_.Put(i, j, v);
  }
  void PutSeveral() {
    for (unsigned k = 0; k < 4; ++k) Put();
  }
  void PutZero() {
    if (Empty()) return;
    const unsigned i = Row(), j = Col();
    (*a_)(i, j) = 0.0;
    model_.Put(i, j, 0.0);
  }
  void Compound() {
    if (Empty()) return;
    const unsigned i = Row(), j = Col();
    const double old = model_.Get(i, j);
    const double d = random_.Chance(4) ? old : Value();
    switch (random_.Below(4)) {
      case 0:
        (*a_)(i, j) += d;
        model_.Put(i, j, old + d);
        break;
      case 1:
        (*a_)(i, j) -= d;
        model_.Put(i, j, old - d);
        break;
      case 2:
        (*a_)(i, j) *= d;
        if (model_.Find(i, j) != nullptr) model_.Put(i, j, d * old);
        break;
      default:
        if (d == 0.0) return;
        (*a_)(i, j) /= d;
        if (model_.Find(i, j) != nullptr) model_.Put(i, j, d / old);
    }
  }
  void CellToCell() {
    if (Empty()) return;
    const unsigned i = Row(), j = Col(), k = Row(), l = Col();
    (*a_)(i, j) = (*a_)(k, l);
    model_.Put(i, j, model_.Get(k, l));
  }
  void ClearLine() {
    if (Empty()) return;
    const bool row = random_.Chance(2);
    const unsigned count = row ? model_.rows : model_.cols;
    const unsigned line = random_.Below(count), first = random_.Below(count);
    const unsigned last = random_.Chance(4) ? Matrix::npos : first + random_.Below(kLargest);
    const unsigned end = std::min(last, count - 1);
    if (row) {
      a_->ClearRow(line, first, last);
      model_.RemoveRun([&](unsigned i, unsigned j) { return i == line && first <= j && j <= end; });
    } else {
      a_->ClearCol(line, first, last);
      model_.RemoveRun([&](unsigned i, unsigned j) { return j == line && first <= i && i <= end; });
    }
  }
  void OpenLines() {
    if (kSymmetric || model_.rows + model_.cols > 2 * kLargest) return;
    const bool row = random_.Chance(2);
    const unsigned at = random_.Below((row ? model_.rows : model_.cols) + 1), count = random_.Below(3);
    if (row) {
      a_->InsertRows(at, count);
      model_.rows += count;
      model_.MoveCells([&](unsigned i, unsigned j) { return std::make_pair(i < at ? i : i + count, j); });
    } else {
      a_->InsertCols(at, count);
      model_.cols += count;
      model_.MoveCells([&](unsigned i, unsigned j) { return std::make_pair(i, j < at ? j : j + count); });
    }
  }
  void RemoveLines() {
    if (kSymmetric) return;
    const bool row = random_.Chance(2);
    const unsigned extent = row ? model_.rows : model_.cols;
    const unsigned at = random_.Below(extent + 1), count = std::min(random_.Below(2), extent - at);
    const unsigned end = at + count;
    if (row) {
      a_->RemoveRows(at, count);
      model_.rows -= count;
      model_.RemoveIf([&](unsigned i, unsigned) { return at <= i && i < end; });
      model_.MoveCells([&](unsigned i, unsigned j) { return std::make_pair(i < end ? i : i - count, j); });
    } else {
      a_->RemoveCols(at, count);
      model_.cols -= count;
      model_.RemoveIf([&](unsigned, unsigned j) { return at <= j && j < end; });
      model_.MoveCells([&](unsigned i, unsigned j) { return std::make_pair(i, j < end ? j : j - count); });
    }
  }
  void SetSize() {
    if (!random_.Chance(3)) return;
    const unsigned m = Size(), n = kSymmetric ? m : Size();
    a_->SetSize(m, n, random_.Chance(2));
    if (m == 0 || n == 0) {
      model_.Clear();
    } else {
      model_.RemoveIf([&](unsigned i, unsigned) { return i >= m; });
      model_.RemoveIf([&](unsigned, unsigned j) { return j >= n; });
    }
    model_.rows = m;
    model_.cols = n;
  }
  void ChangeLine() {
    if (Empty()) return;
    const bool row = random_.Chance(2);
    const unsigned line = row ? Row() : Col(), length = row ? model_.cols : model_.rows;
    const unsigned first = random_.Below(length), last = first + random_.Below(length - first);
    const double factor = random_.Chance(4) ? 0.0 : 0.5 * random_.Integer(-4, 4);
    const bool negate = random_.Chance(2);
    if (row) {
      negate ? a_->NegateRow(line, first, last) : a_->MultRow(line, factor, first, last);
    } else {
      negate ? a_->NegateCol(line, first, last) : a_->MultCol(line, factor, first, last);
    }
    for (unsigned k = first; k <= last; ++k) {
      const auto cell = model_.cells.find(row ? model_.KeyOf(line, k) : model_.KeyOf(k, line));
      if (cell != model_.cells.end()) cell->second = negate ? -cell->second : cell->second * factor;
    }
  }
  void Scale() {
    const double s = random_.Chance(20) ? 0.0 : random_.Chance(2) ? -1.0 : 0.5 * random_.Integer(1, 4);
    *a_ *= s;
    if (s == 0.0) {
      model_.Clear();
    } else {
      for (auto& cell : model_.cells) cell.second *= s;
    }
  }
  void Fill() {
    if (!random_.Chance(10)) return;
    const double v = Value();
    *a_ = v;
    model_.Clear();
    if (v == 0.0) return;
    for (unsigned i = 0; i < model_.rows; ++i) {
      for (unsigned j = kSymmetric ? i : 0; j < model_.cols; ++j) model_.Store(i, j, v);
    }
  }
  void ClearAll() {
    if (!random_.Chance(20)) return;
    random_.Chance(2) ? a_->Clear() : a_->Copy(*a_, false);
    model_.Clear();
  }

  // The pool of a matrix that has been given these elements one by one.
  void Refill(PoolModel pool) {
    model_.pool = pool;
    if (model_.pool.blocks != 0) model_.pool.Clear();
    for (std::size_t k = 0; k < model_.cells.size(); ++k) model_.pool.Take(model_.rows, model_.cols);
  }
  void CopyConstruct() {
    a_ = std::make_unique<K>(std::as_const(*a_));
    Refill({model_.pool.grow, 0, 0});
  }
  void Assign() {
    K other;
    PoolModel pool;
    if (random_.Chance(2)) {
      pool.grow = 1 + random_.Below(6);
      other.SetGrowBy(pool.grow - 1);
    }
    other = *a_;
    if (pool.grow == 0) pool.grow = model_.pool.grow;
    a_->Swap(other);
    Refill(pool);
  }
  void MoveOrSwap() {
    K other;
    switch (random_.Below(4)) {
      case 0:
        other = std::move(*a_);
        *a_ = std::move(other);
        break;
      case 1: {
        K taken(std::move(*a_));
        Expect(a_->rows == 0 && a_->HeapReserved() == 0, "a moved-from matrix holds something");
        a_->Swap(taken);
        break;
      }
      case 2:
        a_->Swap(*a_);
        *a_ = *a_;
        break;
      default: {
        K& self = *a_;
        *a_ = std::move(self);
      }
    }
  }
  void Minus() {
    *a_ = -*a_;  // takes the new matrix over
    for (auto& cell : model_.cells) cell.second = -cell.second;
    Refill({model_.pool.grow, 0, 0});
  }
  void Diagonal() {
    if (model_.rows != model_.cols) return;
    DiagonalMatrix d(model_.rows);
    const bool add = random_.Chance(2);
    for (unsigned i = 0; i < model_.rows; ++i) {
      d(i, i) = random_.Chance(2) ? (add ? -model_.Get(i, i) : model_.Get(i, i)) : Value();
    }
    add ? *a_ += d : *a_ -= d;
    for (unsigned i = model_.rows; i-- > 0;) {
      const double x = std::as_const(d)(i, i), old = model_.Get(i, i);
      model_.Put(i, i, add ? old + x : old - x);
    }
  }
  void LowLevel() {
    if (Empty()) return;
    const unsigned i = Row();
    SparseElement* prev = nullptr;
    SparseElement* e = a_->GetFirstInRow(i);
    if (random_.Chance(2)) {
      for (; e != nullptr && e->nextInRow != nullptr && random_.Chance(2); e = e->nextInRow) prev = e;
      if (e == nullptr) return;
      const unsigned j = e->col;
      random_.Chance(2) ? a_->SparseMatrixRemove(prev, e) : a_->SparseMatrixRemove(e);
      model_.Remove(i, j);
    } else {
      while (e != nullptr) prev = std::exchange(e, e->nextInRow);
      const unsigned j = std::max(prev != nullptr ? prev->col + 1 : 0u, kSymmetric ? i : 0u);
      if (j >= model_.cols) return;
      Expect(a_->SparseMatrixInsert(prev, i, j, 0.0) == a_->Cell_Loc(i, j), "the appended element is not found");
      model_.Store(i, j, 0.0);
    }
  }
  void ThroughDense() {
    std::conditional_t<kSymmetric, SymmetricMatrix, RegularMatrix> dense(*a_);
    for (unsigned i = 0; i < model_.rows; ++i) {
      for (unsigned j = 0; j < model_.cols; ++j) {
        Expect(SameBits(std::as_const(dense)(i, j), model_.Get(i, j) + 0.0), "the dense matrix differs");
      }
    }
    *a_ = dense;
    for (auto cell = model_.cells.begin(); cell != model_.cells.end();) {
      cell = cell->second == 0.0 ? model_.cells.erase(cell) : std::next(cell);
    }
    Refill(model_.pool);
  }
  void Read();

  static const Operation kOperations[];
  static const unsigned kCount;

  Random random_;
  std::unique_ptr<K> a_;
  SparseModel model_;
  std::string wrong_;
  const char* name_ = "";
};

}  // namespace quorvel::test

#endif
