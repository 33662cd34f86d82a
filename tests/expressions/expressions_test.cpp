// What a user writes: variables, constants and temporaries of all kinds in sums, products and mixtures of them. Each
// expression is compared with the same expression over plain arrays; whole numbers make the order of sums immaterial.

#include <gtest/gtest.h>

#include "quorvel/quorvel.h"
#include "support/plain.h"

namespace quorvel::test {
namespace {

constexpr unsigned kOrder = 4;

Plain operator+(const Plain& a, const Plain& b) {
  Plain c(a.m, a.n);
  for (std::size_t k = 0; k < c.e.size(); ++k) c.e[k] = a.e[k] + b.e[k];
  return c;
}

Plain operator*(double s, const Plain& a) {
  Plain c(a.m, a.n);
  for (std::size_t k = 0; k < c.e.size(); ++k) c.e[k] = s * a.e[k];
  return c;
}

Plain operator-(const Plain& a) { return -1.0 * a; }
Plain operator-(const Plain& a, const Plain& b) { return a + -b; }

Plain operator*(const Plain& a, const Plain& b) {
  Plain c(a.m, b.n);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < b.n; ++j) {
      for (unsigned k = 0; k < a.n; ++k) c(i, j) += a(i, k) * b(k, j);
    }
  }
  return c;
}

Plain T(const Plain& a) {
  Plain t(a.n, a.m);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) t(j, i) = a(i, j);
  }
  return t;
}

// A matrix of whole numbers.
template <class K>
K Whole(int seed) {
  K a(kOrder, kOrder);
  for (unsigned i = 0; i < kOrder; ++i) {
    for (unsigned j = 0; j < kOrder; ++j) {
      const bool stored = std::is_same_v<K, DiagonalMatrix>          ? i == j
                          : std::is_same_v<K, LowerTriangularMatrix> ? i >= j
                          : std::is_same_v<K, RegularMatrix> || std::is_same_v<K, RegularSparseMatrix> ? true
                                                                                                      : i <= j;
      const bool sparse = std::is_base_of_v<SparseMatrix, K>;
      const int value = static_cast<int>(i * 7 + j * 3 + static_cast<unsigned>(seed) * 5) % 11 - 4;
      if (stored && !(sparse && (i + 2 * j) % 3 == 0)) a(i, j) = value;
    }
  }
  return a;
}

class Expressions : public ::testing::Test {
 protected:
  RegularMatrix R = Whole<RegularMatrix>(1);
  SymmetricMatrix S = Whole<SymmetricMatrix>(2);
  UpperTriangularMatrix U = Whole<UpperTriangularMatrix>(3);
  LowerTriangularMatrix L = Whole<LowerTriangularMatrix>(4);
  DiagonalMatrix D = Whole<DiagonalMatrix>(5);
  RegularSparseMatrix G = Whole<RegularSparseMatrix>(6);
  SymmetricSparseMatrix H = Whole<SymmetricSparseMatrix>(7);
  const RegularMatrix cR = Whole<RegularMatrix>(8);
  const SymmetricMatrix cS = Whole<SymmetricMatrix>(9);
  const UpperTriangularMatrix cU = Whole<UpperTriangularMatrix>(10);
  const LowerTriangularMatrix cL = Whole<LowerTriangularMatrix>(11);
  const DiagonalMatrix cD = Whole<DiagonalMatrix>(12);
  const RegularSparseMatrix cG = Whole<RegularSparseMatrix>(13);
  const SymmetricSparseMatrix cH = Whole<SymmetricSparseMatrix>(14);

  // The same as plain arrays.
  const Plain r = PlainOf(R), s = PlainOf(S), u = PlainOf(U), l = PlainOf(L), d = PlainOf(D), g = PlainOf(G),
              h = PlainOf(H);
  const Plain cr = PlainOf(cR), cs = PlainOf(cS), cu = PlainOf(cU), cl = PlainOf(cL), cd = PlainOf(cD),
              cg = PlainOf(cG), ch = PlainOf(cH);

  // Values that a function returns.
  RegularMatrix tR() const { return Whole<RegularMatrix>(1); }
  SymmetricMatrix tS() const { return Whole<SymmetricMatrix>(2); }
  UpperTriangularMatrix tU() const { return Whole<UpperTriangularMatrix>(3); }
  LowerTriangularMatrix tL() const { return Whole<LowerTriangularMatrix>(4); }
  DiagonalMatrix tD() const { return Whole<DiagonalMatrix>(5); }
  RegularSparseMatrix tG() const { return Whole<RegularSparseMatrix>(6); }
  SymmetricSparseMatrix tH() const { return Whole<SymmetricSparseMatrix>(7); }

  // Variables are what they were.
  void TearDown() override {
    EXPECT_TRUE(Same(R, r));
    EXPECT_TRUE(Same(S, s));
    EXPECT_TRUE(Same(U, u));
    EXPECT_TRUE(Same(L, l));
    EXPECT_TRUE(Same(D, d));
    EXPECT_TRUE(Same(G, g));
    EXPECT_TRUE(Same(H, h));
  }
};

// The expression has the value of the plain one.
#define IS(expression, plain)                                  \
  do {                                                         \
    const RegularMatrix value(expression);                     \
    EXPECT_TRUE(Same(value, (plain), true)) << #expression;    \
  } while (false)

TEST_F(Expressions, Sums) {
  IS(R + R, r + r);
  IS(cR + S, cr + s);
  IS(tR() + U, r + u);
  IS(R + cL, r + cl);
  IS(cR + cD, cr + cd);
  IS(tR() + cG, r + cg);
  IS(R + tH(), r + h);
  IS(cS + R, cs + r);
  IS(tS() + S, s + s);
  IS(S + cU, s + cu);
  IS(cS + cL, cs + cl);
  IS(tS() + cD, s + cd);
  IS(S + tG(), s + g);
  IS(cS + tH(), cs + h);
  IS(tU() + R, u + r);
  IS(U + cS, u + cs);
  IS(cU + cU, cu + cu);
  IS(tU() + cL, u + cl);
  IS(U + tD(), u + d);
  IS(cU + tG(), cu + g);
  IS(tU() + tH(), u + h);
  IS(L + cR, l + cr);
  IS(cL + cS, cl + cs);
  IS(tL() + cU, l + cu);
  IS(L + tL(), l + l);
  IS(cL + tD(), cl + d);
  IS(tL() + tG(), l + g);
  IS(L + H, l + h);
  IS(cD + cR, cd + cr);
  IS(tD() + cS, d + cs);
  IS(D + tU(), d + u);
  IS(cD + tL(), cd + l);
  IS(tD() + tD(), d + d);
  IS(D + G, d + g);
  IS(cD + H, cd + h);
  IS(tG() + cR, g + cr);
  IS(G + tS(), g + s);
  IS(cG + tU(), cg + u);
  IS(tG() + tL(), g + l);
  IS(G + D, g + d);
  IS(cG + G, cg + g);
  IS(tG() + H, g + h);
  IS(H + tR(), h + r);
  IS(cH + tS(), ch + s);
  IS(tH() + tU(), h + u);
  IS(H + L, h + l);
  IS(cH + D, ch + d);
  IS(tH() + G, h + g);
  IS(H + cH, h + ch);
}

TEST_F(Expressions, Differences) {
  IS(cR - tR(), cr - r);
  IS(tR() - tS(), r - s);
  IS(R - U, r - u);
  IS(cR - L, cr - l);
  IS(tR() - D, r - d);
  IS(R - cG, r - cg);
  IS(cR - cH, cr - ch);
  IS(tS() - tR(), s - r);
  IS(S - S, s - s);
  IS(cS - U, cs - u);
  IS(tS() - L, s - l);
  IS(S - cD, s - cd);
  IS(cS - cG, cs - cg);
  IS(tS() - cH, s - ch);
  IS(U - R, u - r);
  IS(cU - S, cu - s);
  IS(tU() - U, u - u);
  IS(U - cL, u - cl);
  IS(cU - cD, cu - cd);
  IS(tU() - cG, u - cg);
  IS(U - tH(), u - h);
  IS(cL - R, cl - r);
  IS(tL() - S, l - s);
  IS(L - cU, l - cu);
  IS(cL - cL, cl - cl);
  IS(tL() - cD, l - cd);
  IS(L - tG(), l - g);
  IS(cL - tH(), cl - h);
  IS(tD() - R, d - r);
  IS(D - cU, d - cu);
  IS(cD - cL, cd - cl);
  IS(tD() - cD, d - cd);
  IS(D - tG(), d - g);
  IS(cD - tH(), cd - h);
  IS(tG() - tR(), g - r);
  IS(G - cS, g - cs);
  IS(cG - cU, cg - cu);
  IS(tG() - cL, g - cl);
  IS(G - tD(), g - d);
  IS(cG - tG(), cg - g);
  IS(tG() - tH(), g - h);
  IS(H - R, h - r);
  IS(cH - cS, ch - cs);
  IS(tH() - cU, h - cu);
  IS(H - tL(), h - l);
  IS(cH - tD(), ch - d);
  IS(tH() - tG(), h - g);
  IS(H - H, h - h);
}

TEST_F(Expressions, Products) {
  IS(cR * R, cr * r);
  IS(tR() * cS, r * cs);
  IS(R * tU(), r * u);
  IS(cR * tL(), cr * l);
  IS(tR() * tD(), r * d);
  IS(R * G, r * g);
  IS(cR * H, cr * h);
  IS(tS() * R, s * r);
  IS(S * tS(), s * s);
  IS(cS * tU(), cs * u);
  IS(tS() * tL(), s * l);
  IS(S * D, s * d);
  IS(cS * G, cs * g);
  IS(tS() * H, s * h);
  IS(U * cR, u * cr);
  IS(cU * tS(), cu * s);
  IS(tU() * tU(), u * u);
  IS(U * L, u * l);
  IS(cU * D, cu * d);
  IS(tU() * G, u * g);
  IS(U * cH, u * ch);
  IS(cL * cR, cl * cr);
  IS(tL() * tS(), l * s);
  IS(L * U, l * u);
  IS(cL * L, cl * l);
  IS(tL() * D, l * d);
  IS(L * cG, l * cg);
  IS(cL * cH, cl * ch);
  IS(tD() * cR, d * cr);
  IS(D * S, d * s);
  IS(cD * U, cd * u);
  IS(tD() * L, d * l);
  IS(D * cD, d * cd);
  IS(cD * cG, cd * cg);
  IS(tD() * cH, d * ch);
  IS(G * tR(), g * r);
  IS(cG * S, cg * s);
  IS(tG() * U, g * u);
  IS(G * cL, g * cl);
  IS(cG * cD, cg * cd);
  IS(tG() * cG, g * cg);
  IS(G * tH(), g * h);
  IS(cH * tR(), ch * r);
  IS(tH() * S, h * s);
  IS(H * cU, h * cu);
  IS(cH * cL, ch * cl);
  IS(tH() * cD, h * cd);
  IS(H * tG(), h * g);
  IS(cH * tH(), ch * h);
}

TEST_F(Expressions, Negation) {
  IS(-R, -r);
  IS(-cR, -cr);
  IS(-S, -s);
  IS(-cS, -cs);
  IS(-U, -u);
  IS(-cL, -cl);
  IS(-D, -d);
  IS(-cG, -cg);
  IS(-H, -h);
  IS(-(R + S), -(r + s));
  IS(-(-R), r);
  IS(-U + L, -u + l);
  IS(-(S - D), -(s - d));
  IS(R - -S, r + s);
  IS(-G - H, -g - h);
  IS(-tR() + -tD(), -r - d);
}

TEST_F(Expressions, Scaling) {
  IS(2.0 * R, 2 * r);
  IS(R * 2.0, 2 * r);
  IS(2 * R, 2 * r);
  IS(cR * 2, 2 * cr);
  IS(3.0 * cS, 3 * cs);
  IS(S * -1.0, -s);
  IS(U * 0.5, 0.5 * u);
  IS(0.5 * cL, 0.5 * cl);
  IS(D * 4, 4 * d);
  IS(4 * cD, 4 * cd);
  IS(G * 2.0, 2 * g);
  IS(2.0 * cG, 2 * cg);
  IS(H * 2.0, 2 * h);
  IS(2.0 * cH, 2 * ch);
  IS(2 * (R + S), 2 * (r + s));
  IS((U - L) * 3, 3 * (u - l));
  IS(2 * R + 3 * S, 2 * r + 3 * s);
  IS(2 * S - 3 * cS, 2 * s - 3 * cs);
  IS(0.5 * (R + transpose(cR)), 0.5 * (r + T(cr)));
}

TEST_F(Expressions, Chains) {
  IS(R + S + U, r + s + u);
  IS(R - S - U - L - D, r - s - u - l - d);
  IS(S + S + S, s + s + s);
  IS(S - cS + D, s - cs + d);
  IS(S + D + H, s + d + h);
  IS(H + D + H, h + d + h);
  IS(G + H + D + R, g + h + d + r);
  IS((R + S) + (U + L), (r + s) + (u + l));
  IS((R + R) - (R + R), r + r - (r + r));
  IS((S + S) - (cS + cS), s + s - (cs + cs));
  IS((G + G) - (cG + H), g + g - (cg + h));
  IS((U + D) + (L + D), u + d + (l + d));
  IS(R - (S - (U - (L - D))), r - (s - (u - (l - d))));
  IS(tR() + tR() + R, r + r + r);
  IS(R + (cR - R), cr);
  IS(D + D - cD, d + d - cd);
  IS(L + cL + tL(), l + cl + l);
}

TEST_F(Expressions, ProductsInSums) {
  IS(R * S + U, r * s + u);
  IS(U + R * S, u + r * s);
  IS(R * cR - cR * R, r * cr - cr * r);
  IS(R * (S + D), r * (s + d));
  IS((R + D) * (R - D), (r + d) * (r - d));
  IS(R * S * transpose(cR), r * s * T(cr));
  IS(D * S * D, d * s * d);
  IS(L * transpose(cL) + S, l * T(cl) + s);
  IS(transpose(cU) * U - H, T(cu) * u - h);
  IS(G * R + R * G, g * r + r * g);
  IS(H * G - G * H, h * g - g * h);
  IS(2 * R * S - S * R, 2 * (r * s) - s * r);
  IS(U * L + L * U, u * l + l * u);
  IS(D * G + G * D, d * g + g * d);
  IS(eye(kOrder, 1.0) - R * cR, PlainOf(DiagonalMatrix(eye(kOrder, 1.0))) - r * cr);
  IS((eye(kOrder, 1.0) + D) * R, (PlainOf(DiagonalMatrix(eye(kOrder, 1.0))) + d) * r);
}

TEST_F(Expressions, StructuredProducts) {
  IS(AQAT(R, S) + cS, r * s * T(r) + cs);
  IS(AQAT(cR, cS) + D, cr * cs * T(cr) + d);
  IS(S + ATPA(R, cS), s + T(r) * cs * r);
  IS(S - AQAT(R, D), s - r * d * T(r));
  IS(ATA(R) + AAT(cR), T(r) * r + cr * T(cr));
  IS(ATB(R, S) - ABT(S, R), T(r) * s - s * T(r));
  IS(SQS(S, cS) - S, s * cs * s - s);
  IS(sym(R * S * transpose(cR) + R) - S - sym(R * S * transpose(cR) + R), -s);
  IS(AQAT(R + D, S + H) + (cS + D), (r + d) * (s + h) * T(r + d) + (cs + d));
}

TEST_F(Expressions, InPlace) {
  RegularMatrix a(R);
  a += S;
  a -= U - L;
  a += D;
  a += G * H;
  a -= H;
  a += a;
  a -= cR;
  a *= 2;
  EXPECT_TRUE(Same(a, 2 * (2 * (r + s - (u - l) + d + g * h - h) - cr), true));
  SymmetricMatrix p(cS);
  p += AQAT(R, S);
  p -= D;
  p += H;
  p -= S + D;
  EXPECT_TRUE(Same(p, cs + r * s * T(r) - d + h - (s + d), true));
  UpperTriangularMatrix v(U);
  v += D;
  v -= U * U;
  EXPECT_TRUE(Same(v, u + d - u * u, true));
  LowerTriangularMatrix w(L);
  w -= D + L;
  w += cL;
  EXPECT_TRUE(Same(w, l - (d + l) + cl, true));
  DiagonalMatrix e(D);
  e += cD;
  e -= D * D;
  EXPECT_TRUE(Same(e, d + cd - d * d, true));
  RegularSparseMatrix x(G);
  x += H;
  x -= cG;
  x += R;
  x -= S;
  x += U;
  x -= L;
  x += D;
  EXPECT_TRUE(Same(x, g + h - cg + r - s + u - l + d, true));
  SymmetricSparseMatrix y(H);
  y += cH;
  y -= S;
  y += D;
  EXPECT_TRUE(Same(y, h + ch - s + d, true));
}

TEST_F(Expressions, ResultsTakeTheirKind) {
  SymmetricMatrix symmetric(S + D);
  symmetric = S - H;
  symmetric = cD + cS;
  UpperTriangularMatrix upper(U - cU);
  upper = U + D;
  LowerTriangularMatrix lower(D + cL);
  lower = L - L;
  DiagonalMatrix diagonal(D - D);
  diagonal = cD + cD;
  RegularSparseMatrix sparse(G - H);
  sparse = H - G;
  sparse = G + D;
  SymmetricSparseMatrix packed(H + H);
  packed = D - H;
  RegularMatrix general(U + L);
  general = S + U;
  general = H - L;
  general = D + D;
  auto value = R + S;
  static_assert(std::is_same_v<decltype(value), RegularMatrix>);
  const auto& owner = value;
  EXPECT_TRUE(Same(owner, r + s, true));
  EXPECT_TRUE(Same(symmetric, cd + cs, true));
  EXPECT_TRUE(Same(upper, u + d, true));
  EXPECT_TRUE(Same(lower, l - l, true));
  EXPECT_TRUE(Same(diagonal, cd + cd, true));
  EXPECT_TRUE(Same(sparse, g + d, true));
  EXPECT_TRUE(Same(packed, d - h, true));
  EXPECT_TRUE(Same(general, d + d, true));
}

TEST_F(Expressions, BlocksInExpressions) {
  RegularMatrix f(eye(kOrder, 1.0));
  CopySubMat(f, 0, 2, D, 0, 0, 2, 2);
  CopySubMat(f, 2, 0, R + S, 0, 0, 2, 2);
  EXPECT_EQ(f(2, 1), r(0, 1) + s(0, 1));
  const SymmetricMatrix corner(SubMat(S + D, 0, 1));
  EXPECT_EQ(corner(1, 1), s(1, 1) + d(1, 1));
  const RegularMatrix block((R * S)(0, 1, 2, 3) + SubMat(cR, 0, 1, 2, 3));
  EXPECT_EQ(block(1, 0), (r * s)(1, 2) + cr(1, 2));
}

}  // namespace
}  // namespace quorvel::test
