// Kernels on raw arrays: what runs once per instruction set.
//
// A kernel checks nothing, owns nothing and allocates nothing. It is written once (instance.inc and the files it
// includes) and compiled once per instruction set: portable, SSE2, AVX2, AVX-512. kernels() is the table of the
// instance that was chosen for this processor; every instance gives the same bits, because each result element is its
// own sum that starts from 0.0 and takes its products one by one in increasing k, and no multiplication is fused with
// an addition.
//
// Everything is described by two small views on arrays:
//
//   Lines   where line t begins: first + t * stride - shrink * t(t - 1)/2. shrink is 0 for an array by rows, and 1
//           for the packed triangle, whose rows get shorter by one (there, line t "begins" so that element (t, k) is
//           at line(t)[k], although only k >= t exists).
//   Factor  a matrix read through its lines. Form: how element (r, c) is found: by_rows line(r)[c], by_columns
//           line(c)[r] (that is, the transpose), mirrored line(min)[max]. Shape: where it can be non-zero; positions
//           outside are never read and never enter a sum.
//   Target  the result: form and shape as above; positions outside the shape are never written.
//
// With them one kernel, multiply, serves the products of all dense kinds, the structured products and whatever else is
// a product of blocks. A new kernel is one more member of Kernels and one more line in instance.inc. This header is
// included by the instruction-set files, so it contains plain data only: no inline function, no standard header.
#ifndef QUORVEL_OPS_KERNELS_KERNELS_H
#define QUORVEL_OPS_KERNELS_KERNELS_H

namespace quorvel::detail {

using kernel_index = unsigned int;
using kernel_offset = __PTRDIFF_TYPE__;

enum class Form : unsigned char { by_rows, by_columns, mirrored };
enum class Shape : unsigned char { full, upper, lower };

struct Factor {
  const double* first;
  kernel_offset stride;
  kernel_offset shrink;
  Form form;
  Shape shape;
};

struct Target {
  double* first;
  kernel_offset stride;
  kernel_offset shrink;
  Form form;  // by_rows or by_columns
  Shape shape;
};

/// Which part of a product: rows and columns of the result, and how many terms.
struct Extent {
  kernel_index row_begin, row_end;
  kernel_index col_begin, col_end;
  kernel_index depth;
};

inline constexpr kernel_index widest_panel = 24;

/// Orders up to this one: what a factor needs is kept whole on the stack, and a Cholesky factor is found column by column
/// rather than by panels.
inline constexpr kernel_index small_factor = 24;

/// Orders up to this one: the square of a triangle's inverse is formed in scalar registers.
inline constexpr kernel_index tiny_inverse = 9;

/// Rows of a U-D factor that are found together, at most.
inline constexpr kernel_index unit_strip = 64;

/// Neighbouring columns of a Cholesky factor. Column k of the lower triangle is line k of the packed array.
inline constexpr kernel_index most_columns = 8;
struct CholeskyPanel {
  double* packed;
  const double* source;  // A's lower triangle, packed as the factor is; it may be the same array
  kernel_index order;
  kernel_index first, count;   // columns first .. first + count - 1, the ones before it being finished
  kernel_index below;          // the first row that is not found with the square
  bool divide;                 // by `scale`, the root of the pivot; otherwise multiply by it, the root's reciprocal
  double tolerance;            // of pivots, when not dividing
  double least;                // of the numbers that roots were taken of, and 0.0
  bool cleared[most_columns];  // the elements of A count as 0.0
  double scale[most_columns];
  alignas(64) double square[most_columns][most_columns];  // [c][r]: of row first + r and column first + c
};

/// Householder reflections I - beta * v * v', v(j) = 1: line j holds beta at [j] and v(i) at [i], i > j.
enum class ReflectionKind : unsigned char { none, single, some, full };  // how many of the v(i) are not 0.0; single: no one
struct Reflectors {
  double* first;
  kernel_offset stride, shrink;
  ReflectionKind* kind;
};

/// A reflection that makes column j of the rows A below a triangle R vanish, and what it needs of the columns behind
/// j + 1: u is element j of the reflection's vector, a(i, j) are the others.
struct Reduction {
  double* a;  // a(0, j)
  kernel_offset stride;
  kernel_index rows;
  double* r;      // R(j, j + 2)
  double* gamma;  // that of column j + 2
  double u, f;
  bool negated;  // the result is
};

struct Kernels {
  const char* name;

  /// Doubles in a register.
  kernel_index lanes;

  /// c(i, j) = sum over k = 0 .. depth - 1 of a(i, k) * b(k, j), for the rows and columns of `part` that lie in the
  /// shape of c. No overlap between c and the factors. `c_origin`: the index of the column that c's lines begin with
  /// (c by_rows, full); `b_origin`: the same for b.
  void (*multiply)(const Target& c, kernel_index c_origin, const Factor& a, const Factor& b, kernel_index b_origin,
                   const Extent& part);

  /// The same for a whole result, by rows unless it is a lower triangle, both origins being 0.
  void (*multiply_whole)(const Target& c, const Factor& a, const Factor& b, kernel_index rows, kernel_index cols,
                         kernel_index depth);

  /// The same for whole arrays by rows: a is rows x depth, b is depth x cols.
  void (*product)(double* c, const double* a, const double* b, kernel_index rows, kernel_index cols,
                  kernel_index depth);

  /// s = X Q X' for an n x m X and a mirrored Q, n and m at most small_factor, m > 0; s is a packed upper triangle by rows.
  void (*congruence)(double* s, const Factor& x, const Factor& q, kernel_index n, kernel_index m);

  /// y[k] += s * x[k], k = 0 .. count - 1.
  void (*add_multiple)(double* y, double s, const double* x, kernel_index count);

  /// r[k] = x[k] + y[k], x[k] - y[k], s * x[k], -x[k], k = 0 .. count - 1. r may be an operand.
  void (*add)(double* r, const double* x, const double* y, kernel_index count);
  void (*subtract)(double* r, const double* x, const double* y, kernel_index count);
  void (*scale)(double* r, double s, const double* x, kernel_index count);
  void (*negate)(double* r, const double* x, kernel_index count);

  /// out(i, j), lines of `stride`, = a(first_row + i, first_col + j), rows x cols elements, 0 outside the shape. Where a is
  /// packed, first_row and first_col are multiples of 8 or the same.
  void (*unpack)(double* out, kernel_offset stride, const Factor& a, kernel_index first_row, kernel_index first_col,
                 kernel_index rows, kernel_index cols);

  /// to(i, j) = from(i, j) in the shape of `to`; both by rows.
  void (*copy_lines)(const Target& to, const Factor& from, kernel_index rows, kernel_index cols);

  /// s[r] = the sum over k = 0 .. terms - 1 of x[k] * line(k)[r], r = 0 .. count - 1, starting from 0.0, or from s[r].
  /// Line k + 1 begins step - k * shrink doubles behind line k. s overlaps no line.
  void (*sum_lines)(double* s, kernel_index count, const double* x, kernel_index terms, const double* first,
                    kernel_offset step, kernel_offset shrink, bool accumulate);

  /// p(i, j) += x[i] * (x[j] * a) in a packed upper triangle; no overlap.
  void (*rank_one)(double* p, kernel_index order, const double* x, double a);

  /// y[k] = (y[k] - s[k]) / d.
  void (*finish_line)(double* y, const double* s, double d, kernel_index count);

  /// f = u' * h for a unit upper triangle u (packed): f[j] = h[j] + the sum of h[i] * u(i, j), i = 0 .. j - 1 increasing.
  void (*times_unit)(const double* u, kernel_index order, const double* h, double* f);

  /// The columns in a U-D filter's measurement update, between partial variances w(0) = r, w(j + 1) = w(j) + v[j] * f[j]:
  /// v[j] = d[j] * f[j], lambda[j] = -f[j] / w(j), d[j] *= w(j) / w(j + 1). A variance that is not |w| > smallest divides
  /// nothing: lambda[j] is 0.0, d[j] stays. Returns the last variance.
  double (*scale_columns)(double* d, kernel_index order, const double* f, double r, double smallest, double* v,
                          double* lambda);

  /// The rows of the unit upper triangle u (packed) there: b[i] = v[i], then for j = i+1 .. order - 1, u(i, j) +=
  /// lambda[j] * b[i], b[i] += v[j] * (what u(i, j) was). At the end all b[i] are divided by `divisor`.
  void (*update_gain)(double* u, kernel_index order, const double* lambda, const double* v, double* b, double divisor);

  /// `rows` lines below a pivot line, of whole registers: l = line[col] / pivot[col] takes the place of line[col], what is
  /// behind becomes line[k] - l * pivot[k]; unless l is 0.0.
  void (*eliminate)(double* lines, kernel_offset stride, kernel_index rows, const double* pivot, kernel_index col,
                    kernel_index cols);

  /// y[k] -= s * x[k] where x[k] is not 0.0.
  void (*subtract_nonzero)(double* y, double s, const double* x, kernel_index count);

  /// r[i] = b[i] - sum over j = 0 .. terms - 1 of a(i, j) * x[j], in twice the working precision; column j of a begins
  /// j * stride doubles behind the first.
  void (*residuals)(double* r, kernel_index count, const double* b, const double* a, kernel_offset stride,
                    kernel_index terms, const double* x);

  /// to(j, i) = from(i, j): rows x cols elements, line strides in doubles.
  void (*transpose)(double* to, kernel_offset to_stride, const double* from, kernel_offset from_stride,
                    kernel_index rows, kernel_index cols);

  /// p = u * d * u' with a unit upper triangle u (p and u packed, apart; order > 0), elements U(i, j) being
  /// (P(i, j) - S)/d(j), and 0.0 where |d(j)| is not beyond `smallest`: d(j) is 0.0 then; how many these are is returned.
  /// Or P(i, j)/d(j) - S whatever d(j) is. scratch: 2 * order lines of `order` rounded up to an odd multiple of 8 doubles,
  /// but not more than unit_strip + 8, and a packed triangle.
  kernel_index (*factor_unit)(double* u, double* d, const double* p, kernel_index order, bool divide_first,
                              double smallest, double* scratch);

  /// Modified weighted Gram-Schmidt on `count` lines of n elements, which lie whole registers apart (stride) and are used
  /// up. d(j) is the weighted square of column j without its shares in those behind it; column j of the unit upper
  /// triangle u (packed) holds the shares of the columns before it. Where |d(j)| is not beyond `smallest`, both are 0.0.
  /// The order of the sums: gram_schmidt.inc. scratch: stride + 2 * count doubles.
  void (*orthogonalise)(double* u, double* d, kernel_index n, double* lines, kernel_index stride, kernel_index count,
                        const double* weights, double smallest, double* scratch);

  /// The Cholesky factor l of an order of 1 to small_factor; l and a are packed lower triangles, maybe the same. When
  /// not dividing by the pivots' roots, but multiplying by their reciprocals, a pivot less than |tolerance * a(j, j)| is
  /// singular, and its row and column 0.0. Returns how many are. `least`, 0.0 before, becomes the least number that a
  /// root was taken of, when that is negative.
  kernel_index (*cholesky_few)(double* l, const double* a, kernel_index order, bool divide, double tolerance,
                               double& least);

  /// Columns of a Cholesky panel that has rows below its square.
  kernel_index cholesky_columns;

  /// The square of a panel: the sums over the columns before, then its columns from `from` on, diagonal elements being
  /// the root of the pivot, that is `scale` or its reciprocal. Ends at a column c with |pivot| < |tolerance * A(c, c)|,
  /// which it leaves alone; c is returned, or `count`. `from` is 0 or behind such a column, once that is in its place and
  /// in the sums.
  kernel_index (*cholesky_square)(CholeskyPanel& panel, kernel_index from);

  /// The rows from panel.below on, the square being finished, of a panel of cholesky_columns columns:
  /// L(i, j) = (A(i, j) - sum over k = 0 .. j - 1 of L(i, k) * L(j, k)) * or / scale(j - first).
  void (*cholesky_rows)(const CholeskyPanel& panel);

  /// Columns of a panel of an inverse, and doubles in a line of its array x: widest_panel at most.
  kernel_index panel_columns;

  /// Columns first .. first + count - 1 of the inverse X of a packed lower triangle with reciprocals on its diagonal:
  /// x[k - first][c] = X(k, first + c), and 0.0 before the diagonal. All of panel_columns, or the last ones of the matrix.
  void (*invert_columns)(const double* packed, kernel_index order, kernel_index first, kernel_index count, double* x);

  /// Writes such columns to their places in a packed triangle.
  void (*store_columns)(double* packed, kernel_index order, kernel_index first, kernel_index count, const double* x);

  /// The columns of X' * X, in the upper triangle s: element (i, j) is the sum over k = j .. order - 1 of X(k, i) * X(k, j).
  /// `packed` holds the columns of X before these; it may be s.
  void (*square_columns)(double* s, const double* packed, kernel_index order, kernel_index first, kernel_index count,
                         const double* x);

  /// X' * X, as above, of the inverse X of a packed lower triangle with reciprocals on its diagonal, in its place. The
  /// order is 1 or 4 to tiny_inverse: closed forms serve 2 and 3.
  void (*square_inverse)(double* packed, kernel_index order);

  /// Solves with a packed triangle of some order: x holds the right-hand side and becomes the solution, element i being
  /// (x[i] - S)/t(i, i), S the sum of t(i, k) * x[k] over what is solved already, in that order, from 0.0. Where
  /// |t(i, i)| is not beyond `smallest`, x[i] becomes 0.0; how many these are is returned. s: scratch of `order` doubles.
  kernel_index (*solve_lower)(const double* packed, kernel_index order, double* x, double* s, double smallest);
  kernel_index (*solve_upper)(const double* packed, kernel_index order, double* x, double* s, double smallest);

  /// The same for `cols` right-hand sides, the columns of b, with an upper or lower triangle. strip: scratch of `order`
  /// lines of panel_columns doubles.
  void (*solve_lines)(const double* packed, kernel_index order, bool upper, double* b, kernel_index cols,
                      double* strip, double smallest);

  // Strips: up to panel_columns columns of a matrix side by side, row i in line i of panel_columns doubles.

  /// Columns of the next strip of so many rows when so many columns are left.
  kernel_index (*strip_columns)(kernel_index rows, kernel_index left);

  /// Copies columns into a strip; lengths: the squared length of each.
  void (*load_strip)(double* strip, const double* from, kernel_offset stride, kernel_index rows, kernel_index cols,
                     double* lengths);

  /// Applies reflections begin .. end - 1 to a strip, in this order.
  void (*reflect)(double* strip, kernel_index rows, kernel_index cols, const Reflectors& h, kernel_index begin,
                  kernel_index end);

  /// The same for end - 1 down to 0. A reflection without v takes off a(j, c) * beta, be it zero or not.
  void (*reflect_back)(double* strip, kernel_index rows, kernel_index cols, const Reflectors& h, kernel_index end);

  /// Finds and applies the reflections of columns first .. of a matrix, which the ones before have been applied to. A
  /// diagonal element whose square is less than 1e-22 of its column's length becomes 0.0. Below it remains are left.
  void (*find_reflectors)(double* strip, kernel_index rows, kernel_index cols, kernel_index first, const Reflectors& h,
                          const double* lengths);

  /// Copies what lies on and above the diagonal, the strip's columns being first ..; line 0 of `to` begins with column 0.
  void (*store_upper)(double* to, kernel_offset stride, kernel_offset shrink, kernel_index first, kernel_index cols,
                      const double* strip);

  /// For columns k = j + 2 .. j + 1 + count: gamma[k] = (gamma[k] + u * R(j, k)) * f; R(j, k) -= u * gamma[k];
  /// a(i, k) -= gamma[k] * a(i, j). Then gamma[k] is the sum of a(i, k) * a(i, j + 1) over increasing rows, from 0.0.
  void (*reduce)(const Reduction& p, kernel_index count);
};

/// The instance for this processor, chosen at the first call. (Without <atomic>: see instance.inc.)
extern const Kernels* chosen_kernels;
const Kernels& ChooseKernels() noexcept;
__attribute__((always_inline)) inline const Kernels& kernels() noexcept {
  const Kernels* const chosen = __atomic_load_n(&chosen_kernels, __ATOMIC_RELAXED);
  return chosen != nullptr ? *chosen : ChooseKernels();
}

// The instances; not every platform has every one.
extern const Kernels kernels_portable;
extern const Kernels kernels_sse2;
extern const Kernels kernels_avx2;
extern const Kernels kernels_avx512;

}  // namespace quorvel::detail

#endif
