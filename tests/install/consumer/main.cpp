// Uses a matrix and catches an exception thrown inside the library.

#include <quorvel/quorvel.h>

#include <cstdio>

int main() {
  RegularMatrix a(1, 3);
  a = 2.0;
  int code = 0;
  try {
    a.SumRow(7);
  } catch (const MatrixException& e) {
    code = e.code();
  }
  std::printf("sum %g, code %d\n", (abort_reset(), a.SumRow(0)), code);
}
