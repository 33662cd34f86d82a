#include "read/observation_reader.h"

#include <cerrno>
#include <cstring>
#include <fstream>

#include "read/observation_header.h"

namespace gnss {
namespace {

constexpr int kMostSatellites = 200;
// No range to a GPS satellite comes near these bounds, even with a receiver clock wrong by a third of a second.
constexpr double kLeastRange = -1e8, kMostRange = 1.5e8;

// Epoch flags: 0 observations; 1 observations, power failed since the last epoch; 2 to 5 events, followed by header
// lines; 6 cycle slip records, laid out like observations.
struct EpochLine {
  int flag = 0;
  int count = 0;  // of satellites, or of the lines that follow an event
  GpsTime time;
};

class Reader {
 public:
  Reader(std::istream& in, const std::string& name, const ReadProgress& progress)
      : in_(in, name), progress_(progress) {}

  Observations Read() {
    const RinexKind kind = ReadFirstHeaderLine(in_, 'O');
    major_ = kind.major;
    do {
      NextHeaderLine(in_);
      ReadObservationHeaderLine(in_, major_, out_, types_);
    } while (HeaderLabel(in_) != "END OF HEADER");
    types_.Finish(in_, major_);

    while (in_.Next()) {
      if (in_.Blank(0, 80)) continue;
      const std::string place = in_.Place();
      if (!ReadEpoch(place)) {
        out_.remarks.push_back(place + "the file ends inside this epoch; it is left out");
        break;
      }
    }
    return std::move(out_);
  }

 private:
  // The epoch whose first line is the present one; false when the file ends inside it.
  bool ReadEpoch(const std::string& place) {
    const EpochLine line = major_ == 2 ? EpochLineVersion2() : EpochLineVersion3();
    if (line.flag != 0) ++out_.flagged_epochs;
    if (line.flag >= 2 && line.flag <= 5) return ReadEventLines(line.count);

    ObservationEpoch epoch{line.time, {}};
    const bool whole = major_ == 2 ? SatellitesVersion2(line.count, epoch) : SatellitesVersion3(line.count, epoch);
    if (!whole) return false;
    if (line.flag != 0) return true;
    if (!out_.epochs.empty() && !(epoch.time - out_.epochs.back().time > 0.0)) {
      out_.remarks.push_back(place + "the epoch is not later than the one before; it is left out");
      return true;
    }
    out_.epochs.push_back(std::move(epoch));
    if (progress_ && out_.epochs.size() % 1000 == 0) progress_(out_.epochs.size());
    return true;
  }

  // Columns of the epoch line: date from `year` on, flag, count.
  EpochLine ReadEpochLine(std::size_t date, bool four_digits, std::size_t flag, std::size_t seconds_width) {
    EpochLine line;
    line.flag = in_.Blank(flag, 1) ? 0 : in_.Integer(flag, 1, "epoch flag");
    line.count = in_.Blank(flag + 1, 3) && line.flag > 1 ? 0 : in_.Integer(flag + 1, 3, "number of satellites");
    if (line.flag < 0 || line.flag > 6) in_.Fail("impossible epoch flag " + std::to_string(line.flag));
    if (line.count < 0 || (line.flag < 2 && line.count > kMostSatellites)) {
      in_.Fail("impossible number of satellites: " + std::to_string(line.count));
    }
    if (line.flag > 1) return line;  // the date of an event may be blank
    const std::size_t year_width = four_digits ? 4 : 2;
    const int year = in_.Integer(date, year_width, "year");
    const std::size_t at = date + year_width + 1;
    const CalendarTime c = {four_digits ? year : FullYear(year), in_.Integer(at, 2, "month"),
                            in_.Integer(at + 3, 2, "day"),       in_.Integer(at + 6, 2, "hour"),
                            in_.Integer(at + 9, 2, "minute"),    in_.Real(at + 11, seconds_width, "second")};
    line.time = TimeOrFail(in_, c, "epoch");
    return line;
  }

  EpochLine EpochLineVersion2() { return ReadEpochLine(1, false, 28, 11); }

  EpochLine EpochLineVersion3() {
    if (in_.line()[0] != '>') in_.Fail("an epoch must begin with '>'");
    return ReadEpochLine(2, true, 31, 11);
  }

  // Version 2 puts up to 12 satellites on the epoch line and on each continuation, then each satellite's values, five
  // on a line.
  bool SatellitesVersion2(int count, ObservationEpoch& epoch) {
    std::vector<std::string> satellites;
    for (int k = 0; k < count; ++k) {
      if (k > 0 && k % 12 == 0 && !in_.Next()) return false;
      satellites.emplace_back(in_.Text(32 + 3 * static_cast<std::size_t>(k % 12), 3));
      if (satellites.back().empty()) in_.Fail("fewer satellites than announced");
    }
    values_.resize(types_.names.size());
    for (const std::string& satellite : satellites) {
      for (std::size_t k = 0; k < values_.size(); ++k) {
        if (k % 5 == 0 && !in_.Next()) return false;
        values_[k] = in_.OptionalReal(16 * (k % 5), 14, "observation");
      }
      AddSatellite(satellite, epoch);
    }
    return true;
  }

  bool SatellitesVersion3(int count, ObservationEpoch& epoch) {
    values_.resize(types_.names.size());
    for (int k = 0; k < count; ++k) {
      if (!in_.Next()) return false;
      const std::string satellite(in_.Text(0, 3));
      if (satellite.empty()) in_.Fail("a satellite number is missing");
      if (satellite[0] != 'G') continue;
      for (std::size_t v = 0; v < values_.size(); ++v) {
        values_[v] = in_.OptionalReal(3 + 16 * v, 14, "observation");
      }
      AddSatellite(satellite, epoch);
    }
    return true;
  }

  void AddSatellite(const std::string& satellite, ObservationEpoch& epoch) {
    const bool letter = satellite[0] < '0' || satellite[0] > '9';
    const char system = letter ? satellite[0] : 'G';
    if (system != 'G') return;
    const std::string digits = satellite.substr(letter ? 1 : 0);
    int prn = 0;
    for (const char c : digits) {
      if (c == ' ') continue;
      if (c < '0' || c > '9') in_.Fail("'" + satellite + "' is not a satellite number");
      prn = prn * 10 + (c - '0');
    }
    for (const Pseudorange& other : epoch.ranges) {
      if (other.prn != prn) continue;
      out_.remarks.push_back(in_.Place() + "satellite " + satellite + " appears twice in its epoch; left out");
      return;
    }
    for (const std::size_t at : types_.code) {
      // A value of exactly zero is how some writers say "blank".
      if (!values_[at] || *values_[at] == 0.0) continue;
      if (*values_[at] < kLeastRange || *values_[at] > kMostRange) in_.Fail("a range that cannot be one, in metres");
      epoch.ranges.push_back({prn, *values_[at]});
      return;
    }
    ++out_.blank_ranges;
  }

  // Lines after an event. They may hold header records that change what follows.
  bool ReadEventLines(int count) {
    bool types_changed = false;
    for (int k = 0; k < count; ++k) {
      if (!in_.Next()) return false;
      const std::string_view label = HeaderLabel(in_);
      types_changed = types_changed || label == "# / TYPES OF OBSERV" || label == "SYS / # / OBS TYPES";
      const std::optional<Vector3> known = out_.known_position;
      ReadObservationHeaderLine(in_, major_, out_, types_);
      if (known) out_.known_position = known;
    }
    if (types_changed) types_.Finish(in_, major_);
    return true;
  }

  LineReader in_;
  const ReadProgress& progress_;
  Observations out_;
  ObservationTypes types_;
  int major_ = 0;
  std::vector<std::optional<double>> values_;  // of the present satellite
};

}  // namespace

Observations ReadObservations(std::istream& in, const std::string& name, const ReadProgress& progress) {
  return Reader(in, name, progress).Read();
}

Observations ReadObservationFile(const std::string& path, const ReadProgress& progress) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path + ": " + std::strerror(errno));
  return ReadObservations(in, path, progress);
}

}  // namespace gnss
