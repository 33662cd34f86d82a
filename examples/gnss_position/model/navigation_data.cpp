#include "model/navigation_data.h"

#include <cmath>

namespace gnss {

void NavigationData::Add(const Ephemeris& ephemeris) {
  by_prn_[static_cast<std::size_t>(ephemeris.prn)].push_back(ephemeris);
}

std::size_t NavigationData::size() const {
  std::size_t count = 0;
  for (const auto& list : by_prn_) count += list.size();
  return count;
}

const Ephemeris* NavigationData::Find(int prn, const GpsTime& t, Usability& why) const {
  why = Usability::no_ephemeris;
  if (prn < 1 || prn > kMaxPrn) return nullptr;
  const Ephemeris* best = nullptr;
  double best_age = 0.0;
  for (const Ephemeris& candidate : by_prn_[static_cast<std::size_t>(prn)]) {
    const double age = std::fabs(t - candidate.toe);
    if (age > candidate.fit_hours * 1800.0) continue;
    if (!best || age < best_age || (age == best_age && candidate.toe - best->toe > 0.0)) {
      best = &candidate;
      best_age = age;
    }
  }
  if (!best) return nullptr;
  if (best->health != 0) {
    why = Usability::unhealthy;
    return nullptr;
  }
  why = Usability::usable;
  return best;
}

}  // namespace gnss
