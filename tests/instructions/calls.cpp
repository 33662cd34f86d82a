// The calls whose instructions are counted, run under callgrind by count.sh. Counts, unlike times, do not drift with the
// machine: the kernels are those for SSE2 on every processor.
//
// Each call runs twice before it is counted: the first one binds symbols and lets malloc find its blocks.

#include <valgrind/callgrind.h>

#include <cstdint>

#include "quorvel/quorvel.h"

extern "C" __attribute__((visibility("default"))) const char* quorvel_choose_kernels(const char* const*, unsigned) {
  return "sse2";
}

namespace {

template <class Call>
void Count(const char* name, Call call) {
  call();
  call();
  CALLGRIND_ZERO_STATS;
  CALLGRIND_TOGGLE_COLLECT;
  call();
  CALLGRIND_TOGGLE_COLLECT;
  CALLGRIND_DUMP_STATS_AT(name);
}

/// Takes a result over and lets it end, as in a user's expression.
template <class K>
void Take(K& result) {
  K taken(result);
  asm volatile("" : : "g"(&taken) : "memory");
}

double Number() {  // in [-1, 1), always the same sequence
  static std::uint64_t state = 1;
  state = state * 6364136223846793005u + 1442695040888963407u;
  return static_cast<double>(static_cast<std::int64_t>(state)) * 0x1p-63;
}

RegularMatrix Regular(unsigned m, unsigned n) {
  RegularMatrix a(m, n);
  for (unsigned k = 0; k < m * n; ++k) a.data()[k] = Number();
  return a;
}

SymmetricMatrix Covariance(unsigned n) {
  SymmetricMatrix p(AAT(Regular(n, n)));
  for (unsigned i = 0; i < n; ++i) p(i, i) += 1.0;
  return p;
}

RegularSparseMatrix Sparse(unsigned n, unsigned per_row) {
  RegularSparseMatrix a(n, n);
  a.SetGrowBy(n * per_row);
  for (unsigned i = 0; i < n; ++i) {
    SparseElement* previous = nullptr;
    for (unsigned k = 0; k < per_row; ++k) {
      previous = a.SparseMatrixInsert(previous, i, (n / per_row) * k + (i * 7 + k * 3) % (n / per_row), Number());
    }
  }
  return a;
}

template <unsigned n>
void Dense(const char* const (&names)[15]) {
  const RegularMatrix a = Regular(n, n), b = Regular(n, n);
  const SymmetricMatrix p = Covariance(n), q = Covariance(n);
  const DiagonalMatrix d(n);
  RegularMatrix general(a);
  for (unsigned i = 0; i < n; ++i) general(i, i) += n;
  const RegularMatrix& invertible = general;
  unsigned k = 0;
  Count(names[k++], [&] { Take(a + b); });
  Count(names[k++], [&] { Take(p + q); });
  Count(names[k++], [&] { Take(a * 2.5); });
  Count(names[k++], [&] { Take(transpose(a)); });
  Count(names[k++], [&] { Take(a * b); });
  Count(names[k++], [&] { Take(ATB(a, b)); });
  Count(names[k++], [&] { Take(ABT(a, b)); });
  Count(names[k++], [&] { Take(AAT(a)); });
  Count(names[k++], [&] { Take(AQAT(a, p)); });
  Count(names[k++], [&] { Take(ATPA(a, p)); });
  Count(names[k++], [&] { Take(p * b); });
  Count(names[k++], [&] { Take(CholeskyFactor(p, 1e-12)); });
  Count(names[k++], [&] { Take(InverseByCholesky(p, 1e-12)); });
  Count(names[k++], [&] { Take(inv(invertible)); });
  Count(names[k++], [&] { Take(invertible > a); });
}

#define QUORVEL_NAMES(N)                                                                                          \
  {                                                                                                               \
    "A+B " #N, "P+Q " #N, "A*s " #N, "transpose " #N, "A*B " #N, "ATB " #N, "ABT " #N, "AAT " #N, "AQAT " #N,     \
        "ATPA " #N, "P*B " #N, "CholeskyFactor " #N, "InverseByCholesky " #N, "inv " #N, "A>B " #N                 \
  }

void Filter(unsigned n) {
  UpperTriangularMatrix u(n), r(n);
  DiagonalMatrix d(n), noise(2);
  UDFactor(u, d, Covariance(n));
  const RegularMatrix h = Regular(1, n), g = Regular(n, 2);
  RegularMatrix phi = Regular(n, n), gain(n, 1);
  for (unsigned i = 0; i < n; ++i) phi(i, i) += n;
  noise(0, 0) = noise(1, 1) = 0.5;
  const SymmetricMatrix p = Covariance(n);
  const RegularMatrix v = Regular(n, 1);
  const UpperTriangularMatrix u0(u);
  const DiagonalMatrix d0(d);
  SymmetricMatrix s(p);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) r(i, j) = i == j ? 3.0 : Number();
  }
  const UpperTriangularMatrix r0(r);
  const RegularMatrix z0 = Regular(n, 1), rows0 = Regular(4, n), rows_z0 = Regular(4, 1);
  RegularMatrix z(z0), rows(rows0), rows_z(rows_z0);

  Count("UDFactor 9", [&] { UDFactor(u, d, p); });
  Count("UDMeasurementUpdate 9", [&] {
    u = u0;
    d = d0;
    UDMeasurementUpdate(u, d, h, 0.5, gain);
  });
  Count("UDTimeUpdate 9", [&] {
    u = u0;
    d = d0;
    UDTimeUpdate(u, d, phi, g, noise);
  });
  Count("RankOneUpdate 9", [&] { RankOneUpdate(s, v.data(), 0.5); });
  Count("Householder_Reduction 9, 4 measurements", [&] {
    r = r0;
    z = z0;
    rows = rows0;
    rows_z = rows_z0;
    Householder_Reduction(4, r, z, rows, rows_z);
  });
  Count("covariance step 9", [&] {
    s = p;
    s = AQAT(phi, s) + p;
    const RegularMatrix sht(ABT(s, h));
    const double variance = scalar(h * sht) + 0.5;
    s -= AAT(sht) * (1.0 / variance);
  });
}

void SparseCalls() {
  const RegularSparseMatrix a = Sparse(40, 4), b = Sparse(40, 5);
  const RegularMatrix dense = Regular(40, 3);
  Count("sparse build 40 x 40, 4 a row", [&] { Sparse(40, 4); });
  Count("sparse copy", [&] { RegularSparseMatrix c(a); });
  Count("sparse A+B", [&] { Take(a + b); });
  Count("sparse A*B", [&] { Take(a * b); });
  Count("sparse A*s", [&] { Take(a * 2.5); });
  Count("sparse transpose", [&] { Take(transpose(a)); });
  Count("sparse times dense 40 x 3", [&] { Take(a * dense); });
  Count("sparse ATA", [&] { Take(ATA(a)); });
}

}  // namespace

int main() {
  Dense<3>(QUORVEL_NAMES(3));
  Dense<6>(QUORVEL_NAMES(6));
  Dense<15>(QUORVEL_NAMES(15));
  Filter(9);
  SparseCalls();
  return 0;
}
