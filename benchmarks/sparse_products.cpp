// Sparse products at growing size, beside Eigen's sparse matrices: about eight stored elements per row, from 10^3 to
// 10^6 of them. The time should grow with the number of multiplications, which is proportional to the elements.

#include "peers.h"

#ifdef QUORVEL_HAVE_EIGEN
#include <Eigen/Sparse>
#endif

namespace {

constexpr unsigned kPerRow = 8;

unsigned Order(const benchmark::State& state) { return static_cast<unsigned>(state.range(0)) / kPerRow; }

// Calls put(i, j, value) for the elements of row after row, columns ascending.
template <class Put>
void ForEachElement(unsigned n, std::uint64_t seed, Put put) {
  bench::Numbers numbers(seed);
  const unsigned step = n / kPerRow;
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned q = 0; q < kPerRow; ++q) {
      const double position = (numbers.next() + 1.0) / 2.0 * step;
      put(i, q * step + static_cast<unsigned>(position), numbers.next());
    }
  }
}

RegularSparseMatrix Sparse(unsigned n, std::uint64_t seed) {
  RegularSparseMatrix a(n, n);
  a.SetGrowBy(4096);
  unsigned row = n;
  SparseElement* previous = nullptr;
  ForEachElement(n, seed, [&](unsigned i, unsigned j, double v) {
    if (i != row) previous = nullptr;
    row = i;
    previous = a.SparseMatrixInsert(previous, i, j, v);
  });
  return a;
}

void Quorvel_SparseTimesSparse(benchmark::State& state) {
  const RegularSparseMatrix a = Sparse(Order(state), 1), b = Sparse(Order(state), 2);
  for (auto _ : state) {
    RegularSparseMatrix c(a * b);
    benchmark::DoNotOptimize(c.used);
  }
  state.SetComplexityN(state.range(0));
}

void Quorvel_SparseTimesVectors(benchmark::State& state) {
  const RegularSparseMatrix a = Sparse(Order(state), 1);
  const RegularMatrix b = bench::Regular(Order(state), 8, 2);
  for (auto _ : state) bench::Take(a * b);
  state.SetComplexityN(state.range(0));
}

#ifdef QUORVEL_HAVE_EIGEN
Eigen::SparseMatrix<double, Eigen::RowMajor> EigenSparse(unsigned n, std::uint64_t seed) {
  std::vector<Eigen::Triplet<double>> elements;
  ForEachElement(n, seed, [&](unsigned i, unsigned j, double v) {
    elements.emplace_back(static_cast<int>(i), static_cast<int>(j), v);
  });
  Eigen::SparseMatrix<double, Eigen::RowMajor> a(static_cast<int>(n), static_cast<int>(n));
  a.setFromTriplets(elements.begin(), elements.end());
  return a;
}

void Eigen_SparseTimesSparse(benchmark::State& state) {
  const auto a = EigenSparse(Order(state), 1), b = EigenSparse(Order(state), 2);
  for (auto _ : state) {
    Eigen::SparseMatrix<double, Eigen::RowMajor> c = a * b;
    benchmark::DoNotOptimize(c.nonZeros());
  }
  state.SetComplexityN(state.range(0));
}

void Eigen_SparseTimesVectors(benchmark::State& state) {
  const auto a = EigenSparse(Order(state), 1);
  const Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor> b =
      Eigen::MatrixXd::Random(a.rows(), 8);
  for (auto _ : state) {
    Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor> c = a * b;
    benchmark::DoNotOptimize(c.data());
  }
  state.SetComplexityN(state.range(0));
}
#endif

}  // namespace

#define QUORVEL_BENCH(NAME) BENCHMARK(NAME)->RangeMultiplier(10)->Range(1000, 1000000)->Complexity()
QUORVEL_BENCH(Quorvel_SparseTimesSparse);
QUORVEL_BENCH(Quorvel_SparseTimesVectors);
#ifdef QUORVEL_HAVE_EIGEN
QUORVEL_BENCH(Eigen_SparseTimesSparse);
QUORVEL_BENCH(Eigen_SparseTimesVectors);
#endif
