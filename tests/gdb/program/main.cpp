// What the debugger test stops in: one object of every printed type.
#include "quorvel/convenience.h"
#include "quorvel/quorvel.h"

namespace {

void Stop() { asm volatile("" ::: "memory"); }

}  // namespace

int main() {
  RegularMatrix r(2, 3);
  for (unsigned k = 0; k < 6; ++k) r.data()[k] = k + 0.5;
  SymmetricMatrix s(2);
  s(0, 0) = 4.0;
  s(0, 1) = -1.0;
  s(1, 1) = 3.0;
  s.set_nsing(1);
  UpperTriangularMatrix u(2);
  u.SetRow(0, 7.0);
  LowerTriangularMatrix l(2);
  l.SetRow(1, 5.0);
  DiagonalMatrix d(2);
  d(1, 1) = 2.0;
  d.set_ok(false);
  RegularMatrix large(40, 50);
  RegularMatrix empty;
  auto element = s(1, 0);
  int code = 0;
  RegularSparseMatrix rs(2, 3);
  rs(1, 2) = 8.0;
  SymmetricSparseMatrix ss(2);
  ss(1, 0) = 9.0;
  auto cell = rs(1, 2);
  quorvel::Owned<SymmetricMatrix> owned = quorvel::own(s);
  const RegularMatrix& reference = r;
  Matrix* base = &u;
  RegularSparseMatrix many(3, 3);
  for (unsigned k = 0; k < 9; ++k) many(k / 3, k % 3) = k + 1.0;
  DiagonalMatrix slope(4);
  RegularMatrix& temporary = *new RegularMatrix(1, 1);
  temporary(0, 0) = 6.0;
  temporary.set_dispensable(true);
  MatrixException caught(40340);
  Stop();
  temporary.DestroyIfDispensable();
  return static_cast<int>(r.nrows() + large.nrows() + empty.nrows() + owned.nrows() + reference.nrows() + base->nrows() +
                          many.nrows() + slope.nrows()) + code + (element > cell ? 1 : 0) + caught.code();
}
