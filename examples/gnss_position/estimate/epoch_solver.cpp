#include "estimate/epoch_solver.h"

#include <algorithm>
#include <cmath>

namespace gnss {
namespace {

using Index = Matrix::size_type;
constexpr Index kUnknowns = 4;  // x, y, z, clock

struct Solution {
  Vector3 position{};
  double clock = 0.0;

  // Adds a correction (dx, dy, dz, dc); returns the length of its first three.
  double Add(const RegularMatrix& correction) {
    const Vector3 step = {correction(0), correction(1), correction(2)};
    position = position + step;
    clock += correction(3);
    return Length(step);
  }
};

DiagonalMatrix Diagonal(const std::vector<double>& sigma, double power) {
  DiagonalMatrix d(static_cast<Index>(sigma.size()));
  for (Index i = 0; i < d.nrows(); ++i) d(i, i) = std::pow(sigma[i], power);
  return d;
}

// The correction that minimises sum |misclosure_i - (A x)_i| / sigma_i:
//   L1Regression(S A, S y, x), S = diag(1 / sigma).
// The minimum passes exactly through four of the ranges and leaves the wrong ones aside, however wrong they are.
bool LeastAbsolute(const RangeEquations& equations, RegularMatrix& correction) {
  const DiagonalMatrix scale = Diagonal(equations.sigma, -1.0);
  const RegularMatrix a(scale * equations.design);
  const RegularMatrix y(scale * equations.misclosure);
  if (!y.AllElementsOnInterval(-1e12, 1e12)) return false;  // the simplex method must not meet a NaN
  correction.SetSize(kUnknowns, 1, false);
  return L1Regression(a, y, correction) == 0;
}

// The correction that minimises sum (misclosure_i - (A x)_i)^2 / sigma_i^2:
//   x = (A' W A)^-1 A' W y,  W = diag(1 / sigma^2)  --  ATPA, ATB, InverseByCholesky.
bool LeastSquares(const RangeEquations& equations, RegularMatrix& correction) {
  const DiagonalMatrix weight = Diagonal(equations.sigma, -2.0);
  SymmetricMatrix normal(ATPA(equations.design, weight));
  const RegularMatrix right(ATB(equations.design, weight * equations.misclosure));
  const SymmetricMatrix inverse(InverseByCholesky(normal, 1e-12));
  if (inverse.nsing() != 0) return false;
  correction = inverse * right;
  return true;
}

// Repeats linearising at the present solution and correcting it by `method` until the correction is negligible.
template <typename Method>
bool Iterate(const std::vector<Sight>& sights, const GpsTime& time, const Ionosphere& ionosphere, Solution& solution,
             double enough, Method method) {
  RegularMatrix correction;
  for (int i = 0; i < 12; ++i) {
    const RangeEquations equations = Linearise(sights, time, ionosphere, solution.position, solution.clock);
    if (!method(equations, correction)) return false;
    const double step = solution.Add(correction);
    if (!(step < 1e9)) return false;
    if (step < enough) return true;
  }
  return true;  // the least absolute deviations may alternate between neighbouring corners: good enough as a start
}

std::vector<Sight> Select(const std::vector<Sight>& sights, const std::vector<bool>& keep) {
  std::vector<Sight> out;
  for (std::size_t i = 0; i < sights.size(); ++i) {
    if (keep[i]) out.push_back(sights[i]);
  }
  return out;
}

// Marks the ranges that the robust solution contradicts; false when there are too few others to trust that.
bool ScreenGross(const RangeEquations& at_robust, double limit, const std::vector<Sight>& sights, Fix& fix,
                 std::vector<bool>& keep) {
  for (Index i = 0; i < at_robust.rows(); ++i) {
    if (std::fabs(at_robust.misclosure(i)) <= limit * at_robust.sigma[i]) continue;
    keep[i] = false;
    fix.gross.push_back(sights[i].prn);
  }
  const auto kept = static_cast<std::size_t>(std::count(keep.begin(), keep.end(), true));
  return fix.gross.empty() || kept > kUnknowns;
}

}  // namespace

double Dilution::horizontal() const { return std::sqrt(east * east + north * north); }
double Dilution::position() const { return std::sqrt(east * east + north * north + vertical * vertical); }
double Dilution::geometric() const { return std::sqrt(position() * position() + time * time); }

// The cofactor matrix (A'A)^-1 has the Cartesian frame; its position part turns into east, north, up by the congruence
// E Q E', E = denu_dxyz(latitude, longitude)  --  ATA, InverseByCholesky, AQAT.
Dilution DilutionOf(const RegularMatrix& design, const Geodetic& place) {
  SymmetricMatrix normal(ATA(design));
  const SymmetricMatrix cofactor(InverseByCholesky(normal, 1e-12));
  const SymmetricMatrix position(SubMat(cofactor, 0, 2));
  const SymmetricMatrix enu(AQAT(denu_dxyz(place.latitude, place.longitude), position));
  return {std::sqrt(enu(0, 0)), std::sqrt(enu(1, 1)), std::sqrt(enu(2, 2)), std::sqrt(cofactor(3, 3))};
}

Fix SolveEpoch(const std::vector<Sight>& sights, const GpsTime& time, const Ionosphere& ionosphere,
               const Vector3& start, const SolverSettings& settings) {
  Fix fix;
  fix.time = time;
  if (sights.size() < kUnknowns) return fix;

  // 1. A robust solution from all satellites.
  Solution solution;
  solution.position = start;
  const auto method = settings.screen ? LeastAbsolute : LeastSquares;
  if (!Iterate(sights, time, ionosphere, solution, 1e-2, method)) return fix;

  // 2. Leave out what lies too low, and what the robust solution shows to be wrong.
  const RangeEquations robust = Linearise(sights, time, ionosphere, solution.position, solution.clock);
  std::vector<bool> keep(sights.size(), true);
  const bool trustworthy = !settings.screen || ScreenGross(robust, settings.gross_error, sights, fix, keep);
  for (std::size_t i = 0; i < sights.size(); ++i) {
    if (robust.elevation[i] >= settings.elevation_mask || !keep[i]) continue;
    keep[i] = false;
    fix.low.push_back(sights[i].prn);
  }
  if (!trustworthy) {
    fix.outcome = Outcome::inconsistent;
    return fix;
  }

  // 3. Weighted least squares from the rest.
  const std::vector<Sight> kept = Select(sights, keep);
  if (kept.size() < kUnknowns || !Iterate(kept, time, ionosphere, solution, 1e-4, LeastSquares)) return fix;
  fix.outcome = Outcome::solved;
  fix.position = solution.position;
  fix.clock = solution.clock;
  fix.equations = Linearise(kept, time, ionosphere, solution.position, solution.clock);
  for (const Sight& sight : kept) fix.used.push_back(sight.prn);
  fix.dilution = DilutionOf(fix.equations.design, ToGeodetic(fix.position));
  return fix;
}

}  // namespace gnss
