// A car in a city: single-point fixes with errors of tens of metres, filtered by a position-velocity model.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "data/files.h"
#include "quorvel/quorvel.h"

namespace quorvel::test::data {
namespace {

struct Fix {
  double time;                 // seconds of the day
  double blh[3];               // rad, rad, m
  double sd_north, sd_east;    // m
  double v_north, v_east;      // m/s
  double sd_v_north, sd_v_east;
};

std::vector<Fix> Read(const std::string& name) {
  std::vector<Fix> fixes;
  constexpr double degree = 0.017453292519943295;
  for (const std::string& line : Lines(name)) {
    if (line.empty() || line[0] == '%') continue;
    const std::string clock = line.substr(11, 12);
    const std::vector<double> v = Numbers(line.substr(23));
    EXPECT_GE(v.size(), 13u) << line;
    Fix fix{};
    fix.time = 3600 * Number(clock.substr(0, 2)) + 60 * Number(clock.substr(3, 2)) + Number(clock.substr(6));
    fix.blh[0] = v[0] * degree;
    fix.blh[1] = v[1] * degree;
    fix.blh[2] = v[2];
    fix.sd_north = v[5];
    fix.sd_east = v[6];
    if (v.size() >= 19) {
      fix.v_north = v[13];
      fix.v_east = v[14];
      fix.sd_v_north = v[16];
      fix.sd_v_east = v[17];
    }
    fixes.push_back(fix);
  }
  return fixes;
}

// Position and velocity along one axis.
class AxisFilter {
 public:
  void Start(double position, double variance) {
    x_ = RegularMatrix(2, 1);
    x_(0) = position;
    P_ = SymmetricMatrix(2);
    P_(0, 0) = variance;
    P_(1, 1) = 100.0;
  }
  void Predict(double dt, double sigma) {
    UpperTriangularMatrix Phi;
    SymmetricMatrix Q;
    Phi_PV(Phi, dt);
    Q_PV(Q, dt, sigma);
    x_ = Phi * x_;
    P_ = AQAT(Phi, P_) + Q;
  }
  // Component k measured with a variance; refused when the innovation is beyond its bound.
  bool Update(unsigned k, double value, double variance, double bound) {
    RegularMatrix h(1, 2), K;
    h(k) = 1.0;
    const double innovation = value - x_(k);
    if (innovation * innovation > bound * bound * (P_(k, k) + variance)) return false;
    UpperTriangularMatrix U;
    DiagonalMatrix D;
    UDFactor(U, D, P_);
    UDMeasurementUpdate(U, D, h, variance, K);
    x_ += K * innovation;
    P_ = AQAT(U, SymmetricMatrix(D));
    return true;
  }
  double position() const { return x_(0); }

 private:
  RegularMatrix x_;
  SymmetricMatrix P_;
};

TEST(TrackData, CarInACity) {
  NEEDS_DATA("tracks/nagoya2023_rover_1Hz_spp.pos");
  NEEDS_DATA("tracks/nagoya2023_reference_1Hz.pos");
  const std::vector<Fix> fixes = Read("tracks/nagoya2023_rover_1Hz_spp.pos");
  std::map<double, Fix> reference;
  for (const Fix& fix : Read("tracks/nagoya2023_reference_1Hz.pos")) reference[fix.time] = fix;
  ASSERT_EQ(fixes.size(), 550u);

  // East and north of the first fix: d(enu)/d(blh) is constant enough over a few kilometres.
  const Fix& origin = fixes[0];
  const RegularMatrix enu_blh(denu_dxyz(origin.blh[0], origin.blh[1]) *
                              dxyz_dblh(origin.blh[0], origin.blh[1], origin.blh[2], 6378137.0, 6.69437999014e-3));
  const auto local = [&](const Fix& fix, unsigned axis) {
    return enu_blh(axis, 0) * (fix.blh[0] - origin.blh[0]) + enu_blh(axis, 1) * (fix.blh[1] - origin.blh[1]);
  };

  AxisFilter east, north;
  double last = 0, raw = 0, filtered = 0;
  int count = 0, refused = 0;
  for (const Fix& fix : fixes) {
    const double e = local(fix, 0), n = local(fix, 1);
    if (count == 0) {
      east.Start(e, fix.sd_east * fix.sd_east);
      north.Start(n, fix.sd_north * fix.sd_north);
    } else {
      east.Predict(fix.time - last, 1.5);
      north.Predict(fix.time - last, 1.5);
    }
    last = fix.time;
    // Reflected signals make the fixes worse than their standard deviations say, and their errors last for seconds.
    refused += !east.Update(0, e, 100 * fix.sd_east * fix.sd_east, 3.0);
    refused += !north.Update(0, n, 100 * fix.sd_north * fix.sd_north, 3.0);
    if (fix.sd_v_east > 0) {
      refused += !east.Update(1, fix.v_east, 4 * fix.sd_v_east * fix.sd_v_east, 5.0);
      refused += !north.Update(1, fix.v_north, 4 * fix.sd_v_north * fix.sd_v_north, 5.0);
    }
    const auto truth = reference.find(fix.time);
    ASSERT_NE(truth, reference.end()) << fix.time;
    const double te = local(truth->second, 0), tn = local(truth->second, 1);
    raw += (e - te) * (e - te) + (n - tn) * (n - tn);
    filtered += std::pow(east.position() - te, 2) + std::pow(north.position() - tn, 2);
    ++count;
  }
  const double raw_rms = std::sqrt(raw / count), filtered_rms = std::sqrt(filtered / count);
  std::printf("  Nagoya: %d fixes, horizontal rms %.2f m raw, %.2f m filtered, %d updates refused\n", count, raw_rms,
              filtered_rms, refused);
  EXPECT_NEAR(raw_rms, 14.3, 0.05);
  EXPECT_LE(filtered_rms, 12.5);
}

}  // namespace
}  // namespace quorvel::test::data
