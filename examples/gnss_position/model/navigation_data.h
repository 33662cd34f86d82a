// All that the satellites broadcast and the processing needs, whether read from a file or simulated.
#ifndef GNSS_POSITION_MODEL_NAVIGATION_DATA_H
#define GNSS_POSITION_MODEL_NAVIGATION_DATA_H

#include <array>
#include <string>
#include <vector>

#include "model/atmosphere.h"
#include "model/ephemeris.h"

namespace gnss {

constexpr int kMaxPrn = 32;

/// Why a satellite cannot be used at a moment.
enum class Usability { usable, no_ephemeris, unhealthy };

class NavigationData {
 public:
  Ionosphere ionosphere;
  std::vector<std::string> remarks;  ///< "file:line: what was wrong with a record that was left out"

  void Add(const Ephemeris& ephemeris);
  std::size_t size() const;

  /// The message of satellite `prn` whose reference time is nearest to t (the later of two equally near ones), when
  /// t lies in its fit interval; `why` tells when there is none, or when it marks the satellite unhealthy.
  const Ephemeris* Find(int prn, const GpsTime& t, Usability& why) const;

 private:
  std::array<std::vector<Ephemeris>, kMaxPrn + 1> by_prn_;
};

}  // namespace gnss

#endif
