// usage: bench [--only TEXT] [--without CHAPTER] [--effort quick|normal] [--list]
//
// Runs the programme, or the operations whose name contains TEXT, without those of a chapter, and prints lines
//
//   chapter;operation;n;m;who;how;seconds
//
// after comment lines ("# key: value") about the machine. Exit status 1: contestants disagreed.
//
// Environment: QUORVEL_KERNELS (portable, sse2, avx2, avx512) chooses the kernels of our side, OPENBLAS_CORETYPE those
// of OpenBLAS.

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "race/lapack.h"
#include "race/race.h"
#include "race/samples.h"

namespace {

const char* ours = "not used";

std::string Processor() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
  }
  return "unknown";
}

int Run(const std::string& only, const std::string& without, const bench::Effort& effort) {
  int status = 0;
  for (const bench::Operation& operation : bench::Programme()) {
    if (operation.name.find(only) == std::string::npos || operation.chapter == without) continue;
    std::fprintf(stderr, "%s\n", operation.name.c_str());
    for (const bench::Size size : operation.sizes) {
      operation.set_up(size, [&](bench::Race& race) {
        const std::string wrong = race.disagreement();
        if (!wrong.empty()) {
          std::fprintf(stderr, "%s, n = %u, m = %u: %s\n", operation.name.c_str(), size.n, size.m, wrong.c_str());
          status = 1;
          return;
        }
        for (const bench::Time& t : race.run(effort)) {
          std::printf("%s;%s;%u;%u;%s;%s;%.4g\n", operation.chapter.c_str(), operation.name.c_str(), size.n, size.m,
                      t.who.c_str(), t.how.c_str(), t.seconds);
        }
        std::fflush(stdout);
      });
    }
  }
  return status;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) const char* quorvel_choose_kernels(const char* const* names,
                                                                                   unsigned count) {
  const char* const wanted = std::getenv("QUORVEL_KERNELS");
  ours = names[0];
  for (unsigned k = 0; wanted != nullptr && k < count; ++k) {
    if (std::strcmp(wanted, names[k]) == 0) ours = names[k];
  }
  if (wanted != nullptr && std::strcmp(wanted, ours) != 0) {
    std::fprintf(stderr, "QUORVEL_KERNELS=%s cannot run here, using %s\n", wanted, ours);
  }
  return ours;
}

int main(int argc, char** argv) {
  std::string only, without;
  bench::Effort effort{100e-6, 60e-3, 7};
  for (int k = 1; k < argc; ++k) {
    const std::string argument = argv[k];
    if (argument == "--list") {
      for (const bench::Operation& operation : bench::Programme()) std::printf("%s\n", operation.name.c_str());
      return 0;
    } else if (argument == "--only" && k + 1 < argc) {
      only = argv[++k];
    } else if (argument == "--without" && k + 1 < argc) {
      without = argv[++k];
    } else if (argument == "--effort" && k + 1 < argc && std::strcmp(argv[k + 1], "normal") == 0) {
      ++k;
    } else if (argument == "--effort" && k + 1 < argc && std::strcmp(argv[k + 1], "quick") == 0) {
      ++k;
      effort = {50e-6, 10e-3, 3};
    } else {
      std::fprintf(stderr, "usage: %s [--only TEXT] [--without CHAPTER] [--effort quick|normal] [--list]\n", argv[0]);
      return 2;
    }
  }
  const RegularMatrix a = bench::Regular(9, 9, 1), b(a * a);  // chooses the kernels
  std::printf("# processor: %s\n# our kernels: %s\n# Eigen: %d.%d.%d, %s\n# OpenBLAS: %s; kernels %s\n",
              Processor().c_str(), ours, EIGEN_WORLD_VERSION, EIGEN_MAJOR_VERSION, EIGEN_MINOR_VERSION,
              Eigen::SimdInstructionSetsInUse(), openblas_get_config(), openblas_get_corename());
  return Run(only, without, effort);
}
