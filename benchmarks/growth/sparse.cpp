// Operations on sparse matrices, from a thousand to a million stored elements: does the time grow as they do?
//
// Ours makes its result and destroys it, Eigen assigns to a matrix that exists, CHOLMOD makes and frees. Columns of the
// results are sorted, by CHOLMOD too.

#include <Eigen/SparseCholesky>
#include <utility>

#include "growth/shapes.h"

namespace {

using bench::Cholmod;
using bench::EigenSparse;
using bench::Kind;
using bench::Shape;
using Hold = std::function<void(bench::Race&)>;

constexpr int kValues = 1, kSorted = 1;

/// The same two matrices for all.
struct Operands {
  Operands(Kind kind, unsigned elements)
      : first(kind, elements, 1), second(kind, elements, 2), a(bench::Filled(first)), b(bench::Filled(second)),
        ea(bench::EigenFilled(first)), eb(bench::EigenFilled(second)), ca(cholmod.filled(first)), cb(cholmod.filled(second)) {}
  Shape first, second;
  RegularSparseMatrix a, b;
  EigenSparse ea, eb, ec;
  Cholmod cholmod;
  Cholmod::Matrix ca, cb;
};

template <Kind kind>
void Build(bench::Size size, const Hold& hold) {
  const Shape shape(kind, size.n, 1);
  EigenSparse ea;
  Cholmod cholmod;
  bench::Race race;
  race.add("Quorvel", "SparseMatrixInsert", [&](auto use) {
    const RegularSparseMatrix a(bench::Filled(shape));
    use(bench::Elements(a));
  });
  race.add("Eigen", "reserve, insert", [&](auto use) {
    ea = bench::EigenFilled(shape);
    use(bench::Elements(ea));
  });
  race.add("CHOLMOD", "triplets", [&](auto use) {
    const Cholmod::Matrix a = cholmod.filled(shape);
    use(bench::Elements(a));
  });
  hold(race);
}

// One element after the other, in no order.
template <Kind kind>
void Insert(bench::Size size, const Hold& hold) {
  const Shape ordered(kind, size.n, 1);
  Shape shape(ordered);
  bench::Numbers numbers(7);
  for (std::size_t k = shape.size() - 1; k > 0; --k) {
    const std::size_t other = static_cast<std::size_t>((numbers.next() + 1.0) * 0.5 * static_cast<double>(k + 1));
    std::swap(shape.rows[k], shape.rows[other]);
    std::swap(shape.cols[k], shape.cols[other]);
    std::swap(shape.values[k], shape.values[other]);
  }
  EigenSparse ea;
  Cholmod cholmod;
  bench::Race race;
  race.add("Quorvel", "Put", [&](auto use) {
    RegularSparseMatrix a(shape.n, shape.n);
    a.SetGrowBy(static_cast<unsigned>(shape.size()));
    for (std::size_t k = 0; k < shape.size(); ++k) a.Put(shape.rows[k], shape.cols[k], shape.values[k]);
    use(bench::Elements(a));
  });
  race.add("Eigen", "reserve, coeffRef", [&](auto use) {
    ea = bench::EigenFilled(shape);
    use(bench::Elements(ea));
  });
  race.add("CHOLMOD", "triplets", [&](auto use) {
    const Cholmod::Matrix a = cholmod.filled(shape);
    use(bench::Elements(a));
  });
  hold(race);
}

template <Kind kind>
void Copy(bench::Size size, const Hold& hold) {
  Operands o(kind, size.n);
  bench::Race race;
  race.add("Quorvel", "copy", [&](auto use) {
    const RegularSparseMatrix c(std::as_const(o.a));
    use(bench::Elements(c));
  });
  race.add("Eigen", "copy", [&](auto use) {
    o.ec = o.ea;
    use(bench::Elements(o.ec));
  });
  race.add("CHOLMOD", "cholmod_copy_sparse", [&](auto use) {
    const Cholmod::Matrix c = o.cholmod.own(cholmod_copy_sparse(o.ca.get(), &o.cholmod.common));
    use(bench::Elements(c));
  });
  hold(race);
}

template <Kind kind>
void Sum(bench::Size size, const Hold& hold) {
  Operands o(kind, size.n);
  double one[2] = {1.0, 0.0};
  bench::Race race;
  race.add("Quorvel", "operator+", [&](auto use) {
    const RegularSparseMatrix c(std::as_const(o.a) + std::as_const(o.b));
    use(bench::Elements(c));
  });
  race.add("Eigen", "operator+", [&](auto use) {
    o.ec = o.ea + o.eb;
    use(bench::Elements(o.ec));
  });
  race.add("CHOLMOD", "cholmod_add", [&](auto use) {
    const Cholmod::Matrix c =
        o.cholmod.own(cholmod_add(o.ca.get(), o.cb.get(), one, one, kValues, kSorted, &o.cholmod.common));
    use(bench::Elements(c));
  });
  hold(race);
}

template <Kind kind>
void Product(bench::Size size, const Hold& hold) {
  Operands o(kind, size.n);
  bench::Race race;
  race.add("Quorvel", "operator*", [&](auto use) {
    const RegularSparseMatrix c(std::as_const(o.a) * std::as_const(o.b));
    use(bench::Elements(c));
  });
  race.add("Eigen", "operator*", [&](auto use) {
    o.ec = o.ea * o.eb;
    use(bench::Elements(o.ec));
  });
  race.add("CHOLMOD", "cholmod_ssmult", [&](auto use) {
    const Cholmod::Matrix c =
        o.cholmod.own(cholmod_ssmult(o.cb.get(), o.ca.get(), 0, kValues, kSorted, &o.cholmod.common));
    use(bench::Elements(c));
  });
  hold(race);
}

template <Kind kind>
void Transpose(bench::Size size, const Hold& hold) {
  Operands o(kind, size.n);
  bench::Race race;
  race.add("Quorvel", "transpose", [&](auto use) {
    const RegularSparseMatrix c(transpose(std::as_const(o.a)));
    use(bench::Elements(c));
  });
  race.add("Eigen", "transpose", [&](auto use) {
    o.ec = o.ea.transpose();
    use(bench::Elements(o.ec));
  });
  race.add("CHOLMOD", "cholmod_transpose", [&](auto use) {
    const Cholmod::Matrix c = o.cholmod.own(cholmod_transpose(o.ca.get(), kValues, &o.cholmod.common));
    use(bench::Elements(c));
  });
  hold(race);
}

// The middle half of the rows and columns.
template <Kind kind>
void Extract(bench::Size size, const Hold& hold) {
  Operands o(kind, size.n);
  const unsigned n = o.first.n, at = n / 4, count = n / 2;
  std::vector<int> lines(count);
  for (unsigned k = 0; k < count; ++k) lines[k] = static_cast<int>(at + k);
  bench::Race race;
  race.add("Quorvel", "CopySubMat", [&](auto use) {
    RegularSparseMatrix c(count, count);
    c.SetGrowBy(size.n / 2);
    CopySubMat(c, 0, 0, std::as_const(o.a), at, at, count, count);
    use(bench::Elements(c));
  });
  race.add("Eigen", "block", [&](auto use) {
    o.ec = o.ea.block(at, at, count, count);
    use(bench::Elements(o.ec));
  });
  race.add("CHOLMOD", "cholmod_submatrix", [&](auto use) {
    const Cholmod::Matrix c = o.cholmod.own(cholmod_submatrix(o.ca.get(), lines.data(), count, lines.data(), count, kValues,
                                                              kSorted, &o.cholmod.common));
    use(bench::Elements(c));
  });
  hold(race);
}

// A copy without the middle half of the rows.
template <Kind kind>
void RemoveRows(bench::Size size, const Hold& hold) {
  Operands o(kind, size.n);
  const unsigned n = o.first.n, at = n / 4, count = n / 2, left = n - count;
  std::vector<int> kept;
  for (unsigned i = 0; i < n; ++i) {
    if (i < at || i >= at + count) kept.push_back(static_cast<int>(i));
  }
  bench::Race race;
  race.add("Quorvel", "copy, RemoveRows", [&](auto use) {
    RegularSparseMatrix c(std::as_const(o.a));
    c.RemoveRows(at, count);
    use(bench::Elements(c));
  });
  race.add("Eigen", "topRows, bottomRows", [&](auto use) {
    o.ec.resize(left, n);
    o.ec.topRows(at) = o.ea.topRows(at);
    o.ec.bottomRows(left - at) = o.ea.bottomRows(left - at);
    use(bench::Elements(o.ec));
  });
  race.add("CHOLMOD", "cholmod_submatrix", [&](auto use) {
    const Cholmod::Matrix c = o.cholmod.own(cholmod_submatrix(o.ca.get(), nullptr, -1, kept.data(),
                                                              static_cast<long>(kept.size()), kValues, kSorted,
                                                              &o.cholmod.common));
    use(bench::Elements(c));
  });
  hold(race);
}

// A symmetric matrix made general: its upper triangle is stored, both are wanted.
template <Kind kind>
void BothTriangles(bench::Size size, const Hold& hold) {
  const Shape shape(kind, size.n, 1);
  SymmetricSparseMatrix s(shape.n, shape.n);
  s.SetGrowBy(size.n);
  SparseElement* previous = nullptr;
  EigenSparse upper(shape.n, shape.n), both;
  upper.reserve(Eigen::VectorXi::Constant(shape.n, static_cast<int>(shape.per_row)));
  for (std::size_t k = 0; k < shape.size(); ++k) {
    const unsigned row = shape.rows[k], col = shape.cols[k];
    if (k != 0 && row != shape.rows[k - 1]) previous = nullptr;
    if (col < row) continue;
    previous = s.SparseMatrixInsert(previous, row, col, shape.values[k]);
    upper.insert(static_cast<int>(row), static_cast<int>(col)) = shape.values[k];
  }
  upper.makeCompressed();
  bench::Race race;
  race.add("Quorvel", "RegularSparseMatrix", [&](auto use) {
    const RegularSparseMatrix c(std::as_const(s));
    use(bench::Elements(c));
  });
  race.add("Eigen", "selfadjointView", [&](auto use) {
    both = upper.selfadjointView<Eigen::Upper>();
    use(bench::Elements(both));
  });
  hold(race);
}

// Times a general matrix of eight columns.
template <Kind kind>
void TimesVectors(bench::Size size, const Hold& hold) {
  Operands o(kind, size.n);
  const unsigned n = o.first.n;
  const RegularMatrix b = bench::Regular(n, 8, 3);
  const Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor> eb = bench::ToEigen(b);
  Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor> ec(n, 8);
  bench::Race race;
  race.add("Quorvel", "operator*", [&](auto use) {
    RegularMatrix c(std::as_const(o.a) * b);
    use(c);
  });
  race.add("Eigen", "operator*", [&](auto use) {
    ec.noalias() = o.ea * eb;
    use(ec);
  });
  hold(race);
}

// The factor of a positive definite band, without reordering.
void Cholesky(bench::Size size, const Hold& hold) {
  const unsigned n = size.n / 5;  // the diagonal and four elements above it
  SymmetricSparseMatrix p(n, n);
  p.SetGrowBy(size.n);
  EigenSparse rows(n, n);
  rows.reserve(Eigen::VectorXi::Constant(n, 9));
  for (unsigned i = 0; i < n; ++i) {
    SparseElement* previous = nullptr;
    for (unsigned j = i; j < std::min(i + 5, n); ++j) {
      const double v = i == j ? 9.0 : 1.0 / (1.0 + (i + 2 * j) % 7);
      previous = p.SparseMatrixInsert(previous, i, j, v);
      rows.insert(static_cast<int>(i), static_cast<int>(j)) = v;
      if (i != j) rows.insert(static_cast<int>(j), static_cast<int>(i)) = v;
    }
  }
  rows.makeCompressed();
  const Eigen::SparseMatrix<double> ep = rows;
  Eigen::SimplicialLLT<Eigen::SparseMatrix<double>, Eigen::Lower, Eigen::NaturalOrdering<int>> llt;

  Cholmod cholmod;
  cholmod.common.nmethods = 1;
  cholmod.common.method[0].ordering = CHOLMOD_NATURAL;
  cholmod.common.postorder = 0;
  cholmod.common.final_ll = 1;
  cholmod_sparse view{};
  view.nrow = view.ncol = n;
  view.nzmax = static_cast<std::size_t>(ep.nonZeros());
  view.p = const_cast<int*>(ep.outerIndexPtr());
  view.i = const_cast<int*>(ep.innerIndexPtr());
  view.x = const_cast<double*>(ep.valuePtr());
  view.stype = -1;
  view.itype = CHOLMOD_INT;
  view.xtype = CHOLMOD_REAL;
  view.dtype = CHOLMOD_DOUBLE;
  view.sorted = view.packed = 1;

  bench::Race race;
  race.add("Quorvel", "CholeskyFactor", [&](auto use) {
    const RegularSparseMatrix l(CholeskyFactor(std::as_const(p), 1e-12));
    use(bench::Elements(l));
  });
  EigenSparse el;
  race.add("Eigen", "SimplicialLLT, natural order", [&](auto use) {
    llt.compute(ep);
    use(bench::Later([&] {
      el = llt.matrixL();
      return bench::Values(bench::Elements(el));
    }));
  });
  race.add("CHOLMOD", "cholmod_factorize, natural order", [&](auto use) {
    cholmod_factor* l = cholmod_analyze(&view, &cholmod.common);
    cholmod_factorize(&view, l, &cholmod.common);
    use(bench::Later([&] {
      cholmod_factor* copy = cholmod_copy_factor(l, &cholmod.common);
      const Cholmod::Matrix by_columns = cholmod.own(cholmod_factor_to_sparse(copy, &cholmod.common));
      cholmod_free_factor(&copy, &cholmod.common);
      const Cholmod::Matrix by_rows = cholmod.own(cholmod_transpose(by_columns.get(), kValues, &cholmod.common));
      return bench::Values(bench::Elements(by_rows));
    }));
    cholmod_free_factor(&l, &cholmod.common);
  });
  hold(race);
}

constexpr Kind kBand = Kind::band, kScattered = Kind::scattered;
const bench::Entered build_band("growth", "sparse build (band)", bench::Growing(), Build<kBand>);
const bench::Entered build_scattered("growth", "sparse build (scattered)", bench::Growing(), Build<kScattered>);
const bench::Entered insert_band("growth", "sparse insertion in any order (band)", bench::Growing(), Insert<kBand>);
const bench::Entered insert_scattered("growth", "sparse insertion in any order (scattered)", bench::Growing(),
                                      Insert<kScattered>);
const bench::Entered copy_band("growth", "sparse copy (band)", bench::Growing(), Copy<kBand>);
const bench::Entered sum_band("growth", "sparse sum (band)", bench::Growing(), Sum<kBand>);
const bench::Entered sum_scattered("growth", "sparse sum (scattered)", bench::Growing(), Sum<kScattered>);
const bench::Entered product_band("growth", "sparse product (band)", bench::Growing(), Product<kBand>);
const bench::Entered product_scattered("growth", "sparse product (scattered)", bench::Growing(), Product<kScattered>);
const bench::Entered transpose_band("growth", "sparse transpose (band)", bench::Growing(), Transpose<kBand>);
const bench::Entered transpose_scattered("growth", "sparse transpose (scattered)", bench::Growing(),
                                         Transpose<kScattered>);
const bench::Entered extract_band("growth", "sparse extraction (band)", bench::Growing(), Extract<kBand>);
const bench::Entered extract_scattered("growth", "sparse extraction (scattered)", bench::Growing(), Extract<kScattered>);
const bench::Entered remove_band("growth", "sparse removal of rows (band)", bench::Growing(), RemoveRows<kBand>);
const bench::Entered remove_scattered("growth", "sparse removal of rows (scattered)", bench::Growing(),
                                      RemoveRows<kScattered>);
const bench::Entered both_band("growth", "sparse both triangles (band)", bench::Growing(), BothTriangles<kBand>);
const bench::Entered both_scattered("growth", "sparse both triangles (scattered)", bench::Growing(),
                                    BothTriangles<kScattered>);
const bench::Entered vectors("growth", "sparse times eight vectors (scattered)", bench::Growing(),
                             TimesVectors<kScattered>);
const bench::Entered cholesky("growth", "sparse CholeskyFactor (band)", bench::Growing(), Cholesky);

}  // namespace
