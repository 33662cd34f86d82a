// Sparse matrices of growing size, in our lists and in the peers' compressed arrays.
//
// Band: ten elements around the diagonal of each row; neighbours in a column lie near each other in memory. Scattered:
// four elements anywhere in each row; every step along a column of linked elements is a jump, their worst case.
//
// Eigen stores by rows. CHOLMOD stores by columns, so it gets the transposes: its columns are our rows.

#ifndef QUORVEL_BENCHMARKS_SHAPES_H
#define QUORVEL_BENCHMARKS_SHAPES_H

#include <cholmod.h>

#include <Eigen/SparseCore>
#include <algorithm>
#include <vector>

#include "race/race.h"
#include "race/samples.h"

namespace bench {

enum class Kind { band, scattered };

/// n x n; row by row, columns ascending.
struct Shape {
  Shape(Kind kind, unsigned elements, std::uint64_t seed) : per_row(kind == Kind::band ? 10 : 4), n(elements / per_row) {
    Numbers numbers(seed);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned k = 0; k < per_row; ++k) {
        unsigned j;
        if (kind == Kind::band) {
          const unsigned first = i < 5 ? 0 : std::min(i - 5, n - per_row);
          j = first + k;
        } else {  // one in each quarter of the row
          const double at = (numbers.next() + 1.0) * 0.5;
          j = k * (n / per_row) + static_cast<unsigned>(at * (n / per_row));
        }
        rows.push_back(i);
        cols.push_back(j);
        values.push_back(numbers.next() + 2.0);
      }
    }
  }
  unsigned per_row, n;
  std::vector<unsigned> rows, cols;
  std::vector<double> values;
  std::size_t size() const { return values.size(); }
};

using EigenSparse = Eigen::SparseMatrix<double, Eigen::RowMajor>;

inline RegularSparseMatrix Filled(const Shape& shape) {
  RegularSparseMatrix a(shape.n, shape.n);
  a.SetGrowBy(static_cast<unsigned>(shape.size()));
  SparseElement* previous = nullptr;
  for (std::size_t k = 0; k < shape.size(); ++k) {
    if (k % shape.per_row == 0) previous = nullptr;
    previous = a.SparseMatrixInsert(previous, shape.rows[k], shape.cols[k], shape.values[k]);
  }
  return a;
}

inline EigenSparse EigenFilled(const Shape& shape) {
  EigenSparse a(shape.n, shape.n);
  a.reserve(Eigen::VectorXi::Constant(shape.n, static_cast<int>(shape.per_row)));
  for (std::size_t k = 0; k < shape.size(); ++k) {
    a.insert(static_cast<int>(shape.rows[k]), static_cast<int>(shape.cols[k])) = shape.values[k];
  }
  a.makeCompressed();
  return a;
}

/// The library's state, and matrices that end by themselves.
class Cholmod {
 public:
  Cholmod() { cholmod_start(&common); }
  ~Cholmod() { cholmod_finish(&common); }
  Cholmod(const Cholmod&) = delete;
  Cholmod& operator=(const Cholmod&) = delete;

  struct End {
    cholmod_common* common;
    void operator()(cholmod_sparse* a) const { cholmod_free_sparse(&a, common); }
  };
  using Matrix = std::unique_ptr<cholmod_sparse, End>;
  Matrix own(cholmod_sparse* a) { return Matrix(a, End{&common}); }

  /// From triplets in any order, as its users build.
  Matrix filled(const Shape& shape) {
    cholmod_triplet* t = cholmod_allocate_triplet(shape.n, shape.n, shape.size(), 0, CHOLMOD_REAL, &common);
    int *const i = static_cast<int*>(t->i), *const j = static_cast<int*>(t->j);
    double* const x = static_cast<double*>(t->x);
    for (std::size_t k = 0; k < shape.size(); ++k) {
      i[k] = static_cast<int>(shape.cols[k]);
      j[k] = static_cast<int>(shape.rows[k]);
      x[k] = shape.values[k];
    }
    t->nnz = shape.size();
    Matrix a = own(cholmod_triplet_to_sparse(t, shape.size(), &common));
    cholmod_free_triplet(&t, &common);
    return a;
  }

  cholmod_common common;
};

// All stored elements as row, column, value, row by row.

inline auto Elements(const RegularSparseMatrix& a) {
  return Later([&a] {
    std::vector<double> v;
    for (unsigned i = 0; i < a.nrows(); ++i) {
      for (const SparseElement* e = a.GetFirstInRow(i); e != nullptr; e = e->nextInRow) {
        v.insert(v.end(), {static_cast<double>(e->row), static_cast<double>(e->col), e->value});
      }
    }
    return v;
  });
}

inline auto Elements(const EigenSparse& a) {
  return Later([&a] {
    std::vector<double> v;
    for (int i = 0; i < a.outerSize(); ++i) {
      for (EigenSparse::InnerIterator e(a, i); e; ++e) {
        v.insert(v.end(), {static_cast<double>(e.row()), static_cast<double>(e.col()), e.value()});
      }
    }
    return v;
  });
}

inline auto Elements(const Cholmod::Matrix& a) {
  return Later([&a] {
    std::vector<double> v;
    const int *const begin = static_cast<const int*>(a->p), *const index = static_cast<const int*>(a->i);
    const double* const x = static_cast<const double*>(a->x);
    for (std::size_t j = 0; j < a->ncol; ++j) {
      for (int k = begin[j]; k < begin[j + 1]; ++k) {
        v.insert(v.end(), {static_cast<double>(j), static_cast<double>(index[k]), x[k]});
      }
    }
    return v;
  });
}

inline std::vector<Size> Growing() { return {{1000, 0}, {10000, 0}, {100000, 0}, {1000000, 0}}; }

}  // namespace bench

#endif
