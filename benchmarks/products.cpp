// Products and structured products beside the naive loop, Eigen and BLAS, at filter sizes and beyond. Ours pays for
// all that a user pays for: checks, the result object and its array.

#include "peers.h"

#ifdef QUORVEL_HAVE_EIGEN
#include <Eigen/Dense>
#endif
#ifdef QUORVEL_HAVE_LAPACK
extern "C" {
void dgemm_(const char*, const char*, const int*, const int*, const int*, const double*, const double*, const int*,
            const double*, const int*, const double*, double*, const int*);
void dsyrk_(const char*, const char*, const int*, const int*, const double*, const double*, const int*, const double*,
            double*, const int*);
void dsymm_(const char*, const char*, const int*, const int*, const double*, const double*, const int*, const double*,
            const int*, const double*, double*, const int*);
void dspmv_(const char*, const int*, const double*, const double*, const double*, const int*, const double*, double*,
            const int*);
double ddot_(const int*, const double*, const int*, const double*, const int*);
}
#endif

namespace {

unsigned Order(const benchmark::State& state) { return static_cast<unsigned>(state.range(0)); }

// ---------------------------------------------------------------------------------------------------------------------
// Ours

void Quorvel_Mult(benchmark::State& state) {
  const unsigned n = Order(state);
  const RegularMatrix a = bench::Regular(n, n, 1), b = bench::Regular(n, n, 2);
  for (auto _ : state) bench::Take(a * b);
}
void Quorvel_ATA(benchmark::State& state) {
  const RegularMatrix a = bench::Regular(Order(state), Order(state), 1);
  for (auto _ : state) bench::Take(ATA(a));
}
void Quorvel_AAT(benchmark::State& state) {
  const RegularMatrix a = bench::Regular(Order(state), Order(state), 1);
  for (auto _ : state) bench::Take(AAT(a));
}
void Quorvel_ATB(benchmark::State& state) {
  const unsigned n = Order(state);
  const RegularMatrix a = bench::Regular(n, n, 1), b = bench::Regular(n, n, 2);
  for (auto _ : state) bench::Take(ATB(a, b));
}
void Quorvel_ABT(benchmark::State& state) {
  const unsigned n = Order(state);
  const RegularMatrix a = bench::Regular(n, n, 1), b = bench::Regular(n, n, 2);
  for (auto _ : state) bench::Take(ABT(a, b));
}
void Quorvel_ATPA(benchmark::State& state) {
  const RegularMatrix a = bench::Regular(Order(state), Order(state), 1);
  const SymmetricMatrix p = bench::Symmetric(Order(state), 2);
  for (auto _ : state) bench::Take(ATPA(a, p));
}
void Quorvel_AQAT(benchmark::State& state) {
  const RegularMatrix a = bench::Regular(Order(state), Order(state), 1);
  const SymmetricMatrix q = bench::Symmetric(Order(state), 2);
  for (auto _ : state) bench::Take(AQAT(a, q));
}
void Quorvel_SQS(benchmark::State& state) {
  const SymmetricMatrix s = bench::Symmetric(Order(state), 1), q = bench::Symmetric(Order(state), 2);
  for (auto _ : state) bench::Take(SQS(s, q));
}
void Quorvel_PWeightedNorm(benchmark::State& state) {
  const RegularMatrix v = bench::Regular(Order(state), 1, 1);
  const SymmetricMatrix p = bench::Symmetric(Order(state), 2);
  for (auto _ : state) benchmark::DoNotOptimize(PWeightedNorm(v, p));
}
void Quorvel_UTU(benchmark::State& state) {
  UpperTriangularMatrix u(Order(state));
  bench::Numbers numbers(1);
  for (unsigned k = 0; k < u.StoredCount(); ++k) u.data()[k] = numbers.next();
  for (auto _ : state) bench::Take(UTU(u));
}
void Quorvel_SymmetricTimesRegular(benchmark::State& state) {
  const SymmetricMatrix s = bench::Symmetric(Order(state), 1);
  const RegularMatrix b = bench::Regular(Order(state), Order(state), 2);
  for (auto _ : state) bench::Take(s * b);
}

// ---------------------------------------------------------------------------------------------------------------------
// The naive loops, on arrays that exist already

void Naive_Mult(benchmark::State& state) {
  const unsigned n = Order(state);
  const std::vector<double> a = bench::Numbers(1).take(n * n), b = bench::Numbers(2).take(n * n);
  std::vector<double> c(n * n);
  for (auto _ : state) {
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) {
        double sum = 0.0;
        for (unsigned k = 0; k < n; ++k) sum += a[i * n + k] * b[k * n + j];
        c[i * n + j] = sum;
      }
    }
    benchmark::DoNotOptimize(c.data());
    benchmark::ClobberMemory();
  }
}
void Naive_ATPA(benchmark::State& state) {
  const unsigned n = Order(state);
  const std::vector<double> a = bench::Numbers(1).take(n * n), p = bench::Numbers(2).take(n * n);
  std::vector<double> w(n), s(n * n);
  for (auto _ : state) {
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned k = 0; k < n; ++k) {
        double sum = 0.0;
        for (unsigned t = 0; t < n; ++t) sum += a[t * n + i] * p[t * n + k];
        w[k] = sum;
      }
      for (unsigned j = i; j < n; ++j) {
        double sum = 0.0;
        for (unsigned t = 0; t < n; ++t) sum += w[t] * a[t * n + j];
        s[i * n + j] = sum;
      }
    }
    benchmark::DoNotOptimize(s.data());
    benchmark::ClobberMemory();
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Eigen: a new result each time, as with ours; self-adjoint views where they apply

#ifdef QUORVEL_HAVE_EIGEN
using Dense = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

Dense Random(unsigned n, std::uint64_t seed) {
  Dense a(n, n);
  bench::Numbers numbers(seed);
  for (Eigen::Index k = 0; k < a.size(); ++k) a.data()[k] = numbers.next();
  return a;
}

void Eigen_Mult(benchmark::State& state) {
  const Dense a = Random(Order(state), 1), b = Random(Order(state), 2);
  for (auto _ : state) {
    Dense c(a.rows(), a.cols());
    c.noalias() = a * b;
    benchmark::DoNotOptimize(c.data());
  }
}
void Eigen_ATA(benchmark::State& state) {
  const Dense a = Random(Order(state), 1);
  for (auto _ : state) {
    Dense c = Dense::Zero(a.cols(), a.cols());
    c.selfadjointView<Eigen::Upper>().rankUpdate(a.transpose());
    benchmark::DoNotOptimize(c.data());
  }
}
void Eigen_ATPA(benchmark::State& state) {
  const Dense a = Random(Order(state), 1), p = Random(Order(state), 2);
  for (auto _ : state) {
    Dense w(a.rows(), a.cols()), c(a.cols(), a.cols());
    w.noalias() = p * a;
    c.triangularView<Eigen::Upper>() = a.transpose() * w;
    benchmark::DoNotOptimize(c.data());
  }
}
void Eigen_AQAT(benchmark::State& state) {
  const Dense a = Random(Order(state), 1), q = Random(Order(state), 2);
  for (auto _ : state) {
    Dense w(a.rows(), a.cols()), c(a.rows(), a.rows());
    w.noalias() = a * q;
    c.triangularView<Eigen::Upper>() = w * a.transpose();
    benchmark::DoNotOptimize(c.data());
  }
}
void Eigen_PWeightedNorm(benchmark::State& state) {
  const Dense p = Random(Order(state), 2);
  const Eigen::VectorXd v = Eigen::VectorXd::LinSpaced(p.rows(), -1.0, 1.0);
  for (auto _ : state) benchmark::DoNotOptimize(v.dot(p.selfadjointView<Eigen::Upper>() * v));
}
#endif

// ---------------------------------------------------------------------------------------------------------------------
// BLAS; column-major, so the factors change places

#ifdef QUORVEL_HAVE_LAPACK
const double one = 1.0, zero = 0.0;

void Blas_Mult(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::size_t size = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
  const std::vector<double> a = bench::Numbers(1).take(size), b = bench::Numbers(2).take(size);
  for (auto _ : state) {
    std::vector<double> c(size);
    dgemm_("N", "N", &n, &n, &n, &one, b.data(), &n, a.data(), &n, &zero, c.data(), &n);
    benchmark::DoNotOptimize(c.data());
  }
}
void Blas_ATA(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::size_t size = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
  const std::vector<double> a = bench::Numbers(1).take(size);
  for (auto _ : state) {
    std::vector<double> c(size);
    dsyrk_("L", "N", &n, &n, &one, a.data(), &n, &zero, c.data(), &n);
    benchmark::DoNotOptimize(c.data());
  }
}
void Blas_ATPA(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::size_t size = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
  const std::vector<double> a = bench::Numbers(1).take(size), p = bench::Numbers(2).take(size);
  for (auto _ : state) {
    std::vector<double> w(size), c(size);
    dsymm_("R", "L", &n, &n, &one, p.data(), &n, a.data(), &n, &zero, w.data(), &n);
    dgemm_("N", "T", &n, &n, &n, &one, w.data(), &n, a.data(), &n, &zero, c.data(), &n);
    benchmark::DoNotOptimize(c.data());
  }
}
void Blas_PWeightedNorm(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0)), step = 1;
  const std::size_t count = static_cast<std::size_t>(n);
  const std::vector<double> p = bench::Numbers(1).take(count * (count + 1) / 2), v = bench::Numbers(2).take(count);
  std::vector<double> w(count);
  for (auto _ : state) {
    dspmv_("L", &n, &one, p.data(), v.data(), &step, &zero, w.data(), &step);
    benchmark::DoNotOptimize(ddot_(&n, v.data(), &step, w.data(), &step));
  }
}
#endif

void Sizes(benchmark::internal::Benchmark* b) {
  for (const int n : {3, 6, 9, 15, 24, 50, 100, 200, 500}) b->Arg(n);
}

}  // namespace

#define QUORVEL_BENCH(NAME) BENCHMARK(NAME)->Apply(Sizes)
QUORVEL_BENCH(Quorvel_Mult);
QUORVEL_BENCH(Quorvel_ATA);
QUORVEL_BENCH(Quorvel_AAT);
QUORVEL_BENCH(Quorvel_ATB);
QUORVEL_BENCH(Quorvel_ABT);
QUORVEL_BENCH(Quorvel_ATPA);
QUORVEL_BENCH(Quorvel_AQAT);
QUORVEL_BENCH(Quorvel_SQS);
QUORVEL_BENCH(Quorvel_UTU);
QUORVEL_BENCH(Quorvel_SymmetricTimesRegular);
QUORVEL_BENCH(Quorvel_PWeightedNorm);
QUORVEL_BENCH(Naive_Mult);
QUORVEL_BENCH(Naive_ATPA);
#ifdef QUORVEL_HAVE_EIGEN
QUORVEL_BENCH(Eigen_Mult);
QUORVEL_BENCH(Eigen_ATA);
QUORVEL_BENCH(Eigen_ATPA);
QUORVEL_BENCH(Eigen_AQAT);
QUORVEL_BENCH(Eigen_PWeightedNorm);
#endif
#ifdef QUORVEL_HAVE_LAPACK
QUORVEL_BENCH(Blas_Mult);
QUORVEL_BENCH(Blas_ATA);
QUORVEL_BENCH(Blas_ATPA);
QUORVEL_BENCH(Blas_PWeightedNorm);
#endif
