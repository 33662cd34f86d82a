// Sums: the declarations are the rows of the pair table, and the kinds of the results are what the manual says.

#include "quorvel/sums.h"

#include <set>
#include <type_traits>
#include <utility>

#include "../src/ops/tables/sums.h"
#include "declarations/declared.h"
#include "quorvel/quorvel.h"

namespace quorvel::test {
namespace {

#define OPERATORS(R, A, B) OVERLOAD(R&, operator+, (A&, B&)), OVERLOAD(R&, operator-, (A&, B&)),
#define CONST_FORMS(R, A, B)                                                                    \
  OVERLOAD(R&, Plus, (R&, const A&, const B&)), OVERLOAD(R&, Minus, (R&, const A&, const B&)), \
      OPERATORS(R, const A, const B)
#define LIKE(K, METHOD, CODE) CONST_FORMS(K, K, K) OPERATORS(K, K, K)
#define TARGET(X, Y, METHOD, CODE) \
  CONST_FORMS(X, X, Y) CONST_FORMS(X, Y, X) OPERATORS(X, X, const Y) OPERATORS(X, const Y, X)
#define FRESH(A, B, METHOD, CODE) CONST_FORMS(RegularMatrix, A, B) CONST_FORMS(RegularMatrix, B, A)

TEST(SumDeclarations, AreTheRowsOfTheTable) {
  const std::vector<Overload> rows = {QUORVEL_LIKE_SUMS(LIKE) QUORVEL_TARGET_SUMS(TARGET) QUORVEL_FRESH_SUMS(FRESH)
                                          QUORVEL_EXACT_SUM_FORMS(OPERATORS)};
  std::vector<std::string> declared = DeclaredIn("sums.h");
  const std::vector<std::string> operators = DeclaredIn("sum_operators.h");
  declared.insert(declared.end(), operators.begin(), operators.end());
  ExpectDeclarations(declared, rows);
}

TEST(SumDeclarations, CoverEveryPairOnce) {
  std::multiset<std::pair<std::string, std::string>> pairs;
#undef LIKE
#undef TARGET
#undef FRESH
#define LIKE(K, METHOD, CODE) pairs.insert({#K, #K});
#define TARGET(X, Y, METHOD, CODE) pairs.insert({#X, #Y}), pairs.insert({#Y, #X});
#define FRESH(A, B, METHOD, CODE) pairs.insert({#A, #B}), pairs.insert({#B, #A});
  QUORVEL_LIKE_SUMS(LIKE)
  QUORVEL_TARGET_SUMS(TARGET)
  QUORVEL_FRESH_SUMS(FRESH)
  EXPECT_EQ(pairs.size(), 49u);
  EXPECT_EQ((std::set<std::pair<std::string, std::string>>(pairs.begin(), pairs.end()).size()), 49u);
}

// The kind of a sum, from the kinds of its operands.
template <class A, class B>
struct SumKind {
  static constexpr bool a_diagonal = std::is_same_v<A, DiagonalMatrix>;
  static constexpr bool b_diagonal = std::is_same_v<B, DiagonalMatrix>;
  template <class X, class Y>
  static constexpr bool are = (std::is_same_v<A, X> && std::is_same_v<B, Y>) ||
                              (std::is_same_v<A, Y> && std::is_same_v<B, X>);
  using type = std::conditional_t<
      std::is_same_v<A, B> || b_diagonal, A,
      std::conditional_t<a_diagonal, B,
                         std::conditional_t<are<SymmetricMatrix, SymmetricSparseMatrix>, SymmetricMatrix,
                                            std::conditional_t<are<RegularSparseMatrix, SymmetricSparseMatrix>,
                                                               RegularSparseMatrix, RegularMatrix>>>>;
};

// Variables, constants and temporaries, in every mixture: no call is ambiguous, and the kind is right.
template <class A, class B>
constexpr bool CheckCall() {
  using R = typename SumKind<std::remove_cv_t<std::remove_reference_t<A>>, std::remove_cv_t<std::remove_reference_t<B>>>::type;
  static_assert(std::is_same_v<decltype(std::declval<A>() + std::declval<B>()), R&>);
  static_assert(std::is_same_v<decltype(std::declval<A>() - std::declval<B>()), R&>);
  static_assert(std::is_same_v<decltype(Plus(std::declval<R&>(), std::declval<A>(), std::declval<B>())), R&>);
  static_assert(std::is_same_v<decltype(Minus(std::declval<R&>(), std::declval<A>(), std::declval<B>())), R&>);
  return true;
}

template <class A, class B>
constexpr bool CheckCalls() {
  return CheckCall<A&, B&>() && CheckCall<A&, const B&>() && CheckCall<A&, B>() && CheckCall<const A&, B&>() &&
         CheckCall<const A&, const B&>() && CheckCall<const A&, B>() && CheckCall<A, B&>() &&
         CheckCall<A, const B&>() && CheckCall<A, B>();
}

template <class... Kinds>
struct EveryPair {
  template <class A>
  static constexpr bool with() {
    return (CheckCalls<A, Kinds>() && ...);
  }
  static constexpr bool all() { return (with<Kinds>() && ...); }
};

static_assert(EveryPair<RegularMatrix, SymmetricMatrix, UpperTriangularMatrix, LowerTriangularMatrix, DiagonalMatrix,
                        RegularSparseMatrix, SymmetricSparseMatrix>::all());

// In place: exactly the kinds that can be added without changing the kind of the target.
template <class X, class Y, class = void>
struct HasCompound : std::false_type {};
template <class X, class Y>
struct HasCompound<X, Y, std::void_t<decltype(std::declval<X&>() += std::declval<const Y&>())>> : std::true_type {
  static_assert(std::is_same_v<decltype(std::declval<X&>() += std::declval<const Y&>()), X&>);
  static_assert(std::is_same_v<decltype(std::declval<X&>() -= std::declval<const Y&>()), X&>);
};

static_assert(!HasCompound<SymmetricMatrix, RegularMatrix>::value);
static_assert(!HasCompound<SymmetricMatrix, UpperTriangularMatrix>::value);
static_assert(!HasCompound<SymmetricMatrix, LowerTriangularMatrix>::value);
static_assert(!HasCompound<UpperTriangularMatrix, LowerTriangularMatrix>::value);
static_assert(!HasCompound<UpperTriangularMatrix, SymmetricMatrix>::value);
static_assert(!HasCompound<LowerTriangularMatrix, UpperTriangularMatrix>::value);
static_assert(!HasCompound<DiagonalMatrix, SymmetricMatrix>::value);
static_assert(!HasCompound<DiagonalMatrix, RegularMatrix>::value);
static_assert(!HasCompound<SymmetricSparseMatrix, RegularMatrix>::value);
static_assert(!HasCompound<SymmetricSparseMatrix, RegularSparseMatrix>::value);
static_assert(!HasCompound<SymmetricSparseMatrix, UpperTriangularMatrix>::value);

}  // namespace
}  // namespace quorvel::test
