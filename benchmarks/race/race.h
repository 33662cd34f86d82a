// A race: the contestants of one operation and size, timed in turns in one process.
//
// All first compute the result once, and must agree to 1e-10 of its largest element. Then every contestant runs for a
// short batch of calls, one after the other, for many rounds, and the best batch of each counts: whatever else the
// machine does strikes all alike, and only ever makes a batch longer.
//
//   bench::Race race(...);
//   race.add("Quorvel", "a * b", [&](auto use) { RegularMatrix c(a * b); use(c); });
//   race.add("Eigen", "noalias", [&](auto use) { c.noalias() = x * y; use(c); });
//
// A contestant makes its result and hands it to `use`: that keeps the compiler from leaving the work out, or, when the
// results are compared, takes the values (values.h). What a user pays for ours is inside the call: the checks, the
// result's object and array, and their end. The peers write into arrays that exist already, which is their best form.

#ifndef QUORVEL_BENCHMARKS_RACE_H
#define QUORVEL_BENCHMARKS_RACE_H

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "race/values.h"

namespace bench {

/// n is the size that the report has on its axis, m a second one (0 where there is none).
struct Size {
  unsigned n;
  unsigned m;
};

struct Effort {
  double batch;       ///< seconds that one batch should take
  double point;       ///< seconds for all rounds of a race, unless
  unsigned rounds;    ///< these many rounds take longer
};

struct Time {
  std::string who;  ///< whose code: Quorvel, Eigen, OpenBLAS, ...
  std::string how;  ///< which of its forms
  double seconds;   ///< of one call
};

class Contestant {
 public:
  Contestant(const char* who, const char* how) : who_(who), how_(how) {}
  virtual ~Contestant() = default;
  virtual void run(unsigned long calls) = 0;
  virtual std::vector<double> values() = 0;
  const std::string& who() const { return who_; }
  const std::string& how() const { return how_; }

 private:
  std::string who_, how_;
};

namespace detail {

template <class Call>
class Entry final : public Contestant {
 public:
  Entry(const char* who, const char* how, Call call) : Contestant(who, how), call_(std::move(call)) {}
  void run(unsigned long calls) override {
    for (; calls > 0; --calls) call_([](const auto& result) { asm volatile("" : : "g"(&result) : "memory"); });
  }
  std::vector<double> values() override {
    std::vector<double> taken;
    call_([&taken](const auto& result) { taken = Values(result); });
    return taken;
  }

 private:
  Call call_;
};

}  // namespace detail

class Race {
 public:
  template <class Call>
  void add(const char* who, const char* how, Call call) {
    contestants_.push_back(std::make_unique<detail::Entry<Call>>(who, how, std::move(call)));
  }

  /// Empty when all agree, else who does not.
  std::string disagreement();
  std::vector<Time> run(const Effort& effort);

 private:
  std::vector<std::unique_ptr<Contestant>> contestants_;
};

/// One operation of the programme: sets up and runs the races of its sizes. `hold` is called with a race while its
/// operands live.
struct Operation {
  std::string chapter;  ///< of the report: dense, overhead, peak, filter, growth
  std::string name;
  std::vector<Size> sizes;
  std::function<void(Size, const std::function<void(Race&)>& hold)> set_up;
};

std::vector<Operation>& Programme();

/// Enters an operation, at start-up: const bench::Entered product("dense", "A*B", sizes, SetUpProduct);
struct Entered {
  Entered(const char* chapter, const char* name, std::vector<Size> sizes,
          std::function<void(Size, const std::function<void(Race&)>&)> set_up) {
    Programme().push_back({chapter, name, std::move(sizes), std::move(set_up)});
  }
};

/// The orders of the dense operations.
std::vector<Size> FilterSizes();

}  // namespace bench

#endif
