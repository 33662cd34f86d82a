#include "report/summary.h"

#include <string>

#include "report/format.h"

namespace gnss {
namespace {

const char* Name(Motion motion) {
  switch (motion) {
    case Motion::walking:
      return "walking";
    case Motion::driving:
      return "driving";
    default:
      return "standing";
  }
}

void PrintCounts(std::ostream& out, const Observations& observations, const EpochCounts& counts) {
  out << Formatted("Epochs     %zu read, %d solved, %d rejected", observations.epochs.size(), counts.solved,
                   counts.too_few + counts.inconsistent);
  if (counts.too_few > 0) out << Formatted("; %d with too few satellites", counts.too_few);
  if (counts.inconsistent > 0) out << Formatted("; %d with contradictory ranges", counts.inconsistent);
  if (observations.flagged_epochs > 0)
    out << Formatted("; %d events or marked epochs passed over", observations.flagged_epochs);
  out << Formatted("\nRanges     %d grossly wrong ones found and left out", counts.gross_ranges);
  if (counts.unusable.without_ephemeris > 0) {
    out << Formatted("; %d without a valid broadcast message", counts.unusable.without_ephemeris);
  }
  if (counts.unusable.unhealthy > 0) out << Formatted("; %d of unhealthy satellites", counts.unusable.unhealthy);
  if (observations.blank_ranges > 0) out << Formatted("; %d blank", observations.blank_ranges);
  out << '\n';
}

void PrintPosition(std::ostream& out, const char* name, const Vector3& position) {
  const Geodetic g = ToGeodetic(position);
  out << Formatted("%-10s %.7f %c  %.7f %c  %.2f m   (%.3f  %.3f  %.3f)\n", name,
                   g.latitude < 0 ? -g.latitude / kDegree : g.latitude / kDegree, g.latitude < 0 ? 'S' : 'N',
                   g.longitude < 0 ? -g.longitude / kDegree : g.longitude / kDegree, g.longitude < 0 ? 'W' : 'E',
                   g.height, position[0], position[1], position[2]);
}

void PrintErrors(std::ostream& out, const Reference& reference, const std::vector<ErrorRow>& errors) {
  out << '\n' << (reference.known ? "Errors" : "Deviations") << " in metres against " << reference.origin << '\n';
  out << "                      median                          95 %                            mean\n"
         "                      east   north      up      3D    east   north      up      3D    east   north      up\n";
  for (const Solution solution : {Solution::fix, Solution::filtered}) {
    const ErrorSummary s = Summarise(errors, solution);
    out << Formatted("  %-16s%8.2f%8.2f%8.2f%8.2f%8.2f%8.2f%8.2f%8.2f%8.2f%8.2f%8.2f\n",
                     solution == Solution::fix ? "least squares" : "filter", s.median[0], s.median[1], s.median[2],
                     s.median[3], s.most[0], s.most[1], s.most[2], s.most[3], s.mean[0], s.mean[1], s.mean[2]);
  }
}

}  // namespace

void PrintSummary(std::ostream& out, const Observations& observations, const Processed& processed,
                  const Reference& reference, const std::vector<ErrorRow>& errors) {
  out << '\n';
  if (!observations.marker.empty()) out << "Receiver   " << observations.marker << '\n';
  if (!observations.epochs.empty()) {
    out << "Time       " << Format(observations.epochs.front().time) << " to "
        << Format(observations.epochs.back().time) << " GPS time\n";
  }
  PrintCounts(out, observations, processed.counts);
  if (errors.empty()) {
    out << "No position could be computed.\n";
    return;
  }
  const Track& track = processed.track;
  if (track.clock_jumps > 0)
    out << Formatted("Clock      %d %s of the receiver clock\n", track.clock_jumps,
                     track.clock_jumps == 1 ? "jump" : "jumps");
  if (track.contradicted_ranges + track.restarts > 0) {
    out << Formatted("Filter     left out %d ranges that contradict its prediction, began anew %d times\n",
                     track.contradicted_ranges, track.restarts);
  }
  PrintPosition(out, "Last", track.points.back().position);
  if (processed.motion == Motion::standing) PrintPosition(out, "Median", *MedianPosition(processed.fixes));
  PrintErrors(out, reference, errors);

  const double epochs = static_cast<double>(errors.size());
  out << "\nFilter of 8 states (position, velocity, clock; receiver taken as " << Name(processed.motion)
      << "), in three forms\n";
  for (std::size_t k = 0; k < FilterBank::kForms; ++k) {
    out << Formatted("  %-16s%8.1f microseconds per epoch\n", track.names[k], track.seconds[k] / epochs * 1e6);
  }
  out << Formatted("  greatest difference between their positions: %.1e m\n", track.worst_disagreement);
  out << Formatted("Fixes (robust start and least squares): %.1f microseconds per epoch\n",
                   processed.fix_seconds / static_cast<double>(processed.fixes.size()) * 1e6);
}

}  // namespace gnss
