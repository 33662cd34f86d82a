#include "estimate/process.h"

#include <algorithm>
#include <chrono>

namespace gnss {
namespace {

MotionModel ModelOf(Motion motion) {
  switch (motion) {
    case Motion::walking:
      return MotionModel::Walking();
    case Motion::driving:
      return MotionModel::Driving();
    default:
      return MotionModel::Standing();
  }
}

void Count(const Fix& fix, EpochCounts& counts) {
  switch (fix.outcome) {
    case Outcome::solved:
      ++counts.solved;
      break;
    case Outcome::too_few:
      ++counts.too_few;
      break;
    case Outcome::inconsistent:
      ++counts.inconsistent;
      break;
  }
  counts.gross_ranges += static_cast<int>(fix.gross.size());
}

}  // namespace

std::vector<Fix> SolveAll(const Observations& observations, const NavigationData& navigation,
                          const SolverSettings& settings, EpochCounts& counts, const ProcessProgress& progress) {
  std::vector<Fix> fixes;
  fixes.reserve(observations.epochs.size());
  Vector3 start{};
  for (const ObservationEpoch& epoch : observations.epochs) {
    const std::vector<Sight> sights = UsableSights(epoch, navigation, counts.unusable);
    fixes.push_back(SolveEpoch(sights, epoch.time, navigation.ionosphere, start, settings));
    const Fix& fix = fixes.back();
    if (fix.outcome == Outcome::solved) start = fix.position;
    Count(fix, counts);
    if (progress && fixes.size() % 1000 == 0) progress(fixes.size(), observations.epochs.size());
  }
  return fixes;
}

std::optional<Vector3> MedianPosition(const std::vector<Fix>& fixes) {
  Vector3 median{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    std::vector<double> values;
    for (const Fix& fix : fixes) {
      if (fix.outcome == Outcome::solved) values.push_back(fix.position[axis]);
    }
    if (values.empty()) return std::nullopt;
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    median[axis] = values[values.size() / 2];
  }
  return median;
}

Motion JudgeMotion(const std::vector<Fix>& fixes) {
  const std::optional<Vector3> median = MedianPosition(fixes);
  if (!median) return Motion::standing;
  std::size_t near = 0;
  std::size_t all = 0;
  for (const Fix& fix : fixes) {
    if (fix.outcome != Outcome::solved) continue;
    ++all;
    if (Length(fix.position - *median) < 30.0) ++near;
  }
  return 100 * near >= 99 * all ? Motion::standing : Motion::driving;
}

Processed Process(const Observations& observations, const NavigationData& navigation, const ProcessSettings& settings,
                  const ProcessProgress& progress) {
  Processed out;
  const auto begin = std::chrono::steady_clock::now();
  out.fixes = SolveAll(observations, navigation, settings.solver, out.counts, progress);
  out.fix_seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  out.motion = settings.motion == Motion::unknown ? JudgeMotion(out.fixes) : settings.motion;
  out.track = RunFilters(out.fixes, ModelOf(out.motion));
  return out;
}

}  // namespace gnss
