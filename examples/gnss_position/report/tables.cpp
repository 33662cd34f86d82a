#include "report/tables.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "quorvel/quorvel.h"

namespace gnss {
namespace {

[[noreturn]] void FailToWrite(const std::string& path) {
  throw std::runtime_error(path + ": cannot be written: " + std::strerror(errno));
}

// A file that is closed on every way out; Close() reports what could not be written.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "w"), &std::fclose) {
    if (!file_) FailToWrite(path_);
  }
  std::FILE* get() const { return file_.get(); }
  void Close() {
    const bool bad = std::ferror(file_.get()) != 0;
    if (std::fclose(file_.release()) != 0 || bad) FailToWrite(path_);
  }

 private:
  std::string path_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

const char* Name(Outcome outcome) {
  switch (outcome) {
    case Outcome::solved:
      return "solved";
    case Outcome::too_few:
      return "too few satellites";
    default:
      return "inconsistent";
  }
}

void PrintPlace(std::FILE* file, const Vector3& position) {
  const Geodetic g = ToGeodetic(position);
  std::fprintf(file, ",%.4f,%.4f,%.4f,%.9f,%.9f,%.4f", position[0], position[1], position[2], g.latitude / kDegree,
               g.longitude / kDegree, g.height);
}

}  // namespace

void WriteCsv(const std::string& path, const Processed& processed, const std::vector<ErrorRow>& errors) {
  OutputFile out(path);
  std::FILE* file = out.get();
  std::fputs(
      "gps_time,gps_week,second_of_week,outcome,satellites_used,satellites_gross,satellites_low,"
      "fix_x_m,fix_y_m,fix_z_m,fix_latitude_deg,fix_longitude_deg,fix_height_m,fix_clock_m,"
      "fix_error_east_m,fix_error_north_m,fix_error_up_m,gdop,pdop,hdop,vdop,tdop,"
      "filter_x_m,filter_y_m,filter_z_m,filter_latitude_deg,filter_longitude_deg,filter_height_m,"
      "filter_vx_mps,filter_vy_mps,filter_vz_mps,filter_clock_m,filter_error_east_m,filter_error_north_m,"
      "filter_error_up_m,filter_sigma_east_m,filter_sigma_north_m,filter_sigma_up_m,forms_disagree_m\n",
      file);
  std::size_t row = 0;
  for (const Fix& fix : processed.fixes) {
    std::fprintf(file, "%s,%d,%.7f,%s,%zu,%zu,%zu", Format(fix.time).c_str(), fix.time.week, fix.time.seconds,
                 Name(fix.outcome), fix.used.size(), fix.gross.size(), fix.low.size());
    if (fix.outcome != Outcome::solved) {
      std::fprintf(file, "%s\n", std::string(32, ',').c_str());
      continue;
    }
    const TrackPoint& point = processed.track.points[row];
    const ErrorRow& error = errors[row];
    const Dilution& d = fix.dilution;
    PrintPlace(file, fix.position);
    std::fprintf(file, ",%.4f,%.4f,%.4f,%.4f,%.3f,%.3f,%.3f,%.3f,%.3f", fix.clock, error.fix[0], error.fix[1],
                 error.fix[2], d.geometric(), d.position(), d.horizontal(), d.vertical, d.time);
    PrintPlace(file, point.position);
    std::fprintf(file, ",%.5f,%.5f,%.5f,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,%.3e\n", point.velocity[0],
                 point.velocity[1], point.velocity[2], point.clock, error.filtered[0], error.filtered[1],
                 error.filtered[2], point.sigma[0], point.sigma[1], point.sigma[2], point.disagreement);
    ++row;
  }
  out.Close();
}

void WriteMFile(const std::string& path, const Processed& processed, const std::vector<ErrorRow>& errors) {
  RegularMatrix results(static_cast<Matrix::size_type>(errors.size()), 11);
  const GpsTime begin = errors.empty() ? GpsTime{} : processed.fixes[errors.front().epoch].time;
  for (std::size_t k = 0; k < errors.size(); ++k) {
    const auto i = static_cast<Matrix::size_type>(k);
    const ErrorRow& row = errors[k];
    const Fix& fix = processed.fixes[row.epoch];
    results(i, 0) = fix.time - begin;
    for (Matrix::size_type axis = 0; axis < 3; ++axis) {
      results(i, 1 + axis) = row.fix[axis];
      results(i, 4 + axis) = row.filtered[axis];
      results(i, 7 + axis) = processed.track.points[k].sigma[axis];
    }
    results(i, 10) = static_cast<double>(fix.used.size());
  }

  OutputFile out(path);
  std::fputs(
      "% Run this file in Octave: it defines the matrix 'results', one row per solved epoch.\n"
      "% Columns: 1 seconds since the first epoch; 2-4 error of the least squares east, north, up (m);\n"
      "% 5-7 error of the filter; 8-10 standard deviation that the filter claims; 11 satellites used.\n"
      "% For example:  plot(results(:,1) / 3600, results(:,5:7)), legend('east', 'north', 'up')\n",
      out.get());
  PrintMFile(results, out.get(), "results", "%.10g");
  out.Close();
}

}  // namespace gnss
