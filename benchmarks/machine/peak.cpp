// How much of the machine the product uses: beside A*B a loop that does as many multiplications and as many additions
// on registers alone, not fused, with the widest vectors that the processor has. Ours / peak says it all: 1.05 is 95 %.

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
// `pairs` multiplications, each with its addition: twelve independent sums, more than the latency. In assembly, so that no
// compiler fuses, moves or spills.
// clang-format off
#define QUORVEL_TWELVE(PAIR)                                                                          \
  PAIR("2", "4") PAIR("3", "5") PAIR("2", "6") PAIR("3", "7") PAIR("2", "8") PAIR("3", "9")           \
  PAIR("2", "10") PAIR("3", "11") PAIR("2", "12") PAIR("3", "13") PAIR("2", "14") PAIR("3", "15")
#define QUORVEL_WIDE(V, T, C) "vmulpd %%" V "0, %%" V "1, %%" V T "\n\tvaddpd %%" V T ", %%" V C ", %%" V C "\n\t"
#define QUORVEL_SSE2(T, C) "movapd %%xmm0, %%xmm" T "\n\tmulpd %%xmm1, %%xmm" T "\n\taddpd %%xmm" T ", %%xmm" C "\n\t"
#define QUORVEL_AVX2(T, C) QUORVEL_WIDE("ymm", T, C)
#define QUORVEL_AVX512(T, C) QUORVEL_WIDE("zmm", T, C)
#define QUORVEL_PEAK(NAME, PAIR, LANES, CLEAN)                                                        \
  double NAME(double pairs) {                                                                         \
    long rounds = static_cast<long>(pairs / (12 * LANES)) + 1;                                        \
    asm volatile("xorpd %%xmm0, %%xmm0\n\txorpd %%xmm1, %%xmm1\n\t"                                  \
                 ".p2align 5\n1:\n\t" QUORVEL_TWELVE(PAIR) "dec %0\n\tjnz 1b\n\t" CLEAN              \
                 : "+r"(rounds)                                                                       \
                 :                                                                                    \
                 : "cc", "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7", "xmm8",      \
                   "xmm9", "xmm10", "xmm11", "xmm12", "xmm13", "xmm14", "xmm15");                     \
    return static_cast<double>(rounds);                                                               \
  }
QUORVEL_PEAK(Sse2, QUORVEL_SSE2, 2, "")
QUORVEL_PEAK(Avx2, QUORVEL_AVX2, 4, "vzeroupper")
QUORVEL_PEAK(Avx512, QUORVEL_AVX512, 8, "vzeroupper")
// clang-format on
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
