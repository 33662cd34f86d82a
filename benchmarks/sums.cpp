// Sums and transposition beside the naive loop and Eigen. BLAS has neither. Ours pays for all that a user pays for:
// checks, the result object and its array.

#include "peers.h"

#ifdef QUORVEL_HAVE_EIGEN
#include <Eigen/Dense>
#endif

namespace {

unsigned Order(const benchmark::State& state) { return static_cast<unsigned>(state.range(0)); }

void Quorvel_Sum(benchmark::State& state) {
  const RegularMatrix a = bench::Regular(Order(state), Order(state), 1), b = bench::Regular(Order(state), Order(state), 2);
  for (auto _ : state) bench::Take(a + b);
}
void Quorvel_PlusIntoResult(benchmark::State& state) {
  const RegularMatrix a = bench::Regular(Order(state), Order(state), 1), b = bench::Regular(Order(state), Order(state), 2);
  RegularMatrix c(Order(state), Order(state));
  for (auto _ : state) benchmark::DoNotOptimize(Plus(c, a, b).data());
}
void Quorvel_SumOfSymmetric(benchmark::State& state) {
  const SymmetricMatrix a = bench::Symmetric(Order(state), 1), b = bench::Symmetric(Order(state), 2);
  for (auto _ : state) bench::Take(a + b);
}
void Quorvel_Transpose(benchmark::State& state) {
  const RegularMatrix a = bench::Regular(Order(state), Order(state), 1);
  for (auto _ : state) bench::Take(transpose(a));
}

void Naive_Sum(benchmark::State& state) {
  const unsigned n = Order(state);
  const std::vector<double> a = bench::Numbers(1).take(n * n), b = bench::Numbers(2).take(n * n);
  std::vector<double> c(n * n);
  for (auto _ : state) {
    for (unsigned k = 0; k < n * n; ++k) c[k] = a[k] + b[k];
    benchmark::DoNotOptimize(c.data());
    benchmark::ClobberMemory();
  }
}
void Naive_Transpose(benchmark::State& state) {
  const unsigned n = Order(state);
  const std::vector<double> a = bench::Numbers(1).take(n * n);
  std::vector<double> c(n * n);
  for (auto _ : state) {
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) c[j * n + i] = a[i * n + j];
    }
    benchmark::DoNotOptimize(c.data());
    benchmark::ClobberMemory();
  }
}

#ifdef QUORVEL_HAVE_EIGEN

using Eigen::MatrixXd;

void Eigen_Sum(benchmark::State& state) {
  const MatrixXd a = MatrixXd::Random(state.range(0), state.range(0)), b = MatrixXd::Random(state.range(0), state.range(0));
  for (auto _ : state) {
    const MatrixXd c = a + b;
    benchmark::DoNotOptimize(c.data());
  }
}
void Eigen_SumIntoResult(benchmark::State& state) {
  const MatrixXd a = MatrixXd::Random(state.range(0), state.range(0)), b = MatrixXd::Random(state.range(0), state.range(0));
  MatrixXd c(state.range(0), state.range(0));
  for (auto _ : state) {
    c.noalias() = a + b;
    benchmark::DoNotOptimize(c.data());
    benchmark::ClobberMemory();
  }
}
void Eigen_Transpose(benchmark::State& state) {
  const MatrixXd a = MatrixXd::Random(state.range(0), state.range(0));
  for (auto _ : state) {
    const MatrixXd c = a.transpose();
    benchmark::DoNotOptimize(c.data());
  }
}
#endif

void Sizes(benchmark::internal::Benchmark* b) {
  for (const int n : {3, 6, 9, 15, 24, 50, 100, 200, 500}) b->Arg(n);
}

BENCHMARK(Quorvel_Sum)->Apply(Sizes);
BENCHMARK(Naive_Sum)->Apply(Sizes);
#ifdef QUORVEL_HAVE_EIGEN
BENCHMARK(Eigen_Sum)->Apply(Sizes);
#endif
BENCHMARK(Quorvel_PlusIntoResult)->Apply(Sizes);
#ifdef QUORVEL_HAVE_EIGEN
BENCHMARK(Eigen_SumIntoResult)->Apply(Sizes);
#endif
BENCHMARK(Quorvel_SumOfSymmetric)->Apply(Sizes);
BENCHMARK(Quorvel_Transpose)->Apply(Sizes);
BENCHMARK(Naive_Transpose)->Apply(Sizes);
#ifdef QUORVEL_HAVE_EIGEN
BENCHMARK(Eigen_Transpose)->Apply(Sizes);
#endif

}  // namespace
