// The full matrix of a result, row by row, for comparing what the contestants computed.

#ifndef QUORVEL_BENCHMARKS_VALUES_H
#define QUORVEL_BENCHMARKS_VALUES_H

#include <Eigen/Core>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "quorvel/quorvel.h"

namespace bench {

/// A column-major array for BLAS and LAPACK, on a cache line.
class Columns {
 public:
  Columns(int rows, int cols) : rows_(rows), cols_(cols), data_(allocate(size())) {}
  Columns(const Columns& other) : Columns(other.rows_, other.cols_) { *this = other; }
  Columns& operator=(const Columns& other) {
    for (std::size_t k = 0; k < size(); ++k) data_[k] = other.data_[k];
    return *this;
  }
  int rows() const { return rows_; }
  int cols() const { return cols_; }
  std::size_t size() const { return static_cast<std::size_t>(rows_) * static_cast<std::size_t>(cols_); }
  double* data() { return data_.get(); }
  const double* data() const { return data_.get(); }
  double& operator()(int i, int j) { return data_[at(i, j)]; }
  double operator()(int i, int j) const { return data_[at(i, j)]; }

 private:
  struct Free {
    void operator()(double* p) const { std::free(p); }
  };
  static double* allocate(std::size_t count) {
    void* const p = std::aligned_alloc(64, (count * sizeof(double) + 64) / 64 * 64);
    if (p == nullptr) throw std::bad_alloc();
    double* const d = static_cast<double*>(p);
    for (std::size_t k = 0; k < count; ++k) d[k] = 0.0;
    return d;
  }
  std::size_t at(int i, int j) const {
    return static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * static_cast<std::size_t>(rows_);
  }
  int rows_, cols_;
  std::unique_ptr<double[], Free> data_;
};

/// A function (row, column) as a matrix: for results that hold only a part, or a root, of what is compared.
template <class At>
struct Read {
  unsigned rows, cols;
  At at;
};
template <class At>
Read(unsigned, unsigned, At) -> Read<At>;

template <class At>
std::vector<double> Values(const Read<At>& a) {
  std::vector<double> v;
  for (unsigned i = 0; i < a.rows; ++i) {
    for (unsigned j = 0; j < a.cols; ++j) v.push_back(a.at(i, j));
  }
  return v;
}

/// Any dense matrix of ours.
template <class K, class = decltype(std::declval<const K&>().nrows())>
std::vector<double> Values(const K& a) {
  return Values(Read{a.nrows(), a.ncols(), [&a](unsigned i, unsigned j) { return a(i, j); }});
}

inline std::vector<double> Values(const Columns& a) {
  return Values(Read{static_cast<unsigned>(a.rows()), static_cast<unsigned>(a.cols()),
                     [&a](unsigned i, unsigned j) { return a(static_cast<int>(i), static_cast<int>(j)); }});
}

template <class Derived>
std::vector<double> Values(const Eigen::MatrixBase<Derived>& x) {
  const auto a = x.eval();
  return Values(Read{static_cast<unsigned>(a.rows()), static_cast<unsigned>(a.cols()),
                     [&a](unsigned i, unsigned j) { return static_cast<double>(a(i, j)); }});
}

inline std::vector<double> Values(const std::vector<double>& values) { return values; }

/// A result that is only formed to be compared, like the covariance of its factors: by a function that is not called
/// while the contestant is timed.
template <class Make>
struct Postponed {
  Make make;
};
template <class Make>
Postponed<Make> Later(Make make) {
  return {make};
}

template <class Make>
std::vector<double> Values(const Postponed<Make>& later) {
  return Values(later.make());
}

/// The lower triangle of an array, zero above.
template <class A>
auto LowerOf(const A& a, unsigned n) {
  return Read{n, n, [&a](unsigned i, unsigned j) {
                return i < j ? 0.0 : static_cast<double>(a(static_cast<int>(i), static_cast<int>(j)));
              }};
}

/// The symmetric matrix of which an array holds the upper or the lower triangle.
template <class A>
auto MirroredUpper(const A& a, unsigned n) {
  return Read{n, n, [&a](unsigned i, unsigned j) {
                return static_cast<double>(a(static_cast<int>(i < j ? i : j), static_cast<int>(i < j ? j : i)));
              }};
}
template <class A>
auto MirroredLower(const A& a, unsigned n) {
  return Read{n, n, [&a](unsigned i, unsigned j) {
                return static_cast<double>(a(static_cast<int>(i < j ? j : i), static_cast<int>(i < j ? i : j)));
              }};
}

}  // namespace bench

#endif
