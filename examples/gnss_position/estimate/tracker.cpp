#include "estimate/tracker.h"

#include <algorithm>
#include <cmath>

namespace gnss {
namespace {

using Index = Matrix::size_type;

// Receivers keep their clock near GPS time by jumps of a millisecond, 300 km. A change that the drift does not explain
// and that exceeds this is such a jump; it is given to the filters as a known shift.
constexpr double kClockJump = 3000.0;

// After a longer gap the old state says next to nothing: the filters begin anew.
constexpr double kLongestGap = 900.0;

constexpr double kCredible = 6.0;  // standard deviations of an innovation
constexpr int kMostRefused = 10;   // fixes in a row

// Clock drift at the start: the median over the next steps, so that a jump among them does no harm.
double DriftAfter(const std::vector<const Fix*>& solved, std::size_t first) {
  std::vector<double> rates;
  for (std::size_t k = first + 1; k < solved.size() && k <= first + 15; ++k) {
    const double dt = solved[k]->time - solved[k - 1]->time;
    if (dt <= kLongestGap) rates.push_back((solved[k]->clock - solved[k - 1]->clock) / dt);
  }
  if (rates.empty()) return 0.0;
  std::nth_element(rates.begin(), rates.begin() + static_cast<std::ptrdiff_t>(rates.size() / 2), rates.end());
  return rates[rates.size() / 2];
}

TrackPoint Describe(const FilterBank& bank, const Vector3& origin, double origin_clock) {
  const RegularMatrix x = bank.form(0).Estimate();
  const SymmetricMatrix p = bank.form(0).Covariance();
  TrackPoint point;
  point.position = origin + Vector3{x(0), x(2), x(4)};
  point.velocity = {x(1), x(3), x(5)};
  point.clock = origin_clock + x(kClock);
  point.disagreement = bank.Disagreement();

  SymmetricMatrix position(3);
  for (Index i = 0; i < 3; ++i) {
    for (Index j = i; j < 3; ++j) position(i, j) = p(2 * i, 2 * j);
  }
  const Geodetic place = ToGeodetic(point.position);
  const SymmetricMatrix enu(AQAT(denu_dxyz(place.latitude, place.longitude), position));
  for (Index k = 0; k < 3; ++k) point.sigma[k] = std::sqrt(enu(k, k));
  return point;
}

// Rows whose innovation z - H x is credible: its variance is h P h' + r.
std::vector<Index> Credible(const FilterForm& filter, const Measurement& m) {
  const RegularMatrix innovation(m.value - m.design * filter.Estimate());
  const SymmetricMatrix variance(AQAT(m.design, filter.Covariance()));
  std::vector<Index> rows;
  for (Index i = 0; i < innovation.nrows(); ++i) {
    const double sigma = std::sqrt(variance(i, i) + m.variance(i, i));
    if (std::fabs(innovation(i)) <= kCredible * sigma) rows.push_back(i);
  }
  return rows;
}

Measurement Select(const Measurement& all, const std::vector<Index>& rows) {
  const auto m = static_cast<Index>(rows.size());
  Measurement out{RegularMatrix(m, kStates), RegularMatrix(m, 1), DiagonalMatrix(m)};
  for (Index i = 0; i < m; ++i) {
    CopySubMat(out.design, i, 0, all.design, rows[i], 0, 1, kStates);
    out.value(i) = all.value(rows[i]);
    out.variance(i, i) = all.variance(rows[i], rows[i]);
  }
  return out;
}

// One run over the fixes.
class Tracker {
 public:
  explicit Tracker(const MotionModel& model) : model_(model) {
    for (std::size_t k = 0; k < FilterBank::kForms; ++k) track_.names[k] = bank_.form(k).Name();
  }

  Track Run(const std::vector<const Fix*>& solved) {
    for (std::size_t k = 0; k < solved.size(); ++k) {
      const double dt = k == 0 ? 0.0 : solved[k]->time - solved[k - 1]->time;
      if (k == 0) {
        Start(*solved[k], DriftAfter(solved, k));
      } else if (dt > kLongestGap || refused_in_a_row_ >= kMostRefused) {
        ++track_.restarts;
        Start(*solved[k], DriftAfter(solved, k));
      } else {
        Predict(*solved[k], dt);
      }
      Update(*solved[k]);
      track_.points.push_back(Describe(bank_, origin_, origin_clock_));
      track_.worst_disagreement = std::max(track_.worst_disagreement, track_.points.back().disagreement);
    }
    for (std::size_t k = 0; k < FilterBank::kForms; ++k) track_.seconds[k] = bank_.seconds(k);
    return std::move(track_);
  }

 private:
  // The state counts from the fix at which the filters begin, so that its numbers stay small.
  void Start(const Fix& fix, double drift) {
    origin_ = fix.position;
    origin_clock_ = fix.clock;
    RegularMatrix x(kStates, 1);
    x(kClock + 1) = drift;
    bank_.Start(x, InitialCovariance(model_));
    refused_in_a_row_ = 0;
  }

  void Predict(const Fix& fix, double dt) {
    Transition transition = TransitionOver(dt, model_);
    const RegularMatrix before = bank_.form(0).Estimate();
    const double jump = (fix.clock - origin_clock_) - (before(kClock) + before(kClock + 1) * dt);
    if (std::fabs(jump) > kClockJump) {
      transition.shift(kClock) = jump;
      ++track_.clock_jumps;
    }
    bank_.Predict(transition);
  }

  void Update(const Fix& fix) {
    const Measurement all = RangesOf(fix, origin_, origin_clock_);
    const std::vector<Index> rows = Credible(bank_.form(0), all);
    track_.contradicted_ranges += static_cast<int>(all.value.nrows() - rows.size());
    if (2 * rows.size() < all.value.nrows()) {
      ++refused_in_a_row_;
      return;
    }
    refused_in_a_row_ = 0;
    bank_.Update(rows.size() == all.value.nrows() ? all : Select(all, rows));
  }

  const MotionModel& model_;
  FilterBank bank_;
  Track track_;
  Vector3 origin_{};
  double origin_clock_ = 0.0;
  int refused_in_a_row_ = 0;
};

}  // namespace

Measurement RangesOf(const Fix& fix, const Vector3& origin, double origin_clock) {
  const RangeEquations& equations = fix.equations;
  const Index m = equations.rows();

  // The equations are linear around the fix: value = A (fix - origin) + misclosure.
  RegularMatrix offset(4, 1);
  for (Index k = 0; k < 3; ++k) offset(k) = fix.position[k] - origin[k];
  offset(3) = fix.clock - origin_clock;

  Measurement out;
  out.value = equations.design * offset + equations.misclosure;
  out.design = RegularMatrix(m, kStates);
  out.variance = DiagonalMatrix(m);
  for (Index i = 0; i < m; ++i) {
    for (Index k = 0; k < 4; ++k) out.design(i, 2 * k) = equations.design(i, k);
    out.variance(i, i) = equations.sigma[i] * equations.sigma[i];
  }
  return out;
}

Track RunFilters(const std::vector<Fix>& fixes, const MotionModel& model) {
  std::vector<const Fix*> solved;
  for (const Fix& fix : fixes) {
    if (fix.outcome == Outcome::solved) solved.push_back(&fix);
  }
  return Tracker(model).Run(solved);
}

}  // namespace gnss
