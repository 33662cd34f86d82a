// The parts of a report: tables in Markdown, figures as comma-separated values, pictures as input for gnuplot.

#ifndef QUORVEL_BENCHMARKS_TABLES_H
#define QUORVEL_BENCHMARKS_TABLES_H

#include <string>

#include "report/figures.h"

namespace report {

/// The parts of the page, by the name of their placeholder.
std::string Machine(const Figures& figures);
std::string Summary(const Figures& figures);
std::string Dense(const Figures& figures);
std::string Peak(const Figures& figures);
std::string Overhead(const Figures& figures);
std::string Filters(const Figures& figures);
std::string Growth(const Figures& figures);

std::string CommaSeparated(const Figures& figures);

/// Writes <folder>/<operation>.svg for every operation that has a picture, when gnuplot runs it.
std::string Pictures(const Figures& figures, const std::string& folder);
bool HasPicture(const Operation& operation);

}  // namespace report

#endif
