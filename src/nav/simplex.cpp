// The two-phase simplex method on a dense tableau whose coefficients are stored negated: a constraint row reads
//   basic variable = a(i, 0) + sum over columns of a(i, c) * non-basic variable of c.
//
// Two rules keep rounding from changing the outcome of a problem that holds a variable and its exact negative:
// elimination uses the quotients a(ip, c) / p, the new pivot column the products with 1 / p. A column that is the exact
// negative of the pivot column then becomes exactly 0 outside the pivot row, and stays the exact negative of its twin
// afterwards, so that phase two may ask for "no gain" as exactly 0.0.
#include <cmath>
#include <cstdint>

#include "core/invariant.h"
#include "nav/int_array.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/regression.h"

namespace {

using quorvel::detail::IntArray;

constexpr double eps = 1e-6;
constexpr int none = -1;

enum Outcome : int { infeasible = -1, optimal = 0, unbounded = 1 };

class Tableau {
 public:
  Tableau(RegularMatrix& a, int m, int n, int* nonbasic, int* basic, int* candidates) noexcept
      : data_(a.data()), stride_(a.ncols()), m_(m), n_(n), nonbasic_(nonbasic), basic_(basic),
        candidates_(candidates), candidate_count_(n) {
    for (int k = 0; k < n; ++k) candidates_[k] = nonbasic_[k] = k;
    for (int i = 0; i < m; ++i) basic_[i] = n + i;
  }

  double& at(int row, int column) const noexcept {
    return data_[static_cast<std::size_t>(row) * stride_ + static_cast<std::size_t>(column)];
  }
  int basic(int row) const noexcept { return basic_[row]; }

  struct Choice {
    int column;  // none for an empty candidate list
    double value;
  };

  /// The candidate column with the largest entry in tableau row r, by value or by absolute value; the first of equals.
  Choice ChooseColumn(int r, bool absolute) const noexcept {
    if (candidate_count_ <= 0) return {none, 0.0};  // n is not checked
    Choice best{candidates_[0], at(r, candidates_[0] + 1)};
    for (int c = 1; c < candidate_count_; ++c) {
      const double value = at(r, candidates_[c] + 1);
      const double gain = absolute ? std::fabs(value) - std::fabs(best.value) : value - best.value;
      if (gain > 0.0) best = {candidates_[c], value};
    }
    return best;
  }

  /// The constraint that limits the entering column first (ratio test); `none` when nothing does. Equal ratios are
  /// decided by the ratios of the following columns, which keeps degenerate problems from cycling.
  int ChooseRow(int column) const noexcept {
    int best = none;
    double least = 0.0;
    for (int i = 0; i < m_; ++i) {
      const double entry = at(i + 1, column + 1);
      if (!(entry < -eps)) continue;
      const double ratio = -at(i + 1, 0) / entry;
      if (best == none || ratio < least || (ratio == least && BreaksTie(i, best, column))) {
        best = i;
        least = ratio;
      }
    }
    return best;
  }

  /// Exchanges the basic variable of constraint ip with the non-basic variable of column kp, in tableau rows 0 .. last.
  void Pivot(int last, int ip, int kp) noexcept {
    const double pivot = at(ip + 1, kp + 1);
    const double inverse = 1.0 / pivot;
    double* const pivot_row = &at(ip + 1, 0);
    for (int c = 0; c <= n_; ++c) {
      if (c != kp + 1) pivot_row[c] = pivot_row[c] / pivot;
    }
    for (int r = 0; r <= last; ++r) {
      if (r == ip + 1) continue;
      double* const row = &at(r, 0);
      const double factor = row[kp + 1];
      for (int c = 0; c <= n_; ++c) {
        if (c != kp + 1) row[c] -= factor * pivot_row[c];
      }
      row[kp + 1] = factor * inverse;
    }
    for (int c = 0; c <= n_; ++c) pivot_row[c] = -pivot_row[c];
    pivot_row[kp + 1] = inverse;
    const int entering = nonbasic_[kp];
    nonbasic_[kp] = basic_[ip];
    basic_[ip] = entering;
  }

  /// Negates columns 0 .. n of a tableau row.
  void NegateRow(int r) const noexcept {
    for (int c = 0; c <= n_; ++c) at(r, c) = -at(r, c);
  }

  /// The column is never chosen again.
  void Bar(int column) noexcept {
    int kept = 0;
    for (int c = 0; c < candidate_count_; ++c) {
      if (candidates_[c] != column) candidates_[kept++] = candidates_[c];
    }
    candidate_count_ = kept;
  }

 private:
  bool BreaksTie(int row, int best, int column) const noexcept {
    for (int c = 1; c <= n_; ++c) {
      const double mine = -at(row + 1, c) / at(row + 1, column + 1);
      const double other = -at(best + 1, c) / at(best + 1, column + 1);
      if (mine != other) return mine < other;
    }
    return false;
  }

  double* data_;
  std::size_t stride_;
  int m_;
  int n_;
  int* nonbasic_;
  int* basic_;
  int* candidates_;
  int candidate_count_;
};

/// Phase one: a feasible basis, by maximising minus the sum of the artificial variables in the auxiliary row m + 1.
/// A >= constraint shares one number for its artificial and its surplus: the artificial is basic first, and when it
/// leaves, its column turns into the surplus.
class PhaseOne {
 public:
  PhaseOne(Tableau& t, int m, int n, int m1, int m2)
      : t_(t), m_(m), n_(n), m1_(m1), m2_(m2), auxiliary_(m + 1), never_left_(m2) {}

  /// `optimal` when phase two may begin.
  Outcome Run() noexcept {
    for (int i = 0; i < m2_; ++i) never_left(i) = 1;
    for (int c = 0; c <= n_; ++c) {
      double sum = 0.0;
      for (int i = m1_; i < m_; ++i) sum += t_.at(i + 1, c);
      t_.at(auxiliary_, c) = -sum;
    }
    for (;;) {
      Tableau::Choice entering = t_.ChooseColumn(auxiliary_, true);
      // The largest entry by absolute value may be negative while others still promise progress.
      if (entering.value <= eps) entering = t_.ChooseColumn(auxiliary_, false);
      if (entering.value <= eps) {
        if (t_.at(auxiliary_, 0) < -eps) return infeasible;
        DriveOutArtificials();
        return optimal;
      }
      const int row = t_.ChooseRow(entering.column);
      if (row == none) return unbounded;  // never all ways: the sum of the artificials is bounded
      Exchange(row, entering.column);
    }
  }

 private:
  /// Whether the artificial of the i-th >= constraint has stayed basic from the beginning.
  int& never_left(int i) const noexcept { return never_left_.get()[i]; }

  void Exchange(int row, int column) noexcept {
    const int leaving = t_.basic(row);
    t_.Pivot(auxiliary_, row, column);
    if (leaving >= n_ + m1_ + m2_) {
      t_.Bar(column);  // the artificial of an equality never comes back
    } else if (leaving >= n_ + m1_ && never_left(leaving - n_ - m1_) != 0) {
      never_left(leaving - n_ - m1_) = 0;
      t_.at(auxiliary_, column + 1) += 1.0;
      for (int r = 0; r <= auxiliary_; ++r) t_.at(r, column + 1) = -t_.at(r, column + 1);
    }
  }

  /// The sum of the artificials is zero, and so is each that is still basic. An equality's is exchanged for any column
  /// with a usable pivot; where there is none the equality is redundant and its artificial stays at zero. A >= row
  /// reads as the row of its surplus once it is negated.
  void DriveOutArtificials() noexcept {
    for (int i = m1_ + m2_; i < m_; ++i) {
      if (t_.basic(i) != n_ + i) continue;
      const Tableau::Choice column = t_.ChooseColumn(i + 1, true);
      if (std::fabs(column.value) > eps) Exchange(i, column.column);
    }
    for (int i = m1_; i < m1_ + m2_; ++i) {
      if (never_left(i - m1_) != 0) t_.NegateRow(i + 1);
    }
  }

  Tableau& t_;
  int m_;
  int n_;
  int m1_;
  int m2_;
  int auxiliary_;
  IntArray never_left_;
};

Outcome PhaseTwo(Tableau& t, int m) noexcept {
  for (;;) {
    const Tableau::Choice entering = t.ChooseColumn(0, false);
    if (entering.value <= 0.0) return optimal;
    const int row = t.ChooseRow(entering.column);
    if (row == none) return unbounded;
    t.Pivot(m, row, entering.column);
  }
}

/// The preconditions are numbered, in the place where an assertion names its line.
void Require(bool holds, const char* condition, unsigned number, const char* signature) {
  quorvel::detail::Invariant(holds, condition, "utility", number, signature);
}

}  // namespace

int Simplx(RegularMatrix& a, int m, int n, int m1, int m2, int m3, int* nonbasic, int* basic) {
  Require(std::int64_t{m} == std::int64_t{m1} + m2 + m3, "m == m1 + m2 + m3", 1, __PRETTY_FUNCTION__);
  Require(std::int64_t{m} + 2 <= static_cast<int>(a.nrows()), "m + 2 <= (int)a.nrows()", 2, __PRETTY_FUNCTION__);
  Require(n < static_cast<int>(a.ncols()), "n < (int)a.ncols()", 3, __PRETTY_FUNCTION__);
  const double* const constants = a.data();
  for (int i = 0; i < m; ++i) {
    Require(0.0 <= constants[(std::size_t(i) + 1) * a.ncols()], "0.0 <= a(i+1,0)", 4, __PRETTY_FUNCTION__);
  }
  const IntArray candidates(n);
  Tableau t(a, m, n, nonbasic, basic, candidates.get());
  if (m2 + m3 > 0) {
    const Outcome feasible = PhaseOne(t, m, n, m1, m2).Run();
    if (feasible != optimal) return feasible;
  }
  return PhaseTwo(t, m);
}
