// How the cost of sparse operations grows with the number of stored elements, from 10^3 to 10^6, beside Eigen's
// compressed sparse matrix in the same run. The counter "/element" is the time per stored element: it stays the same
// while an operation is linear and its data fit a cache, and grows by what memory costs beyond that.
//
//   bench_sparse_growth --benchmark_filter=Copy
//
// Shapes. Band: ten elements around the diagonal of each row; neighbours in a column lie near each other in memory.
// Scattered: ten elements anywhere in each row; every step along a column is a jump, the worst case of linked lists.
// Tall: four full columns; walking a column for each element would be quadratic. The linked lists pay for pointers, the
// compressed arrays for moving everything when one row goes. What is compared is what a user gets: results are made and
// destroyed inside the loop.

#include <algorithm>
#include <vector>

#include "peers.h"

#ifdef QUORVEL_HAVE_EIGEN
#include <Eigen/SparseCore>
#endif

namespace {

/// The columns of every row, ascending; per_row of them in each.
struct Shape {
  unsigned rows;
  unsigned cols;
  unsigned per_row;
  std::vector<unsigned> columns;
};

// Upper is the part of a shape on and above the diagonal, with as many elements.
enum class Part { kWhole, kUpper };

Shape Band(unsigned count, Part part) {
  const unsigned n = count / 10;
  Shape shape{n, n, 10, {}};
  for (unsigned i = 0; i < n; ++i) {
    const unsigned wanted = part == Part::kUpper ? i : i < 5 ? 0 : i - 5;
    for (unsigned k = 0; k < 10; ++k)
      shape.columns.push_back(part == Part::kUpper || wanted + 10 <= n ? wanted + k : n - 10 + k);
  }
  return shape;
}

Shape Scattered(unsigned count, Part part) {
  const unsigned n = count / 10;
  Shape shape{n, n, 10, {}};
  bench::Numbers numbers(1);
  for (unsigned i = 0; i < n; ++i) {
    // One column in each of ten equal parts of the row.
    const unsigned first = part == Part::kUpper ? i : 0, width = std::max(1u, (n - first) / 10);
    for (unsigned k = 0; k < 10; ++k) {
      shape.columns.push_back(first + k * width + static_cast<unsigned>((numbers.next() + 1.0) * 0.5 * width));
    }
  }
  return shape;
}

Shape Tall(unsigned count, Part) {
  Shape shape{count / 4, 4, 4, {}};
  for (unsigned k = 0; k < shape.rows * 4; ++k) shape.columns.push_back(k % 4);
  return shape;
}

using Make = Shape (*)(unsigned count, Part part);

Shape Of(Make make, const benchmark::State& state, Part part = Part::kWhole) {
  return make(static_cast<unsigned>(state.range(0)), part);
}

void PerElement(benchmark::State& state) {
  state.counters["/element"] = benchmark::Counter(
      static_cast<double>(state.range(0)), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// insert(row, column) for every element of the shape that lies inside.
template <class NewRow, class Insert>
void ForEach(const Shape& shape, NewRow new_row, Insert insert) {
  const unsigned* column = shape.columns.data();
  for (unsigned i = 0; i < shape.rows; ++i) {
    new_row();
    for (unsigned k = 0; k < shape.per_row; ++k, ++column) {
      if (*column < shape.cols) insert(i, *column);
    }
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Ours

template <class K>
K Filled(const Shape& shape) {
  K a(shape.rows, shape.cols);
  a.SetGrowBy(1000);
  SparseElement* prev = nullptr;
  ForEach(
      shape, [&] { prev = nullptr; }, [&](unsigned i, unsigned j) { prev = a.SparseMatrixInsert(prev, i, j, 1.0); });
  return a;
}

template <Make make>
void Quorvel_Build(benchmark::State& state) {
  const Shape shape = Of(make, state);
  for (auto _ : state) benchmark::DoNotOptimize(Filled<RegularSparseMatrix>(shape).used);
  PerElement(state);
}

template <Make make>
void Quorvel_Copy(benchmark::State& state) {
  RegularSparseMatrix a = Filled<RegularSparseMatrix>(Of(make, state));
  for (auto _ : state) benchmark::DoNotOptimize(RegularSparseMatrix(a).used);
  PerElement(state);
}

void Quorvel_FillTall(benchmark::State& state) {
  const unsigned rows = static_cast<unsigned>(state.range(0)) / 4;
  for (auto _ : state) {
    RegularSparseMatrix a(rows, 4);
    a.SetGrowBy(1000);
    benchmark::DoNotOptimize((a = 1.0).used);
  }
  PerElement(state);
}

void Quorvel_CopyTall(benchmark::State& state) {
  RegularSparseMatrix a(static_cast<unsigned>(state.range(0)) / 4, 4);
  a.SetGrowBy(1000);
  a = 1.0;
  for (auto _ : state) benchmark::DoNotOptimize(RegularSparseMatrix(a).used);
  PerElement(state);
}

/// Each element and its mirror image: what a transposition costs.
template <Make make>
void Quorvel_BothTriangles(benchmark::State& state) {
  const SymmetricSparseMatrix a = Filled<SymmetricSparseMatrix>(Of(make, state, Part::kUpper));
  for (auto _ : state) benchmark::DoNotOptimize(RegularSparseMatrix(a).used);
  PerElement(state);
}

template <Make make>
void Quorvel_RemoveHalfTheRows(benchmark::State& state) {
  RegularSparseMatrix a = Filled<RegularSparseMatrix>(Of(make, state));
  for (auto _ : state) {
    state.PauseTiming();
    {
      RegularSparseMatrix b(a);
      state.ResumeTiming();
      b.RemoveRows(b.rows / 4, b.rows / 2);
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
  PerElement(state);
}

void Grow(benchmark::internal::Benchmark* b) {
  b->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK_TEMPLATE(Quorvel_Build, Band)->Apply(Grow);
BENCHMARK_TEMPLATE(Quorvel_Build, Scattered)->Apply(Grow);
BENCHMARK_TEMPLATE(Quorvel_Copy, Band)->Apply(Grow);
BENCHMARK_TEMPLATE(Quorvel_Copy, Scattered)->Apply(Grow);
BENCHMARK(Quorvel_CopyTall)->Apply(Grow);
BENCHMARK(Quorvel_FillTall)->Apply(Grow);
BENCHMARK_TEMPLATE(Quorvel_BothTriangles, Band)->Apply(Grow);
BENCHMARK_TEMPLATE(Quorvel_BothTriangles, Scattered)->Apply(Grow);
BENCHMARK_TEMPLATE(Quorvel_RemoveHalfTheRows, Band)->Apply(Grow);
BENCHMARK_TEMPLATE(Quorvel_RemoveHalfTheRows, Scattered)->Apply(Grow);

// ---------------------------------------------------------------------------------------------------------------------
// Eigen, row-major

#ifdef QUORVEL_HAVE_EIGEN

using EigenSparse = Eigen::SparseMatrix<double, Eigen::RowMajor>;

EigenSparse EigenOf(const Shape& shape) {
  EigenSparse a(shape.rows, shape.cols);
  a.reserve(Eigen::VectorXi::Constant(shape.rows, static_cast<int>(shape.per_row)));
  ForEach(
      shape, [] {}, [&a](unsigned i, unsigned j) { a.insert(i, j) = 1.0; });
  a.makeCompressed();
  return a;
}

template <Make make>
void Eigen_Build(benchmark::State& state) {
  const Shape shape = Of(make, state);
  for (auto _ : state) benchmark::DoNotOptimize(EigenOf(shape).nonZeros());
  PerElement(state);
}

template <Make make>
void Eigen_Copy(benchmark::State& state) {
  const EigenSparse a = EigenOf(Of(make, state));
  for (auto _ : state) benchmark::DoNotOptimize(EigenSparse(a).nonZeros());
  PerElement(state);
}

template <Make make>
void Eigen_BothTriangles(benchmark::State& state) {
  const EigenSparse a = EigenOf(Of(make, state, Part::kUpper));
  for (auto _ : state) {
    const EigenSparse both = a.selfadjointView<Eigen::Upper>();
    benchmark::DoNotOptimize(both.nonZeros());
  }
  PerElement(state);
}

/// There is no removal of rows; this drops their elements and leaves the size.
template <Make make>
void Eigen_RemoveHalfTheRows(benchmark::State& state) {
  const EigenSparse a = EigenOf(Of(make, state));
  const Eigen::Index first = a.rows() / 4, end = first + a.rows() / 2;
  for (auto _ : state) {
    state.PauseTiming();
    {
      EigenSparse b(a);
      state.ResumeTiming();
      b.prune([first, end](Eigen::Index i, Eigen::Index, double) { return i < first || i >= end; });
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
  PerElement(state);
}

BENCHMARK_TEMPLATE(Eigen_Build, Band)->Apply(Grow);
BENCHMARK_TEMPLATE(Eigen_Build, Scattered)->Apply(Grow);
BENCHMARK_TEMPLATE(Eigen_Build, Tall)->Apply(Grow);
BENCHMARK_TEMPLATE(Eigen_Copy, Band)->Apply(Grow);
BENCHMARK_TEMPLATE(Eigen_Copy, Scattered)->Apply(Grow);
BENCHMARK_TEMPLATE(Eigen_Copy, Tall)->Apply(Grow);
BENCHMARK_TEMPLATE(Eigen_BothTriangles, Band)->Apply(Grow);
BENCHMARK_TEMPLATE(Eigen_BothTriangles, Scattered)->Apply(Grow);
BENCHMARK_TEMPLATE(Eigen_RemoveHalfTheRows, Band)->Apply(Grow);
BENCHMARK_TEMPLATE(Eigen_RemoveHalfTheRows, Scattered)->Apply(Grow);

#endif

}  // namespace
