// Block copies that are refused: codes, what is destroyed, what stays.

#include <gtest/gtest.h>

#include <new>

#include "../src/ops/tables/blocks.h"
#include "support/codes.h"
#include "support/plain.h"
#include "support/sums.h"

namespace quorvel::test {
namespace {

template <class T, class S>
T& CopyTo(T& target, unsigned row, const S& src, unsigned src_row, unsigned rows, unsigned cols) {
  if constexpr (std::is_same_v<T, DiagonalMatrix>) {
    return CopySubMat(target, row, src, src_row, 0, rows, cols);
  } else {
    return CopySubMat(target, row, 3, src, src_row, 0, rows, cols);
  }
}

enum class Case { kPending, kTargetNotOk, kSourceNotOk, kTargetTooSmall, kSourceTooSmall, kWrapped };

template <class T, class S>
void CheckRefused(Case wrong, int state) {
  SCOPED_TRACE(::testing::Message() << S().ClassName() << " into " << T().ClassName() << ", case "
                                    << static_cast<int>(wrong) << ", state " << state);
  Random random(41);
  T ordinary = SumSample<T>(5, 5, Pattern::kUniform, random);
  S ordinary_source = SumSample<S>(4, 4, Pattern::kUniform, random);
  const Plain before = PlainOf(ordinary), before_source = PlainOf(ordinary_source);
  T& target = state & 1 ? DispensableCopy(ordinary) : ordinary;
  S& src = state & 2 ? DispensableCopy(ordinary_source) : ordinary_source;
  if (wrong == Case::kTargetNotOk || wrong == Case::kPending) target.set_ok(false);
  if (wrong == Case::kSourceNotOk) src.set_ok(false);
  switch (wrong) {
    case Case::kPending:
      EXPECT_CODE_WHILE_PENDING(123, CopyTo(target, 9, src, 0, 1, 1), 123);
      break;
    case Case::kTargetNotOk:
    case Case::kSourceNotOk:  // before the shape
      EXPECT_CODE(CopyTo(target, 9, src, 0, 1, 1), 50000);
      break;
    case Case::kTargetTooSmall:
      EXPECT_CODE(CopyTo(target, 4, src, 0, 2, 1), 40000);
      break;
    case Case::kSourceTooSmall:
      EXPECT_CODE(CopyTo(target, 0, src, 3, 2, 1), 40000);
      break;
    case Case::kWrapped:  // 3 + 4294967295 is no small number
      EXPECT_CODE(CopyTo(target, 3, src, 0, 0xFFFFFFFFu, 1), 40000);
      break;
  }
  EXPECT_TRUE(Same(ordinary, before));
  EXPECT_TRUE(Same(ordinary_source, before_source));
}

template <class T, class S>
void CheckAllRefused() {
  for (const Case wrong : {Case::kPending, Case::kTargetNotOk, Case::kSourceNotOk, Case::kTargetTooSmall,
                           Case::kSourceTooSmall, Case::kWrapped}) {
    for (int state = 0; state < 4; ++state) CheckRefused<T, S>(wrong, state);
  }
}

#define PAIR(T, S) CheckAllRefused<T, S>();

TEST(BlockErrors, DenseTargets){QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, PAIR)
                                    QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, PAIR)
                                        QUORVEL_DENSE_BLOCK_SOURCES(PAIR, DiagonalMatrix)
                                            QUORVEL_SPARSE_BLOCK_SOURCES(PAIR, DiagonalMatrix)}

TEST(BlockErrors, SparseTargets){QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, PAIR)
                                     QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, PAIR)}

TEST(BlockErrors, OneObjectTwiceDiesOnce) {
  EXPECT_CODE(
      [&] {
        RegularMatrix& a = Dispensable<RegularMatrix>(3u, 3u);
        CopySubMat(a, 2, 2, a, 0, 0, 2, 2);
      }(),
      40000);
  EXPECT_CODE(
      [&] {
        SymmetricMatrix& a = Dispensable<SymmetricMatrix>(3u);
        CopySubMat(a, 0, 0, a);
      }(),
      40000);
}

TEST(BlockErrors, AcrossTheDiagonalOfPackedTargets) {
  const RegularMatrix block(2, 2);
  SymmetricMatrix s(4);
  UpperTriangularMatrix u(4);
  LowerTriangularMatrix l(4);
  EXPECT_CODE(CopySubMat(s, 1, 1, block), 40000);
  EXPECT_CODE(CopySubMat(u, 1, 1, block), 40000);
  EXPECT_CODE(CopySubMat(l, 2, 2, block), 40000);
  EXPECT_NO_CODE(CopySubMat(s, 1, 2, block));
  EXPECT_NO_CODE(CopySubMat(s, 2, 1, block));
  EXPECT_NO_CODE(CopySubMat(s, 1, 1, block, 0, 0, 1, 2));
  EXPECT_NO_CODE(CopySubMat(s, 1, 0, block, 0, 0, 0, 2));  // an empty block only has to fit
  EXPECT_CODE(CopySubMat(s, 1, 0, block, 0, 0, 0, 3), 40000);
}

// What all sources of SubMat and GetSubMat have in common.
template <class S>
void CheckExtraction() {
  SCOPED_TRACE(S().ClassName());
  Random random(42);
  S a = SumSample<S>(4, 4, Pattern::kUniform, random);
  const auto given = [&](bool dispensable) -> S& { return dispensable ? DispensableCopy(a) : a; };
  const auto not_ok = [&](bool dispensable) -> S& {
    S& b = given(dispensable);
    b.set_ok(false);
    return b;
  };
  for (const bool dispensable : {false, true}) {
    EXPECT_CODE(SubMat(given(dispensable), 0, 4, 0, 0), 40000);
    EXPECT_CODE(SubMat(given(dispensable), 0, 0, 2, 4), 40000);
    EXPECT_THROW(static_cast<void>(SubMat(given(dispensable), 3, 0, 0, 3)), std::bad_array_new_length);
    EXPECT_THROW(static_cast<void>(SubMat(given(dispensable), 2, Matrix::npos, 0, 3)), std::bad_array_new_length);
    S& b = given(dispensable);
    EXPECT_CODE_WHILE_PENDING(6, SubMat(b, 0, 0, 0, 0), 6);
    S& c = given(dispensable);
    RegularMatrix out(1, 7);
    EXPECT_CODE(GetSubMat(out, c, 0, 4, 1, 1), 40000);
    EXPECT_EQ(out.nrows(), 5u);  // resized before the block is looked at
    EXPECT_EQ(out.ncols(), 1u);
    EXPECT_THROW(GetSubMat(out, given(dispensable), 3, 0, 0, 3), std::bad_array_new_length);
    EXPECT_CODE(GetSubMat(Dispensable<RegularMatrix>(1u, 1u), given(dispensable), 0, 4, 1, 1), 40000);
    RegularMatrix bad(2, 2);
    bad.set_ok(false);
    EXPECT_CODE(GetSubMat(bad, given(dispensable), 0, 0, 0, 0), 50000);
    EXPECT_EQ(bad.nrows(), 2u);
    S& d = given(dispensable);
    EXPECT_CODE_WHILE_PENDING(8, GetSubMat(bad, d, 0, 0, 0, 0), 8);
    EXPECT_CODE(SubMat(not_ok(dispensable), 0, 9, 0, 0), 50000);
    a.set_ok(true);
    EXPECT_CODE(GetSubMat(out, not_ok(dispensable), 0, 9, 0, 0), 50000);
    a.set_ok(true);
  }
}

TEST(BlockErrors, Extraction) {
  CheckExtraction<RegularMatrix>();
  CheckExtraction<SymmetricMatrix>();
  CheckExtraction<UpperTriangularMatrix>();
  CheckExtraction<LowerTriangularMatrix>();
  CheckExtraction<DiagonalMatrix>();
}

// A reversed range is a bad array length before anything is looked at: also outside the matrix, with a pending code or
// an operand that is not ok, and where the 32-bit size wraps to a small one.
template <class S>
void CheckReversed() {
  SCOPED_TRACE(S().ClassName());
  constexpr unsigned npos = Matrix::npos;
  Random random(44);
  S a = SumSample<S>(3, 3, Pattern::kUniform, random);
  const auto given = [&](bool dispensable, bool ok) -> S& {
    S& b = dispensable ? DispensableCopy(a) : *new S(a);
    b.set_ok(ok);
    return b;
  };
  struct Range {
    unsigned first, last;
  };
  for (const Range r : {Range{2, 0}, {5, 3}, {9, 1}, {npos, 0}, {npos - 1, 1}, {npos, 1}, {1, npos}}) {
    for (const bool dispensable : {false, true}) {
      for (const bool ok : {false, true}) {
        for (const int pending : {0, 6}) {
          for (const bool by_rows : {false, true}) {
            const Range rows = by_rows ? r : Range{0, 0};
            const Range cols = by_rows ? Range{0, 0} : r;
            const auto refuses = [&](auto block) {
              S& b = given(dispensable, ok);
              int code = pending;
              abort_set(code);
              EXPECT_THROW(static_cast<void>(block(b)), std::bad_array_new_length) << r.first << ".." << r.last;
              EXPECT_EQ(GetErrorCode(), pending);
              abort_reset();
              if (!dispensable) delete &b;
            };
            refuses([&](S& b) -> RegularMatrix& { return b(rows.first, rows.last, cols.first, cols.last); });
            refuses([&](S& b) -> RegularMatrix& { return SubMat(b, rows.first, rows.last, cols.first, cols.last); });
            if constexpr (std::is_same_v<S, SymmetricMatrix> || std::is_same_v<S, DiagonalMatrix>) {
              refuses([&](S& b) -> S& { return SubMat(b, r.first, r.last); });
            }
          }
        }
      }
      RegularMatrix out;
      S& b = given(dispensable, true);
      EXPECT_THROW(GetSubMat(out, b, r.first, r.last, 0, 0), std::bad_array_new_length) << r.first << ".." << r.last;
      if (!dispensable) delete &b;
      S& own = given(dispensable, true);
      if constexpr (std::is_same_v<S, RegularMatrix>) {
        EXPECT_THROW(GetSubMat(own, own, 0, 0, r.first, r.last), std::bad_array_new_length);
        if (!dispensable) delete &own;
      } else if constexpr (std::is_same_v<S, SymmetricMatrix> || std::is_same_v<S, DiagonalMatrix>) {
        EXPECT_THROW(GetSubMat(own, own, r.first, r.last), std::bad_array_new_length);
        if (!dispensable) delete &own;
      } else {
        delete &own;
      }
    }
  }
  // Too many doubles come before the shape, too.
  EXPECT_THROW(static_cast<void>(a(0, 1u << 14, 0, 1u << 14)), std::bad_array_new_length);
  EXPECT_CODE(a(0, 3, 0, 0), 40000);
  EXPECT_CODE(a(5, 4, 0, 0), 40000);  // empty, but outside
}

TEST(BlockErrors, ReversedRanges) {
  CheckReversed<RegularMatrix>();
  CheckReversed<SymmetricMatrix>();
  CheckReversed<UpperTriangularMatrix>();
  CheckReversed<LowerTriangularMatrix>();
  CheckReversed<DiagonalMatrix>();
}

template <class K>
void CheckPrincipal() {
  SCOPED_TRACE(K().ClassName());
  Random random(43);
  K a = SumSample<K>(4, 4, Pattern::kUniform, random);
  const auto given = [&](bool dispensable) -> K& { return dispensable ? DispensableCopy(a) : a; };
  for (const bool dispensable : {false, true}) {
    EXPECT_CODE(SubMat(given(dispensable), 1, 4), 40000);
    EXPECT_THROW(static_cast<void>(SubMat(given(dispensable), 3, 1)), std::bad_array_new_length);
    K out(1);
    EXPECT_CODE(GetSubMat(out, given(dispensable), 1, 4), 40000);
    EXPECT_EQ(out.ndim(), 4u);
    EXPECT_THROW(GetSubMat(out, given(dispensable), 3, 1), std::bad_array_new_length);
    EXPECT_CODE(GetSubMat(Dispensable<K>(2u), given(dispensable), 1, 4), 40000);
    K bad(2);
    bad.set_ok(false);
    EXPECT_CODE(GetSubMat(bad, given(dispensable), 0, 0), 50000);
  }
  const Plain before = PlainOf(a);
  EXPECT_CODE(GetSubMat(a, a, 1, 4), 40000);
  EXPECT_TRUE(Same(a, before));
  K& temporary = DispensableCopy(a);
  EXPECT_CODE(GetSubMat(temporary, temporary, 1, 4), 40000);
  K& reversed = DispensableCopy(a);
  EXPECT_THROW(GetSubMat(reversed, reversed, 3, 1), std::bad_array_new_length);
  abort_reset();
  a.set_ok(false);
  EXPECT_CODE(SubMat(a, 0, 0), 50000);
  K out;
  EXPECT_CODE(GetSubMat(out, a, 0, 0), 50000);
  EXPECT_CODE(GetSubMat(a, a, 0, 0), 50000);
}

TEST(BlockErrors, PrincipalBlocks) {
  CheckPrincipal<SymmetricMatrix>();
  CheckPrincipal<DiagonalMatrix>();
}

}  // namespace
}  // namespace quorvel::test
