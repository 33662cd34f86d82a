// Which instance of the kernels runs: the widest that the processor and the operating system offer.
//
// A program that links the library may define quorvel_choose_kernels to take another one. The tests and the benchmarks
// do, to compare the instances on one machine; the library itself reads no environment.
#include "ops/kernels/kernels.h"

extern "C" {
/// Given the names of the instances that can run here, the widest first, returns the wanted one, or null for the first.
/// Called once.
__attribute__((weak, visibility("default"))) const char* quorvel_choose_kernels(const char* const* names,
                                                                                unsigned count);
}

namespace quorvel::detail {
namespace {

struct Candidates {
  const Kernels* of[4];
  unsigned count = 0;
  void add(const Kernels& k) noexcept { of[count++] = &k; }
};

// __builtin_cpu_supports also asks whether the operating system saves the registers of an instruction set.
Candidates Runnable() noexcept {
  Candidates found;
#if defined(__x86_64__) && defined(__LP64__)
  __builtin_cpu_init();  // the first product may be formed before the static constructors have run
  // never all ways: the processor is what it is
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl")) {
    found.add(kernels_avx512);
  }
  if (__builtin_cpu_supports("avx2")) found.add(kernels_avx2);  // never all ways: the processor is what it is
  found.add(kernels_sse2);
#endif
  found.add(kernels_portable);
  return found;
}

bool SameName(const char* a, const char* b) noexcept {
  while (*a != '\0' && *a == *b) ++a, ++b;
  return *a == *b;
}

const Kernels& Choose() noexcept {
  const Candidates found = Runnable();
  if (quorvel_choose_kernels != nullptr) {
    const char* names[4];
    for (unsigned k = 0; k < found.count; ++k) names[k] = found.of[k]->name;
    const char* const wanted = quorvel_choose_kernels(names, found.count);
    // never all ways: what the hook returns is one of the names
    for (unsigned k = 0; wanted != nullptr && k < found.count; ++k) {
      if (SameName(wanted, names[k])) return *found.of[k];
    }
  }
  return *found.of[0];
}

}  // namespace

const Kernels* chosen_kernels = nullptr;

const Kernels& ChooseKernels() noexcept {
  static const Kernels& chosen = Choose();  // never all ways: two threads would have to meet here
  __atomic_store_n(&chosen_kernels, &chosen, __ATOMIC_RELAXED);
  return chosen;
}

}  // namespace quorvel::detail
