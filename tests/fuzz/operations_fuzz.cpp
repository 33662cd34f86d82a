// Random sequences of operations over all seven kinds, beside plain arrays that say what the results are.
//
// Elements are small whole numbers, so every sum is exact whatever its order, and results must equal the model's. After each
// step the matrix that changed is compared element by element, and a sparse one looks after its own structure. Sizes that
// do not fit must be refused and leave everything as it was. Operands may be dispensable.
#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "../src/ops/tables/blocks.h"
#include "../src/ops/tables/products.h"
#include "../src/ops/tables/structured.h"
#include "../src/ops/tables/sums.h"
#include "fuzz/input.h"
#include "quorvel/quorvel.h"
#include "support/sparse.h"

namespace {

using quorvel::fuzz::Finding;
using quorvel::fuzz::Input;
using quorvel::fuzz::Require;

struct Model {
  unsigned m = 0, n = 0;
  std::vector<double> e;
  Model() = default;
  Model(unsigned rows, unsigned cols) : m(rows), n(cols), e(std::size_t{rows} * cols, 0.0) {}
  double& at(unsigned i, unsigned j) { return e[std::size_t{i} * n + j]; }
  double at(unsigned i, unsigned j) const { return e[std::size_t{i} * n + j]; }
};

template <class K>
struct Slot {
  K matrix;
  Model model;
};

template <class... Kinds>
using Pools = std::tuple<std::array<Slot<Kinds>, 2>...>;
using Pool = Pools<RegularMatrix, SymmetricMatrix, UpperTriangularMatrix, LowerTriangularMatrix, DiagonalMatrix,
                   RegularSparseMatrix, SymmetricSparseMatrix>;

template <class K>
constexpr bool kSparse = std::is_base_of_v<SparseMatrix, K>;
template <class K>
constexpr bool kRectangular = std::is_same_v<K, RegularMatrix> || std::is_same_v<K, RegularSparseMatrix>;
template <class K>
constexpr bool kMirrors = std::is_same_v<K, SymmetricMatrix> || std::is_same_v<K, SymmetricSparseMatrix>;

// Whether the kind can hold something else than zero at (i, j).
template <class K>
bool Holds(unsigned i, unsigned j) {
  if (std::is_same_v<K, UpperTriangularMatrix>) return i <= j;
  if (std::is_same_v<K, LowerTriangularMatrix>) return i >= j;
  if (std::is_same_v<K, DiagonalMatrix>) return i == j;
  return true;
}

class Machine {
 public:
  explicit Machine(Input& input) : in(input) {
    std::apply([&](auto&... kind) { ((Renew(kind[0]), Renew(kind[1])), ...); }, pool_);
  }

  template <class K>
  Slot<K>& Any() {
    return std::get<std::array<Slot<K>, 2>>(pool_)[in.Below(2)];
  }

  // Up to 9, the largest order whose products stand in registers; now and then one near which other ways begin.
  unsigned Size() {
    constexpr unsigned larger[] = {10, 12, 15, 17, 23, 24, 25, 26};
    const unsigned choice = in.Below(64);
    return choice < 56 ? choice % 10 : larger[choice - 56];
  }

  // A new matrix of small whole numbers.
  template <class K>
  void Renew(Slot<K>& slot) {
    const unsigned m = Size();
    const unsigned n = kRectangular<K> ? Size() : m;
    slot.matrix = K(m, n);
    slot.model = Model(m, n);
    const int density = in.Integer(1, 4);
    for (unsigned i = 0; i < m; ++i) {
      for (unsigned j = kMirrors<K> ? i : 0; j < n; ++j) {
        if (!Holds<K>(i, j) || in.Integer(0, density) == 0) continue;
        Set(slot, i, j, in.Integer(-3, 3));
      }
    }
  }

  template <class K>
  static void Set(Slot<K>& slot, unsigned i, unsigned j, double x) {
    slot.matrix(i, j) = x;
    slot.model.at(i, j) = x;
    if (kMirrors<K>) slot.model.at(j, i) = x;
  }

  // The operand itself, or a dispensable copy.
  template <class K>
  static const K& Pass(const Slot<K>& slot, bool dispensable) {
    if (!dispensable) return slot.matrix;
    K* copy = new K(slot.matrix);
    copy->set_dispensable(true);
    return *copy;
  }

  template <class K>
  void Check(Slot<K>& slot, const char* where) {
    const K& a = slot.matrix;
    Require(a.nrows() == slot.model.m && a.ncols() == slot.model.n, "size", where);
    if constexpr (kSparse<K>) Require(quorvel::test::FaultOf(a).empty(), "sparse structure", where);
    double largest = 0.0;
    for (unsigned i = 0; i < slot.model.m; ++i) {
      for (unsigned j = 0; j < slot.model.n; ++j) {
        const double x = slot.model.at(i, j);
        Require(a(i, j) == x, "element", where);
        largest = std::fmax(largest, std::fabs(x));
      }
    }
    // Far from where whole numbers end.
    if (!(largest < 1e6)) Renew(slot);
  }

  // Runs `result = operation`, which must be refused exactly when the sizes do not fit.
  template <class R, class Operation>
  void Assign(bool fits, Model expected, const char* where, Operation operation) {
    Slot<R>& target = Any<R>();
    try {
      target.matrix = operation();
      Require(fits, "sizes that do not fit were accepted", where);
      target.model = std::move(expected);
    } catch (const MatrixException& e) {
      Require(!fits && e.code() >= 40000 && e.code() < 50000, "refused", where);
      abort_reset();
    }
    Check(target, where);
  }

  Input& in;

 private:
  Pool pool_;
};

Model Product(const Model& a, const Model& b) {
  Model c(a.m, b.n);
  for (unsigned i = 0; i < c.m; ++i) {
    for (unsigned k = 0; k < a.n; ++k) {
      for (unsigned j = 0; j < c.n; ++j) c.at(i, j) += a.at(i, k) * b.at(k, j);
    }
  }
  return c;
}
Model Transposed(const Model& a) {
  Model t(a.n, a.m);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) t.at(j, i) = a.at(i, j);
  }
  return t;
}
Model Sum(const Model& a, const Model& b, double sign) {
  Model c = a;
  for (std::size_t k = 0; k < c.e.size(); ++k) c.e[k] += sign * b.e[k];
  return c;
}
// What a symmetric result keeps of a product: the upper triangle, mirrored.
Model Mirrored(const Model& a) {
  Model s = a;
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < i; ++j) s.at(i, j) = a.at(j, i);
  }
  return s;
}

using Operation = void (*)(Machine&);
std::vector<Operation>& Operations() {
  static std::vector<Operation> list;
  return list;
}

template <class A, class B, class Do>
void WithTwo(Machine& machine, Do work) {
  Slot<A>& a = machine.Any<A>();
  Slot<B>& b = machine.Any<B>();
  const unsigned flags = machine.in.Below(4);
  const auto pass_a = [&]() -> const A& { return Machine::Pass(a, (flags & 1) != 0); };
  const auto pass_b = [&]() -> const B& { return Machine::Pass(b, (flags & 2) != 0); };
  work(a.model, b.model, pass_a, pass_b);
}

// ---------------------------------------------------------------------------------------------------------------------
// Sums and products of every pair.

// D - S keeps the sign of the elements off the diagonal, as documented.
template <class A, class B>
Model SumOf(const Model& x, const Model& y, bool minus) {
  Model sum = Sum(x, y, minus ? -1.0 : 1.0);
  if (minus && std::is_same_v<A, DiagonalMatrix> && std::is_same_v<B, SymmetricMatrix>) {
    for (unsigned i = 0; i < sum.m; ++i) {
      for (unsigned j = 0; j < sum.n; ++j) sum.at(i, j) = i == j ? sum.at(i, j) : y.at(i, j);
    }
  }
  return sum;
}

template <class R, class A, class B>
void Add(Machine& machine) {
  const bool minus = machine.in.Below(2) == 1;
  WithTwo<A, B>(machine, [&](const Model& x, const Model& y, auto a, auto b) {
    const bool fits = x.m == y.m && x.n == y.n;
    machine.Assign<R>(fits, fits ? SumOf<A, B>(x, y, minus) : Model(), minus ? "difference" : "sum",
                      [&]() -> R& {
                        const A& p = a();
                        const B& q = b();
                        return minus ? p - q : p + q;
                      });
  });
}

template <class R, class A, class B>
void Times(Machine& machine) {
  WithTwo<A, B>(machine, [&](const Model& x, const Model& y, auto a, auto b) {
    const bool fits = x.n == y.m;
    machine.Assign<R>(fits, fits ? Product(x, y) : Model(), "product", [&]() -> R& {
      const A& p = a();
      const B& q = b();
      return p * q;
    });
  });
}

template <class A, class B>
void Compound(Machine& machine) {
  Slot<A>& target = machine.Any<A>();
  Slot<B>& b = machine.Any<B>();
  const bool minus = machine.in.Below(2) == 1;
  const bool dispensable = machine.in.Below(2) == 1;
  const bool fits = target.model.m == b.model.m && target.model.n == b.model.n;
  const Model expected = fits ? Sum(target.model, b.model, minus ? -1.0 : 1.0) : target.model;
  try {
    const B& operand = Machine::Pass(b, dispensable);
    if (minus) {
      target.matrix -= operand;
    } else {
      target.matrix += operand;
    }
    Require(fits, "sizes that do not fit were accepted", "compound");
  } catch (const MatrixException& e) {
    Require(!fits && e.code() >= 40000 && e.code() < 50000, "refused", "compound");
    abort_reset();
  }
  target.model = expected;
  machine.Check(target, "compound");
}

// ---------------------------------------------------------------------------------------------------------------------
// Structured products.

#define STRUCTURED(NAME, FITS, EXPECTED)                                                     \
  template <class R, class A, class B>                                                       \
  void Do##NAME(Machine& machine) {                                                          \
    WithTwo<A, B>(machine, [&](const Model& x, const Model& y, auto a, auto b) {             \
      const bool fits = FITS;                                                                \
      machine.Assign<R>(fits, fits ? EXPECTED : Model(), #NAME, [&]() -> R& {                \
        const A& p = a();                                                                    \
        const B& q = b();                                                                    \
        return NAME(p, q);                                                                   \
      });                                                                                    \
    });                                                                                      \
  }
STRUCTURED(ATB, x.m == y.m, Product(Transposed(x), y))
STRUCTURED(ABT, x.n == y.n, Product(x, Transposed(y)))
STRUCTURED(ATPA, x.m == y.m && y.m == y.n, Mirrored(Product(Product(Transposed(x), y), x)))
STRUCTURED(AQAT, x.n == y.m && y.m == y.n, Mirrored(Product(Product(x, y), Transposed(x))))
STRUCTURED(SQS, x.n == y.m && y.m == y.n, Mirrored(Product(Product(x, y), x)))
STRUCTURED(SymmetricOfProduct, x.n == y.m && x.m == y.n, Mirrored(Product(x, y)))
STRUCTURED(SymmetricOfABT, x.n == y.n && x.m == y.m, Mirrored(Product(x, Transposed(y))))

// ---------------------------------------------------------------------------------------------------------------------
// One matrix.

template <class K>
void Renew(Machine& machine) {
  machine.Renew(machine.Any<K>());
}

template <class K>
void SetOne(Machine& machine) {
  Slot<K>& slot = machine.Any<K>();
  if (slot.model.e.empty()) return;
  const unsigned i = machine.in.Below(slot.model.m), j = machine.in.Below(slot.model.n);
  const double x = machine.in.Integer(-2, 2);
  if (!Holds<K>(i, j)) return;
  if constexpr (kMirrors<K> && !kSparse<K>) {
    if (i > j) return;  // written above the diagonal only
  }
  Machine::Set(slot, i, j, x);
  machine.Check(slot, "element");
}

template <class K>
void Scale(Machine& machine) {
  Slot<K>& slot = machine.Any<K>();
  const double s = machine.in.Integer(-2, 2);
  const bool in_place = machine.in.Below(2) == 1;
  Model expected = slot.model;
  for (double& x : expected.e) x *= s;
  if (in_place) {
    slot.matrix *= s;
    slot.model = expected;
    machine.Check(slot, "scaling");
  } else {
    const bool dispensable = machine.in.Below(2) == 1;
    machine.Assign<K>(true, expected, "scaled copy", [&]() -> K& { return Machine::Pass(slot, dispensable) * s; });
  }
}

template <class K>
void Negate(Machine& machine) {
  Slot<K>& slot = machine.Any<K>();
  Model expected = slot.model;
  for (double& x : expected.e) x = -x;
  const bool dispensable = machine.in.Below(2) == 1;
  machine.Assign<K>(true, expected, "minus", [&]() -> K& { return -Machine::Pass(slot, dispensable); });
}

template <class K>
void CopyMoveSwap(Machine& machine) {
  Slot<K>& a = machine.Any<K>();
  Slot<K>& b = machine.Any<K>();
  switch (machine.in.Below(3)) {
    case 0:
      a.matrix = std::as_const(b.matrix);
      a.model = Model(b.model);
      break;
    case 1:
      a.matrix.Swap(b.matrix);
      std::swap(a.model, b.model);
      break;
    default: {
      K taken(std::move(a.matrix));
      a.matrix = std::move(taken);
    }
  }
  machine.Check(a, "copy, move or swap");
  machine.Check(b, "copy, move or swap");
}

// To the general kind from any other, and its triangles back.
template <class R, class K>
void Convert(Machine& machine) {
  Slot<K>& slot = machine.Any<K>();
  const bool dispensable = machine.in.Below(2) == 1;
  Slot<R>& target = machine.Any<R>();
  const K& source = Machine::Pass(slot, dispensable);
  const Model expected = slot.model;
  target.matrix = source;
  target.model = expected;
  machine.Check(target, "conversion");
}

template <class R>
void Resize(Machine& machine) {
  Slot<R>& slot = machine.Any<R>();
  const unsigned m = machine.in.Below(9);
  const unsigned n = kRectangular<R> ? machine.in.Below(9) : m;
  Model expected(m, n);
  for (unsigned i = 0; i < m && i < slot.model.m; ++i) {
    for (unsigned j = 0; j < n && j < slot.model.n; ++j) expected.at(i, j) = slot.model.at(i, j);
  }
  slot.matrix.SetSize(m, n, true);
  slot.model = expected;
  machine.Check(slot, "SetSize");
}

// Rows first..last of one line of a general kind.
template <class K>
void Line(Machine& machine) {
  Slot<K>& slot = machine.Any<K>();
  if (slot.model.e.empty()) return;
  const bool row = machine.in.Below(2) == 1;
  const unsigned line = machine.in.Below(row ? slot.model.m : slot.model.n);
  const unsigned length = row ? slot.model.n : slot.model.m;
  const unsigned first = machine.in.Below(length);
  const unsigned last = first + machine.in.Below(length - first);
  const int what = machine.in.Integer(0, 1);
  const double factor = machine.in.Integer(-2, 2);
  for (unsigned k = first; k <= last; ++k) {
    double& x = row ? slot.model.at(line, k) : slot.model.at(k, line);
    x = what == 0 ? -x : x * factor;
  }
  if (row) {
    what == 0 ? slot.matrix.NegateRow(line, first, last) : slot.matrix.MultRow(line, factor, first, last);
  } else {
    what == 0 ? slot.matrix.NegateCol(line, first, last) : slot.matrix.MultCol(line, factor, first, last);
  }
  machine.Check(slot, "line");
}

// Removing lines of the general kinds; appending them.
template <class K>
void Lines(Machine& machine) {
  Slot<K>& slot = machine.Any<K>();
  const bool row = machine.in.Below(2) == 1;
  const bool insert = machine.in.Below(2) == 1;
  const unsigned extent = row ? slot.model.m : slot.model.n;
  if (extent > 20) return;
  // A dense matrix opens lines exactly at its end only, as documented.
  const unsigned at = insert && !kSparse<K> ? extent : machine.in.Below(extent + 1);
  const unsigned count = insert ? machine.in.Below(3) : machine.in.Below(extent - at + 1);
  Model expected(row ? (insert ? extent + count : extent - count) : slot.model.m,
                 row ? slot.model.n : (insert ? extent + count : extent - count));
  for (unsigned i = 0; i < slot.model.m; ++i) {
    for (unsigned j = 0; j < slot.model.n; ++j) {
      unsigned line = row ? i : j;
      if (insert) {
        line += line >= at ? count : 0;
      } else {
        if (line >= at && line < at + count) continue;
        line -= line >= at ? count : 0;
      }
      expected.at(row ? line : i, row ? j : line) = slot.model.at(i, j);
    }
  }
  if (insert) {
    row ? slot.matrix.InsertRows(at, count) : slot.matrix.InsertCols(at, count);
  } else {
    row ? slot.matrix.RemoveRows(at, count) : slot.matrix.RemoveCols(at, count);
  }
  slot.model = expected;
  machine.Check(slot, "lines");
}

template <class K>
void SquareLines(Machine& machine) {
  Slot<K>& slot = machine.Any<K>();
  const unsigned n = slot.model.n;
  if (n > 20) return;
  const unsigned at = machine.in.Below(n + 1);
  const bool insert = machine.in.Below(2) == 1;
  const unsigned count = insert ? machine.in.Below(3) : machine.in.Below(n - at + 1);
  const unsigned order = insert ? n + count : n - count;
  Model expected(order, order);
  const auto moved = [&](unsigned k) { return k < at ? k : insert ? k + count : k - count; };
  const auto gone = [&](unsigned k) { return !insert && k >= at && k < at + count; };
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j < n; ++j) {
      if (!gone(i) && !gone(j)) expected.at(moved(i), moved(j)) = slot.model.at(i, j);
    }
  }
  insert ? slot.matrix.InsertRowsAndCols(at, count) : slot.matrix.RemoveRowsAndCols(at, count);
  slot.model = expected;
  machine.Check(slot, "rows and columns");
}

template <class K>
void Transpose(Machine& machine) {
  Slot<K>& slot = machine.Any<K>();
  const bool dispensable = machine.in.Below(2) == 1;
  machine.Assign<K>(true, Transposed(slot.model), "transpose",
                    [&]() -> K& { return transpose(Machine::Pass(slot, dispensable)); });
}

// A block of any kind into a general one.
template <class R, class K>
void Block(Machine& machine) {
  Slot<R>& target = machine.Any<R>();
  Slot<K>& source = machine.Any<K>();
  if constexpr (std::is_same_v<R, K>) {
    if (&target == &source) return;
  }
  const unsigned row = machine.in.Below(8), col = machine.in.Below(8);
  const unsigned from_row = machine.in.Below(8), from_col = machine.in.Below(8);
  const unsigned rows = machine.in.Below(8), cols = machine.in.Below(8);
  const bool dispensable = machine.in.Below(2) == 1;
  const bool fits = row + rows <= target.model.m && col + cols <= target.model.n && from_row + rows <= source.model.m &&
                    from_col + cols <= source.model.n;
  try {
    const K& operand = Machine::Pass(source, dispensable);
    CopySubMat(target.matrix, row, col, operand, from_row, from_col, rows, cols);
    // An empty block fits where its corner may be outside.
    Require(fits || rows == 0 || cols == 0, "a block that does not fit was accepted");
    if (fits) {
      for (unsigned i = 0; i < rows; ++i) {
        for (unsigned j = 0; j < cols; ++j) target.model.at(row + i, col + j) = source.model.at(from_row + i, from_col + j);
      }
    }
  } catch (const MatrixException& e) {
    Require((!fits || rows == 0 || cols == 0) && e.code() == 40000, "a block that fits was refused");
    abort_reset();
  }
  machine.Check(target, "block");
}

// ---------------------------------------------------------------------------------------------------------------------

#define PAIR3(DO, R, A, B) Operations().push_back(DO<R, A, B>);
#define SUM_LIKE(K, method, code) PAIR3(Add, K, K, K) Operations().push_back(Compound<K, K>);
#define SUM_TARGET(A, B, method, code) \
  PAIR3(Add, A, A, B) PAIR3(Add, A, B, A) Operations().push_back(Compound<A, B>);
#define SUM_FRESH(A, B, method, code) PAIR3(Add, RegularMatrix, A, B) PAIR3(Add, RegularMatrix, B, A)
#define TIMES(R, A, B) PAIR3(Times, R, A, B)
#define USE_ATB(R, A, B) PAIR3(DoATB, R, A, B)
#define USE_ABT(R, A, B) PAIR3(DoABT, R, A, B)
#define USE_ATPA(R, A, B) PAIR3(DoATPA, R, A, B)
#define USE_AQAT(R, A, B) PAIR3(DoAQAT, R, A, B)
#define USE_SQS(R, A, B) PAIR3(DoSQS, R, A, B)
#define USE_SP(R, A, B) PAIR3(DoSymmetricOfProduct, R, A, B)
#define USE_SABT(R, A, B) PAIR3(DoSymmetricOfABT, R, A, B)
#define BLOCK(R, K) Operations().push_back(Block<R, K>);

template <class K>
void OfEveryKind() {
  for (const Operation op : {Renew<K>, SetOne<K>, SetOne<K>, Scale<K>, Negate<K>, CopyMoveSwap<K>, Resize<K>}) {
    Operations().push_back(op);
  }
}

void List() {
  QUORVEL_DENSE_LIKE_SUMS(SUM_LIKE)
  QUORVEL_SPARSE_LIKE_SUMS(SUM_LIKE)
  QUORVEL_DENSE_TARGET_SUMS(SUM_TARGET)
  QUORVEL_DENSE_FRESH_SUMS(SUM_FRESH)
  QUORVEL_SPARSE_MIXED_SUMS(SUM_TARGET)
  QUORVEL_SPARSE_DIAGONAL_TARGET_SUMS(SUM_TARGET)
  QUORVEL_DENSE_SPARSE_TARGET_SUMS(SUM_TARGET)
  QUORVEL_DENSE_SPARSE_FRESH_SUMS(SUM_FRESH)
  QUORVEL_DENSE_PRODUCTS(TIMES)
  QUORVEL_MIXED_PRODUCTS(TIMES)
  QUORVEL_SPARSE_PRODUCTS(TIMES)
  QUORVEL_DENSE_ATB(USE_ATB)
  QUORVEL_SPARSE_ATB(USE_ATB)
  QUORVEL_DENSE_ABT(USE_ABT)
  QUORVEL_SPARSE_ABT(USE_ABT)
  QUORVEL_DENSE_ATPA(USE_ATPA)
  QUORVEL_SPARSE_ATPA(USE_ATPA)
  QUORVEL_DENSE_AQAT(USE_AQAT)
  QUORVEL_SPARSE_AQAT(USE_AQAT)
  QUORVEL_DENSE_SQS(USE_SQS)
  QUORVEL_SPARSE_SQS(USE_SQS)
  QUORVEL_DENSE_SYMMETRIC_OF_PRODUCT(USE_SP)
  QUORVEL_SPARSE_SYMMETRIC_OF_PRODUCT(USE_SP)
  QUORVEL_DENSE_SYMMETRIC_OF_ABT(USE_SABT)
  QUORVEL_SPARSE_SYMMETRIC_OF_ABT(USE_SABT)
  QUORVEL_DENSE_BLOCK_SOURCES(BLOCK, RegularMatrix)
  QUORVEL_SPARSE_BLOCK_SOURCES(BLOCK, RegularMatrix)
  QUORVEL_DENSE_BLOCK_SOURCES(BLOCK, RegularSparseMatrix)
  QUORVEL_SPARSE_BLOCK_SOURCES(BLOCK, RegularSparseMatrix)
  OfEveryKind<RegularMatrix>();
  OfEveryKind<SymmetricMatrix>();
  OfEveryKind<UpperTriangularMatrix>();
  OfEveryKind<LowerTriangularMatrix>();
  OfEveryKind<DiagonalMatrix>();
  OfEveryKind<RegularSparseMatrix>();
  OfEveryKind<SymmetricSparseMatrix>();
  for (const Operation op :
       {Convert<RegularMatrix, SymmetricMatrix>, Convert<RegularMatrix, UpperTriangularMatrix>,
        Convert<RegularMatrix, LowerTriangularMatrix>, Convert<RegularMatrix, DiagonalMatrix>,
        Convert<RegularMatrix, RegularSparseMatrix>, Convert<RegularMatrix, SymmetricSparseMatrix>,
        Convert<RegularSparseMatrix, RegularMatrix>, Convert<RegularSparseMatrix, SymmetricMatrix>,
        Convert<RegularSparseMatrix, UpperTriangularMatrix>, Convert<RegularSparseMatrix, LowerTriangularMatrix>,
        Convert<RegularSparseMatrix, DiagonalMatrix>, Convert<RegularSparseMatrix, SymmetricSparseMatrix>,
        Convert<SymmetricMatrix, DiagonalMatrix>, Convert<SymmetricMatrix, SymmetricSparseMatrix>,
        Convert<SymmetricSparseMatrix, SymmetricMatrix>, Convert<SymmetricSparseMatrix, DiagonalMatrix>,
        Convert<UpperTriangularMatrix, DiagonalMatrix>, Convert<LowerTriangularMatrix, DiagonalMatrix>,
        Line<RegularMatrix>, Line<RegularSparseMatrix>, Lines<RegularMatrix>, Lines<RegularSparseMatrix>,
        SquareLines<SymmetricMatrix>, SquareLines<UpperTriangularMatrix>, SquareLines<LowerTriangularMatrix>,
        SquareLines<DiagonalMatrix>, Transpose<RegularMatrix>, Transpose<RegularSparseMatrix>}) {
    Operations().push_back(op);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (Operations().empty()) List();
  Input input(data, size);
  Machine machine(input);
  for (unsigned step = 0; step < 200 && !input.empty(); ++step) {
    const unsigned high = input.Byte();
    const unsigned low = input.Byte();
    Operations()[(high * 256 + low) % Operations().size()](machine);
    Require(GetErrorCode() == 0, "a code is pending");
  }
  return 0;
}
