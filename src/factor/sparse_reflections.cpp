#include "factor/sparse_reflections.h"

#include <algorithm>
#include <cstdint>
#include <new>

#include "core/storage.h"
#include "sparse/append.h"
#include "sparse/axis.h"

namespace quorvel::detail {
namespace {

constexpr index_t panel_width = 32;

/// Doubles of a panel of m rows, as wide as an m x n matrix needs it.
std::size_t PanelSize(index_t m, index_t n) {
  const std::uint64_t count = std::uint64_t{m} * std::min(panel_width, n);
  if (count >= max_doubles) throw std::bad_array_new_length();
  return static_cast<std::size_t>(count);
}

/// An element of R, in the order of columns.
struct Entry {
  index_t row;
  index_t col;
  double value;
};

class PanelReducer {
 public:
  PanelReducer(const RegularSparseMatrix& a, SparseReflections& h)
      : a_(a), m_(a.rows), n_(a.cols), h_(h), panel_(PanelSize(m_, n_)), used_(m_), vector_(m_), rows_(m_) {}

  /// Reduces all columns; the elements of R come out by columns.
  std::vector<Entry> reduce() {
    h_.columns.reserve(n_);
    for (first_ = 0; first_ < n_; first_ += width_) {
      width_ = std::min(panel_width, n_ - first_);
      load();
      for (index_t j = 0; j < first_; ++j) reflect_by(j);
      for (index_t p = 0; p < width_; ++p) reduce_column(p);
      emit();
    }
    return std::move(entries_);
  }

 private:
  double* row(index_t i) noexcept { return panel_.data() + std::size_t{i} * width_; }
  ReflectionWork work() noexcept { return {lengths_, sums_, vector_.data(), rows_.data()}; }

  void load() {
    std::fill(panel_.begin(), panel_.end(), 0.0);
    std::fill(used_.begin(), used_.end(), false);
    for (index_t p = 0; p < width_; ++p) {
      lengths_[p] = 0.0;
      for (const SparseElement* e = a_.colHeads[first_ + p]; e != nullptr; e = e->nextInCol) {
        row(e->row)[p] = e->value;
        used_[e->row] = true;
        lengths_[p] += e->value * e->value;
      }
    }
  }

  /// Applies the reflection of an earlier panel's column j.
  void reflect_by(index_t j) {
    const Reflection h = h_.recall(j, used_, work());
    if (h.made) ReflectLanes(panel_.data(), width_, width_, j, h, work());
  }

  void reduce_column(index_t p) {
    const index_t j = first_ + p;
    const Reflection h = ReflectionOfColumn(panel_.data() + p, width_, m_, j, work());
    const std::size_t begin = h_.rows.size();
    for (index_t k = 0; k < h.count; ++k) {
      h_.rows.push_back(rows_[k]);
      h_.values.push_back(vector_[rows_[k]]);
    }
    h_.columns.push_back({h.made, h.beta, begin, h_.rows.size()});
    if (h.made) ReflectLanes(panel_.data() + p, width_, width_ - p, j, h, work());
    ClearDependent(row(j)[p], lengths_[p]);
  }

  void emit() {
    for (index_t p = 0; p < width_; ++p) {
      for (index_t i = 0; i <= first_ + p; ++i) {
        if (row(i)[p] != 0.0) entries_.push_back({i, first_ + p, row(i)[p]});
      }
    }
  }

  const RegularSparseMatrix& a_;
  index_t m_;
  index_t n_;
  SparseReflections& h_;
  std::vector<double> panel_;  // m x width, by rows
  std::vector<bool> used_;     // rows of the panel that may hold something
  std::vector<double> vector_;
  std::vector<index_t> rows_;
  std::vector<Entry> entries_;
  double lengths_[panel_width];
  double sums_[panel_width];
  index_t first_ = 0;
  index_t width_ = 0;
};

/// Entries by columns become rows: counted, then put in place.
void StoreByRows(const std::vector<Entry>& entries, RegularSparseMatrix& r) {
  std::vector<std::size_t> next(std::size_t{r.rows} + 1, 0);
  for (const Entry& e : entries) ++next[e.row + 1];
  for (index_t i = 0; i < r.rows; ++i) next[i + 1] += next[i];
  std::vector<const Entry*> sorted(entries.size());
  for (const Entry& e : entries) sorted[next[e.row]++] = &e;
  RowWriter writer(r);
  SparseElement* last = nullptr;
  for (const Entry* e : sorted) {
    if (last != nullptr && last->row != e->row) last = nullptr;
    last = writer.append(last, e->row, e->col, e->value);
  }
}

}  // namespace

Reflection SparseReflections::recall(index_t j, std::vector<bool>& used, ReflectionWork work) const {
  const Vector& v = columns[j];
  bool meets = used[j];
  for (std::size_t k = v.begin; k < v.end && !meets; ++k) meets = used[rows[k]];
  if (!v.made || !meets) return {false, 0.0, 0};
  used[j] = true;
  Reflection h{true, v.beta, 0};
  for (std::size_t k = v.begin; k < v.end; ++k) {
    const index_t i = rows[k];
    used[i] = true;
    work.rows[h.count++] = i;
    work.vector[i] = values[k];
  }
  return h;
}

void TriangulariseSparse(const RegularSparseMatrix& a, RegularSparseMatrix& r, SparseReflections& h) {
  const std::vector<Entry> entries = PanelReducer(a, h).reduce();
  r.Clear();
  r.SetSize(a.cols, a.cols, false);
  StoreByRows(entries, r);
}

}  // namespace quorvel::detail
