// What the benchmark programs share: samples, the naive loop's matrices, and the choice of the kernels.
//
// QUORVEL_KERNELS in the environment (portable, sse2, avx2, avx512) runs our side with those kernels. Compare like with
// like: peers with one thread (OPENBLAS_NUM_THREADS=1), several repetitions, interleaved:
//
//   bench_products --benchmark_repetitions=5 --benchmark_enable_random_interleaving=true
//                  --benchmark_report_aggregates_only=true

#ifndef QUORVEL_BENCHMARKS_PEERS_H
#define QUORVEL_BENCHMARKS_PEERS_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "quorvel/quorvel.h"

extern "C" __attribute__((visibility("default"))) inline const char* quorvel_choose_kernels(const char* const* names,
                                                                                          unsigned count) {
  const char* const wanted = std::getenv("QUORVEL_KERNELS");
  for (unsigned k = 0; wanted != nullptr && k < count; ++k) {
    if (std::strcmp(wanted, names[k]) == 0) return names[k];
  }
  if (wanted != nullptr) std::fprintf(stderr, "QUORVEL_KERNELS=%s cannot run here, using %s\n", wanted, names[0]);
  return nullptr;
}

namespace bench {

/// Numbers in [-1, 1), the same in every run.
class Numbers {
 public:
  explicit Numbers(std::uint64_t seed) : state_(seed) {}
  double next() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<double>(static_cast<std::int64_t>(state_)) * 0x1p-63;
  }
  std::vector<double> take(std::size_t count) {
    std::vector<double> x(count);
    for (double& v : x) v = next();
    return x;
  }

 private:
  std::uint64_t state_;
};

inline RegularMatrix Regular(unsigned m, unsigned n, std::uint64_t seed) {
  RegularMatrix a(m, n);
  Numbers numbers(seed);
  for (unsigned k = 0; k < m * n; ++k) a.data()[k] = numbers.next();
  return a;
}

inline SymmetricMatrix Symmetric(unsigned n, std::uint64_t seed) {
  SymmetricMatrix a(n);
  Numbers numbers(seed);
  for (unsigned k = 0; k < a.StoredCount(); ++k) a.data()[k] = numbers.next();
  return a;
}

/// Lets a result live and die as in a user's expression: it is taken over by a value.
template <class K>
void Take(K& result) {
  K taken(result);
  benchmark::DoNotOptimize(taken.data());
}

}  // namespace bench

#endif
