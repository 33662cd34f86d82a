// Calls whose arguments have preconditions that their types do not tell (and that nothing checks): text and arrays of the
// right length, indices that exist, elements of the store.

#include "misuse/calls.h"

namespace quorvel::test {
namespace {

#define HAND_NAME_(line) by_hand_##line
#define HAND_NAME(line) HAND_NAME_(line)
#define BY_HAND(symbol) const AddCall HAND_NAME(__LINE__)(symbol, [](Arguments& a)

// ---------------------------------------------------------------------------------------------------------------------
// Text output.

template <class K>
void ToStream(Arguments& a) {
  Run<const K&, std::FILE*>(a, [](const K& m, std::FILE* file) { PrintMFile(m, file, "name", "%.17g"); });
}
template <class K>
void ToPath(Arguments& a) {
  Run<const K&, bool>(a, [](const K& m, bool exists) {
    PrintMFile(m, exists ? "/dev/null" : "/no such folder/file", "name", "%.17g", exists ? nullptr : "preamble\n");
  });
}
template <class K>
void ToArray(Arguments& a) {
  Run<const K&, std::FILE*>(a, [](const K& m, std::FILE* file) { m.PrintArray(file, "%*.*e%c", 12, 5); });
}

#define PRINTS(K)                                                                                                       \
  const AddCall stream_##K("PrintMFile(" #K " const&, _IO_FILE*, char const*, char const*)", ToStream<K>);               \
  const AddCall path_##K("PrintMFile(" #K " const&, char const*, char const*, char const*, char const*)", ToPath<K>);
#define PRINTS_ARRAY(K) const AddCall array_##K(#K "::PrintArray(_IO_FILE*, char const*, int, int) const", ToArray<K>);

PRINTS(RegularMatrix)
PRINTS(SymmetricMatrix)
PRINTS(UpperTriangularMatrix)
PRINTS(LowerTriangularMatrix)
PRINTS(DiagonalMatrix)
PRINTS_ARRAY(RegularMatrix)
PRINTS_ARRAY(SymmetricMatrix)
PRINTS_ARRAY(UpperTriangularMatrix)
PRINTS_ARRAY(LowerTriangularMatrix)
PRINTS_ARRAY(DiagonalMatrix)
PRINTS_ARRAY(RegularSparseMatrix)
PRINTS_ARRAY(SymmetricSparseMatrix)

BY_HAND("PrintMFile(SparseMatrix const&, _IO_FILE*, char const*)") {
  Run<const SparseMatrix&, std::FILE*>(a, [](const SparseMatrix& m, std::FILE* file) { PrintMFile(m, file, "%.17g"); });
});
const AddCall sparse_path("PrintMFile(SparseMatrix const&, char const*, char const*, char const*, char const*)",
                          ToPath<SparseMatrix>);
BY_HAND("PrintMFile(double const*, unsigned int, bool, _IO_FILE*, char const*, char const*)") {
  const double* values = a.Numbers();
  const unsigned count = a.SmallIndex(8);
  const bool diagonal = a.Coin();
  a.Begin();
  PrintMFile(values, count, diagonal, a.File(), "name", "%g");
});
BY_HAND("PrintMFile(double const*, unsigned int, bool, char const*, char const*, char const*, char const*)") {
  const double* values = a.Numbers();
  const unsigned count = a.SmallIndex(8);
  const bool diagonal = a.Coin();
  a.Begin();
  PrintMFile(values, count, diagonal, "/dev/null", "name", "%g", "preamble\n");
});

// ---------------------------------------------------------------------------------------------------------------------
// Errors.

BY_HAND("M_abort(int)") {
  a.Begin();
  M_abort(123);
});
BY_HAND("abort_set(int&)") {
  int code = a.Coin() ? 0 : Arguments::kPending;
  a.Begin();
  abort_set(code);
});
BY_HAND("TestNULL(void const*, int)") {
  const void* const p = a.Coin() ? nullptr : &a;
  a.Begin();
  TestNULL(p, 123);
});
BY_HAND("SetAbortCallback(void (*)(int))") {
  a.Begin();
  SetAbortCallback(nullptr);
});

// ---------------------------------------------------------------------------------------------------------------------
// Kernels on arrays.

double (*Square3(double* values))[3] { return reinterpret_cast<double(*)[3]>(values); }
double (*Square2(double* values))[2] { return reinterpret_cast<double(*)[2]>(values); }

BY_HAND("AQAT3x3(double*, double const (*) [3], double const*)") {
  double *out = a.Numbers(), *m = a.Numbers(), *q = a.Numbers();
  a.Begin();
  AQAT3x3(out, Square3(m), q);
});
BY_HAND("CholeskyInverse3x3(double const*, double*, double)") {
  double *p = a.Numbers(), *out = a.Numbers();
  p[0] = 9.0, p[2] = 9.0, p[5] = a.Coin() ? 9.0 : 0.0;
  a.Begin();
  CholeskyInverse3x3(p, out, 1e-12);
});
BY_HAND("CholeskyFactor(double const*, unsigned int, double*, double)") {
  double *p = a.Numbers(), *out = a.Numbers();
  const unsigned n = a.SmallIndex(4);
  for (unsigned j = 0; j < n; ++j) p[j + j * (j + 1) / 2] = j == 2 ? 0.0 : 9.0;
  a.Begin();
  CholeskyFactor(p, n, out, 1e-12);
});
BY_HAND("inv2x2_rm(double const (*) [2], double (*) [2], double)") {
  double *p = a.Numbers(), *out = a.Numbers();
  const double tol = a.Number();
  a.Begin();
  inv2x2_rm(Square2(p), Square2(out), tol);
});
BY_HAND("inv3x3_rm(double const (*) [3], double (*) [3], double)") {
  double *p = a.Numbers(), *out = a.Numbers();
  const double tol = a.Number();
  a.Begin();
  inv3x3_rm(Square3(p), Square3(out), tol);
});

// ---------------------------------------------------------------------------------------------------------------------
// Arrays and vectors whose length is not checked.

template <class K>
void AssignTo(Arguments& a) {
  K& m = a.Object<K>(false);
  const double* values = a.Numbers();
  const unsigned n = a.SmallIndex(9), other = a.SmallIndex(9);
  const unsigned cols = a.Coin() ? n : other;
  a.Begin();
  m.SingleArrayMatrix::Assign(values, n, cols);
}
const AddCall assign("SingleArrayMatrix::Assign(double const*, unsigned int, unsigned int)",
                     [](Arguments& a) { a.Coin() ? AssignTo<RegularMatrix>(a) : AssignTo<SymmetricMatrix>(a); });

BY_HAND("L1Regression(double const*, RegularMatrix const&, double*)") {
  const RegularMatrix& A = a.Object<RegularMatrix>(true);
  const double* y = a.Numbers();
  double* x = a.Numbers();
  a.Begin();
  L1Regression(y, A, x);
});
BY_HAND("Simplx(RegularMatrix&, int, int, int, int, int, int*, int*)") {
  const unsigned m1 = a.SmallIndex(3), m2 = a.SmallIndex(3), m3 = a.SmallIndex(2), n = 1 + a.SmallIndex(4);
  const unsigned m = m1 + m2 + m3;
  RegularMatrix& t = a.Exactly<RegularMatrix>(m + 2, n + 1, false);
  for (unsigned i = 0; i < m + 2; ++i) {
    for (unsigned j = 0; j < n + 1; ++j) {
      const double x = a.SmallNumber();
      t.data()[i * (n + 1) + j] = j == 0 && i != 0 && x < 0 ? -x : x;
    }
  }
  int nonbasic[8], basic[8];
  a.Begin();
  Simplx(t, static_cast<int>(m), static_cast<int>(n), static_cast<int>(m1), static_cast<int>(m2), static_cast<int>(m3),
         nonbasic, basic);
});
BY_HAND("Householder_Reduction(unsigned int, UpperTriangularMatrix&, RegularMatrix&, RegularMatrix&, RegularMatrix&)") {
  const unsigned m = a.SmallIndex(6), size = a.Size();
  const unsigned n = size > 40 ? 40 : size;
  auto& R = a.Exactly<UpperTriangularMatrix>(n, n, false);
  auto& zR = a.Exactly<RegularMatrix>(n, 1, false);
  auto& A = a.Exactly<RegularMatrix>(m, n, false);
  auto& zA = a.Exactly<RegularMatrix>(m, 1, false);
  a.Begin();
  Householder_Reduction(m, R, zR, A, zA);
});

template <class K>
void RankOne(Arguments& a) {
  const unsigned m = a.SmallIndex(8), other = a.SmallIndex(8);
  const unsigned n = std::is_same_v<K, RegularMatrix> ? other : m;
  K& target = a.Exactly<K>(m, n, false);
  const RegularMatrix& x = a.Exactly<RegularMatrix>(m, 1, true);
  const RegularMatrix& y = a.Exactly<RegularMatrix>(1, n, true);
  const double s = a.Number();
  a.Begin();
  RankOneUpdate(target, x, y, s);
}
const AddCall rank_one_regular("RankOneUpdate(RegularMatrix&, RegularMatrix const&, RegularMatrix const&, double)",
                               RankOne<RegularMatrix>);
const AddCall rank_one_symmetric("RankOneUpdate(SymmetricMatrix&, RegularMatrix const&, RegularMatrix const&, double)",
                                 RankOne<SymmetricMatrix>);

template <class K, class V>
void RankOneListed(Arguments& a) {
  const unsigned n = 2 + a.SmallIndex(6);
  K& target = a.Exactly<K>(n, n, false);
  const V& x = a.Exactly<V>(n, 1, true);
  const V& y = a.Exactly<V>(n, 1, true);
  const unsigned rows[] = {0, 1}, cols[] = {1};
  const double s = a.Number();
  a.Begin();
  RankOneUpdateNZ(target, x, rows, 2, y, cols, 1, s);
}
#define LISTED "unsigned int const*, unsigned int, "
const AddCall listed_regular("RankOneUpdateNZ(RegularMatrix&, RegularMatrix const&, " LISTED "RegularMatrix const&, " LISTED
                             "double)",
                             RankOneListed<RegularMatrix, RegularMatrix>);
const AddCall listed_symmetric("RankOneUpdateNZ(SymmetricMatrix&, RegularMatrix const&, " LISTED
                               "RegularMatrix const&, " LISTED "double)",
                               RankOneListed<SymmetricMatrix, RegularMatrix>);
const AddCall listed_sparse("RankOneUpdateNZ(SparseMatrix&, RegularSparseMatrix const&, " LISTED
                            "RegularSparseMatrix const&, " LISTED "double)",
                            [](Arguments& a) {
                              a.Coin() ? RankOneListed<RegularSparseMatrix, RegularSparseMatrix>(a)
                                       : RankOneListed<SymmetricSparseMatrix, RegularSparseMatrix>(a);
                            });

template <class X>
void NonZeros(Arguments& a) {
  X& x = a.Object<RegularMatrix>(std::is_const_v<X>);
  RegularMatrix& out = a.Object<RegularMatrix>(false);
  const unsigned n = a.Index();
  unsigned indices[64];
  a.Begin();
  SetNonZeros(n, x, out, indices);
}
const AddCall non_zeros("SetNonZeros(unsigned int, RegularMatrix&, RegularMatrix&, unsigned int*)",
                        NonZeros<RegularMatrix>);
const AddCall non_zeros_const("SetNonZeros(unsigned int, RegularMatrix const&, RegularMatrix&, unsigned int*)",
                              NonZeros<const RegularMatrix>);

// ---------------------------------------------------------------------------------------------------------------------
// References to elements.

template <class M, class Use>
void OnCell(Arguments& a, Use use) {
  Run<M&, unsigned, unsigned, double>(a, [use](M& m, unsigned i, unsigned j, double x) { use(m(i, j), x); });
}
#define PROXIES(M, p)                                                                                                      \
  const AddCall p##_read(#M "::proxy::operator double() const",                                                            \
                         [](Arguments& a) { OnCell<M>(a, [](auto cell, double) { return double(cell); }); });              \
  const AddCall p##_set(#M "::proxy::operator=(double)",                                                                   \
                        [](Arguments& a) { OnCell<M>(a, [](auto cell, double x) { cell = x; }); });                        \
  const AddCall p##_copy(#M "::proxy::operator=(" #M "::proxy const&)",                                                    \
                         [](Arguments& a) { OnCell<M>(a, [](auto cell, double) { const auto same(cell); cell = same; }); }); \
  const AddCall p##_add(#M "::proxy::operator+=(double)",                                                                  \
                        [](Arguments& a) { OnCell<M>(a, [](auto cell, double x) { cell += x; }); });                       \
  const AddCall p##_subtract(#M "::proxy::operator-=(double)",                                                             \
                             [](Arguments& a) { OnCell<M>(a, [](auto cell, double x) { cell -= x; }); });                  \
  const AddCall p##_multiply(#M "::proxy::operator*=(double)",                                                             \
                             [](Arguments& a) { OnCell<M>(a, [](auto cell, double x) { cell *= x; }); });                  \
  const AddCall p##_divide(#M "::proxy::operator/=(double)",                                                               \
                           [](Arguments& a) { OnCell<M>(a, [](auto cell, double x) { cell /= x; }); });
PROXIES(SquareMatrix, dense)
PROXIES(SparseMatrix, sparse)

// ---------------------------------------------------------------------------------------------------------------------
// The sparse store.

template <class T>
void CopyDense(Arguments& a) {
  Run<SparseMatrix&, const T&>(a, [](SparseMatrix& target, const T& source) {
    // A symmetric target is documented to take symmetric sources only.
    if (target.kind() == Matrix::regular_sparse || source.IsSymmetric()) target.CopyMat(source);
  });
}
#define COPIES(T) \
  const AddCall copy_##T("void SparseMatrix::CopyMat<" #T ">(" #T " const&)", [](Arguments& a) { CopyDense<T>(a); });
COPIES(RegularMatrix)
COPIES(SymmetricMatrix)
COPIES(UpperTriangularMatrix)
COPIES(LowerTriangularMatrix)
COPIES(DiagonalMatrix)

BY_HAND("SparseMatrix::Initialize(unsigned int, unsigned int)") {
  SparseMatrix& m = a.Object<SparseMatrix>(false);
  m.FreeMemory();
  const unsigned rows = a.SmallIndex(9);
  const unsigned cols = m.kind() == Matrix::symmetric_sparse ? rows : a.SmallIndex(9);
  a.Begin();
  m.Initialize(rows, cols);
});
BY_HAND("SparseMatrix::SparseMatrixInsert(unsigned int, unsigned int, double)") {
  SparseMatrix& m = a.Object<SparseMatrix>(false);
  const unsigned i = a.Index(), j = a.Index();
  const double x = a.Number();
  const bool free = m.Cell_Loc(i, j) == nullptr;
  a.Begin();
  if (free) m.SparseMatrixInsert(i, j, x);
});
BY_HAND("SparseMatrix::SparseMatrixInsert(SparseElement*, unsigned int, unsigned int, double)") {
  SparseMatrix& m = a.Object<SparseMatrix>(false);
  const unsigned i = a.SmallIndex(m.rows);
  const unsigned beyond = a.Coin() ? 0 : m.cols;  // past the last column: refused
  SparseElement* last = m.rows == 0 ? nullptr : m.rowHeads[i];
  while (last != nullptr && last->nextInRow != nullptr) last = last->nextInRow;
  const unsigned after = last == nullptr ? 0 : last->col + 1;
  const unsigned j = m.kind() == Matrix::symmetric_sparse && after < i ? i : after;
  a.Begin();
  m.SparseMatrixInsert(last, i, j + beyond, 1.0);
});

// The first stored element of the matrix, null when there is none.
SparseElement* SomeElement(const SparseMatrix& m) {
  for (unsigned i = 0; i < m.rows; ++i) {
    if (m.rowHeads[i] != nullptr) return m.rowHeads[i];
  }
  return nullptr;
}

BY_HAND("SparseMatrix::SparseMatrixRemove(SparseElement*)") {
  SparseMatrix& m = a.Object<SparseMatrix>(false);
  a.Begin();
  if (SparseElement* const e = SomeElement(m)) m.SparseMatrixRemove(e);
});
BY_HAND("SparseMatrix::SparseMatrixRemove(SparseElement*, SparseElement*)") {
  SparseMatrix& m = a.Object<SparseMatrix>(false);
  a.Begin();
  SparseElement* const e = SomeElement(m);
  if (e == nullptr) return;
  e->nextInRow != nullptr ? m.SparseMatrixRemove(e, e->nextInRow) : m.SparseMatrixRemove(nullptr, e);
});
// Out of one list and into it again; a cell outside is refused.
BY_HAND("SparseMatrix::SparseMatrixRowRemove(SparseElement*)") {
  SparseMatrix& m = a.Object<SparseMatrix>(false);
  a.Begin();
  SparseElement* const e = SomeElement(m);
  if (e == nullptr) return;
  m.SparseMatrixRowRemove(e);
  m.SparseMatrixRowInsert(e->row, e->col, e);
});
BY_HAND("SparseMatrix::SparseMatrixColRemove(SparseElement*)") {
  SparseMatrix& m = a.Object<SparseMatrix>(false);
  a.Begin();
  SparseElement* const e = SomeElement(m);
  if (e == nullptr) return;
  m.SparseMatrixColRemove(e);
  m.SparseMatrixColInsert(e->row, e->col, e);
});
BY_HAND("SparseMatrix::SparseMatrixRowInsert(unsigned int, unsigned int, SparseElement*)") {
  SparseMatrix& m = a.Object<SparseMatrix>(false);
  const bool outside = a.Coin();
  a.Begin();
  SparseElement* const e = SomeElement(m);
  if (e == nullptr) return;
  if (outside) m.SparseMatrixRowInsert(m.rows, e->col, e);
  m.SparseMatrixRowRemove(e);
  m.SparseMatrixRowInsert(e->row, e->col, e);
});
BY_HAND("SparseMatrix::SparseMatrixColInsert(unsigned int, unsigned int, SparseElement*)") {
  SparseMatrix& m = a.Object<SparseMatrix>(false);
  const bool outside = a.Coin();
  a.Begin();
  SparseElement* const e = SomeElement(m);
  if (e == nullptr) return;
  if (outside) m.SparseMatrixColInsert(e->row, m.cols, e);
  m.SparseMatrixColRemove(e);
  m.SparseMatrixColInsert(e->row, e->col, e);
});

}  // namespace
}  // namespace quorvel::test
