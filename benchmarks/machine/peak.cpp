// How much of the machine the product uses: beside A*B a loop that does as many multiplications and as many additions
// on registers alone, not fused, with the widest vectors that the processor has. Ours / peak says it all: 1.05 is 95 %.

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include "race/race.h"
#include "race/samples.h"

namespace {

#if !defined(__x86_64__)
// `pairs` multiplications, each with its addition: eight independent sums.
double Portable(double pairs) {
  double x = 1e-9, y = 0.5, sum[8] = {};
  asm volatile("" : "+m"(x), "+m"(y));
  for (double k = 0; k < pairs; k += 8) {
    for (double& s : sum) {
      s += x * y;
      asm volatile("" : "+m"(s));
    }
  }
  return sum[0];
}
#else
// `pairs` multiplications, each with its addition: twelve independent sums, more than the latency. What the compiler
// cannot see through it can neither fuse nor move out of the loop.
#define QUORVEL_PEAK(NAME, TARGET, VECTOR, SET, MUL, ADD, CONSTRAINT, LANES, SUMS)      \
  __attribute__((target(TARGET))) double NAME(double pairs) {                           \
    VECTOR x = SET(1e-9), y = SET(0.5), c[SUMS], t;                                     \
    for (auto& v : c) v = SET(1.0);                                                     \
    asm volatile("" : "+" CONSTRAINT(x), "+" CONSTRAINT(y));                            \
    const long rounds = static_cast<long>(pairs / (SUMS * LANES));                      \
    for (long r = 0; r < rounds; ++r) {                                                 \
      _Pragma("GCC unroll 32") for (int k = 0; k < SUMS; ++k) {                         \
        t = MUL(x, y);                                                                  \
        asm volatile("" : "+" CONSTRAINT(t));                                           \
        c[k] = ADD(c[k], t);                                                            \
        asm volatile("" : "+" CONSTRAINT(c[k]));                                        \
      }                                                                                 \
    }                                                                                   \
    double total = 0.0;                                                                 \
    for (auto& v : c) {                                                                 \
      double lanes[LANES];                                                              \
      __builtin_memcpy(lanes, &v, sizeof lanes);                                        \
      total += lanes[0];                                                                \
    }                                                                                   \
    return total;                                                                       \
  }
QUORVEL_PEAK(Sse2, "sse2", __m128d, _mm_set1_pd, _mm_mul_pd, _mm_add_pd, "x", 2, 12)
QUORVEL_PEAK(Avx2, "avx2", __m256d, _mm256_set1_pd, _mm256_mul_pd, _mm256_add_pd, "x", 4, 12)
QUORVEL_PEAK(Avx512, "avx512f", __m512d, _mm512_set1_pd, _mm512_mul_pd, _mm512_add_pd, "v", 8, 12)
#undef QUORVEL_PEAK
#endif

double (*Widest())(double) {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx512f")) return Avx512;
  if (__builtin_cpu_supports("avx2")) return Avx2;
  return Sse2;
#else
  return Portable;
#endif
}

void ShareOfPeak(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const RegularMatrix a = bench::Regular(n, n, 1), b = bench::Regular(n, n, 2);
  double (*const peak)(double) = Widest();
  bench::Race race;
  race.add("Quorvel", "operator*", [&](auto use) {
    RegularMatrix c(a * b);
    use(bench::Read{1, 1, [](unsigned, unsigned) { return 1.0; }});
    asm volatile("" : : "g"(c.data()) : "memory");
  });
  race.add("peak", "multiplications and additions on registers", [&](auto use) {
    const double done = peak(static_cast<double>(n) * n * n);
    asm volatile("" : : "g"(done));
    use(bench::Read{1, 1, [](unsigned, unsigned) { return 1.0; }});
  });
  hold(race);
}

const bench::Entered share("peak", "A*B beside the peak", {{200, 0}, {300, 0}, {500, 0}, {700, 0}, {1000, 0}}, ShareOfPeak);

}  // namespace
