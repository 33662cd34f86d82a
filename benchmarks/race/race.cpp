#include "race/race.h"

#include <algorithm>
#include <cmath>

namespace bench {
namespace {

double Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double Timed(Contestant& c, unsigned long calls) {
  const double begin = Seconds();
  c.run(calls);
  return Seconds() - begin;
}

// How many calls make a batch. The first call warms up.
unsigned long CallsPerBatch(Contestant& c, double batch) {
  c.run(1);
  unsigned long calls = 1;
  for (;;) {
    const double taken = Timed(c, calls);
    if (taken >= batch / 2) return std::max(1ul, static_cast<unsigned long>(static_cast<double>(calls) * batch / taken));
    calls *= 2;
  }
}

}  // namespace

std::string Race::disagreement() {
  std::vector<double> expected;
  for (const auto& c : contestants_) {
    const std::vector<double> got = c->values();
    if (c == contestants_.front()) {
      expected = got;
      continue;
    }
    double largest = 0.0, difference = 0.0;
    for (std::size_t k = 0; k < std::min(got.size(), expected.size()); ++k) {
      largest = std::max(largest, std::fabs(expected[k]));
      const double d = std::fabs(got[k] - expected[k]);
      difference = std::isnan(d) ? HUGE_VAL : std::max(difference, d);
    }
    if (got.size() != expected.size() || !(largest > 0.0) || !(difference <= 1e-10 * largest)) {
      return c->who() + " (" + c->how() + ") differs by " + std::to_string(difference / largest) +
             " of the largest element, sizes " + std::to_string(got.size()) + " and " +
             std::to_string(expected.size());
    }
  }
  return {};
}

std::vector<Time> Race::run(const Effort& effort) {
  const std::size_t count = contestants_.size();
  std::vector<unsigned long> calls;
  for (const auto& c : contestants_) calls.push_back(CallsPerBatch(*c, effort.batch));

  std::vector<double> best(count, HUGE_VAL);
  const double begin = Seconds();
  for (unsigned round = 0; round < effort.rounds || Seconds() - begin < effort.point; ++round) {
    for (std::size_t k = 0; k < count; ++k) {
      const std::size_t turn = (k + round) % count;  // another one begins each round
      best[turn] = std::min(best[turn], Timed(*contestants_[turn], calls[turn]) / static_cast<double>(calls[turn]));
    }
  }

  std::vector<Time> times;
  for (std::size_t k = 0; k < count; ++k) times.push_back({contestants_[k]->who(), contestants_[k]->how(), best[k]});
  return times;
}

std::vector<Operation>& Programme() {
  static std::vector<Operation> programme;
  return programme;
}

std::vector<Size> FilterSizes() {
  std::vector<Size> sizes;
  for (const unsigned n : {3u, 6u, 9u, 15u, 24u, 50u, 100u, 200u, 500u}) sizes.push_back({n, 0});
  return sizes;
}

}  // namespace bench
