// The published table of allocations is what the operations do: every row is measured, and every measured operation
// has its row.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <string>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

// "operation" -> allocations, as published.
std::map<std::string, long> Published() {
  std::ifstream page(QUORVEL_DOCS_DIR "/ALLOCATIONS.md");
  std::map<std::string, long> rows;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("| `", 0) != 0) continue;
    const std::size_t end = line.find("` | ");
    rows[line.substr(3, end - 3)] = std::stol(line.substr(end + 4));
  }
  return rows;
}

struct Filter {
  explicit Filter(unsigned n)
      : A(n, n), B(n, n), C(n, n), H(2, n), v(n, 1), P(n), Q(n), D(n), U(n), D2(n) {
    Random random(n);
    for (RegularMatrix* m : {&A, &B, &H, &v}) FillMatrix(*m, Pattern::kUniform, random);
    for (unsigned i = 0; i < n; ++i) {
      P(i, i) = Q(i, i) = 1.0 + i;
      D(i, i) = U(i, i) = 1.0;
    }
  }
  RegularMatrix A, B, C, H, v;
  SymmetricMatrix P, Q;
  DiagonalMatrix D;
  UpperTriangularMatrix U;
  DiagonalMatrix D2;
};

using Operation = std::function<void(Filter&)>;

template <class K>
void End(K& result) {
  result.DestroyIfDispensable();
}

const std::map<std::string, Operation>& Operations() {
  static const std::map<std::string, Operation> all = {
      {"A + B", [](Filter& f) { End(f.A + f.B); }},
      {"(A + B) + A", [](Filter& f) { End((f.A + f.B) + f.A); }},
      {"A - B", [](Filter& f) { End(f.A - f.B); }},
      {"P + Q", [](Filter& f) { End(f.P + f.Q); }},
      {"P + D", [](Filter& f) { End(f.P + f.D); }},
      {"Plus(C, A, B)", [](Filter& f) { Plus(f.C, f.A, f.B); }},
      {"A += B", [](Filter& f) { f.A += f.B; }},
      {"-A", [](Filter& f) { End(-f.A); }},
      {"2.0 * A", [](Filter& f) { End(2.0 * f.A); }},
      {"2.0 * (A + B)", [](Filter& f) { End(2.0 * (f.A + f.B)); }},
      {"A * B", [](Filter& f) { End(f.A * f.B); }},
      {"P * A", [](Filter& f) { End(f.P * f.A); }},
      {"U * U", [](Filter& f) { End(f.U * f.U); }},
      {"Mult(C, A, B)", [](Filter& f) { Mult(f.C, f.A, f.B); }},
      {"ATA(A)", [](Filter& f) { End(ATA(f.A)); }},
      {"ATB(H, H)", [](Filter& f) { End(ATB(f.H, f.H)); }},
      {"ABT(P, H)", [](Filter& f) { End(ABT(f.P, f.H)); }},
      {"ATPA(A, P)", [](Filter& f) { End(ATPA(f.A, f.P)); }},
      {"AQAT(A, P)", [](Filter& f) { End(AQAT(f.A, f.P)); }},
      {"AQAT(A, P) + Q", [](Filter& f) { End(AQAT(f.A, f.P) + f.Q); }},
      {"SQS(P, Q)", [](Filter& f) { End(SQS(f.P, f.Q)); }},
      {"PWeightedNorm(v, P)", [](Filter& f) { EXPECT_NE(PWeightedNorm(f.v, f.P), 0.0); }},
      {"transpose(A)", [](Filter& f) { End(transpose(f.A)); }},
      {"transpose(U)", [](Filter& f) { End(transpose(f.U)); }},
      {"A(0, 1, 0, 1)", [](Filter& f) { End(f.A(0, 1, 0, 1)); }},
      {"CholeskyFactor(P, 0.0)", [](Filter& f) { End(CholeskyFactor(f.P, 0.0)); }},
      {"InverseByCholesky(P, 0.0)", [](Filter& f) { End(InverseByCholesky(f.P, 0.0)); }},
      {"inv(P)", [](Filter& f) { End(inv(f.P)); }},
      {"P > v", [](Filter& f) { End(f.P > f.v); }},
      {"UDFactor(U, D, P)", [](Filter& f) { UDFactor(f.U, f.D2, f.P); }},
  };
  return all;
}

TEST(AllocationTable, EveryRowIsMeasured) {
  KeepsBlocks();  // the tables of this test
  const std::map<std::string, long> published = Published();
  ASSERT_FALSE(published.empty()) << "no page " QUORVEL_DOCS_DIR "/ALLOCATIONS.md";
  EXPECT_EQ(published.size(), Operations().size());
  for (const auto& [name, operation] : Operations()) {
    const auto row = published.find(name);
    if (row == published.end()) {
      ADD_FAILURE() << name << " is not on the page";
      continue;
    }
    for (const unsigned n : {9u, 15u, 24u}) {
      Filter f(n);
      const long before = Allocations();
      operation(f);
      EXPECT_EQ(Allocations() - before, row->second) << name << ", n = " << n;
    }
  }
}

}  // namespace
