// Sums, assignments and block copies that are wrong in two ways.

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "quorvel/quorvel.h"
#include "support/kinds.h"
#include "support/order.h"
#include "support/sums.h"
#include "support/truth_table.h"

namespace quorvel::test {
namespace {

using namespace kinds;

constexpr unsigned kOperands = 3u << 1;  // of a call whose operand 0 is the result

template <class A, class B>
constexpr int kSumCode = kSparse<A> || kSparse<B> ? 0
                         : std::is_same_v<A, B>   ? 340
                                                  : 280;

// The operands' flags, their sizes, the result's flag. Compound forms have their target among the operands.
struct CheckSumOrder {
  template <class K, class A, class B>
  void pair() const {
    constexpr int code = kSumCode<A, B>;
    const std::string name = A().ClassName() + std::string(" and ") + B().ClassName();
    Order three{"three-operand sum of " + name,
                [](Operands& o) { o.Add<K>(3u, 3u).template Add<A>(3u, 3u).template Add<B>(3u, 3u); },
                [](Operands& o) { Plus(o.get<K>(0), o.get<A>(1), o.get<B>(2)); },
                {NotOk(1, code + 50000, kOperands), NotOk(2, code + 50000, kOperands),
                 Sized(2, 4, 4, code + 40000, kOperands), NotOk(0, 50000)},
                kAll,
                kOperands};
    ExpectOrder(three);
    three.name = "three-operand difference of " + name;
    three.call = [](Operands& o) { Minus(o.get<K>(0), o.get<A>(1), o.get<B>(2)); };
    ExpectOrder(three);
    Order two{"sum of " + name,
              [](Operands& o) { o.Add<A>(3u, 3u).template Add<B>(3u, 3u); },
              [](Operands& o) { Release(o.get<A>(0) + o.get<B>(1)); },
              {NotOk(0, code + 50000), NotOk(1, code + 50000), Sized(1, 4, 4, code + 40000)}};
    ExpectOrder(two);
    if constexpr (std::is_same_v<A, K>) {
      two.name = "compound difference of " + name;
      two.call = [](Operands& o) { o.get<A>(0) -= o.get<B>(1); };
      two.consumed = 1u << 1;
      ExpectOrder(two);
    }
  }
};

TEST(OrderOfChecks, DenseSums) { ForEachDenseSum(CheckSumOrder()); }
TEST(OrderOfChecks, SumsWithSparse) { ForEachSumWithSparse(CheckSumOrder()); }

// A failed assignment marks its target, whatever is wrong.
template <class T, class Source>
void ExpectAssignmentOrder(int code, unsigned destroys = kAll) {
  Order order{T().ClassName() + std::string(" = ") + Source().ClassName(),
              [](Operands& o) { o.Add<T>(3u, 3u).template Add<Source>(3u, 3u); },
              [](Operands& o) { o.get<T>(0) = o.get<Source>(1); },
              {NotOk(0, code + 50000, destroys), NotOk(1, code + 50000, destroys)},
              kAll,
              1u << 1};
  for (Fault& fault : order.faults) fault.marks = 1u << 0;
  ExpectOrder(order);
}

TEST(OrderOfChecks, Assignments) {
  ExpectAssignmentOrder<R, R>(140);
  ExpectAssignmentOrder<S, S>(140);
  ExpectAssignmentOrder<U, U>(140);
  ExpectAssignmentOrder<L, L>(140);
  ExpectAssignmentOrder<D, D>(140);
  ExpectAssignmentOrder<R, S>(140);
  ExpectAssignmentOrder<R, U>(140);
  ExpectAssignmentOrder<R, L>(140);
  ExpectAssignmentOrder<R, D>(140);
  ExpectAssignmentOrder<S, D>(240);
  ExpectAssignmentOrder<U, D>(330);
  ExpectAssignmentOrder<L, D>(380);
  ExpectAssignmentOrder<R, SS>(2310);
  ExpectAssignmentOrder<R, RS>(2320);
  ExpectAssignmentOrder<S, SS>(2300, 1u << 1);  // the one that spares a temporary target
  ExpectAssignmentOrder<RS, RS>(140);
  ExpectAssignmentOrder<SS, SS>(140);
  ExpectAssignmentOrder<RS, SS>(2010);
  ExpectAssignmentOrder<RS, R>(2260);
  ExpectAssignmentOrder<RS, S>(2260);
  ExpectAssignmentOrder<RS, U>(2260);
  ExpectAssignmentOrder<RS, L>(2260);
  ExpectAssignmentOrder<RS, D>(2260);
  ExpectAssignmentOrder<SS, S>(140);
  ExpectAssignmentOrder<SS, D>(2260);
}

// Flags before the shape, for which the target has been emptied.
TEST(OrderOfChecks, CopyMat) {
  Order order{"CopyMat",
              [](Operands& o) { o.Add<SymmetricSparseMatrix>(3u).Add<RegularMatrix>(3u, 3u); },
              [](Operands& o) { o.get<SymmetricSparseMatrix>(0).CopyMat(o.get<RegularMatrix>(1)); },
              {NotOk(0, 52260), NotOk(1, 52260), Sized(1, 2, 3, 40000)},
              kAll,
              1u << 1};
  order.faults[0].marks = order.faults[1].marks = 1u << 0;
  order.faults[2].changes = 1u << 0;
  ExpectOrder(order);
}

// The dense operand is converted, and so consumed, before the sparse one is looked at.
template <class T, class Source>
void ExpectConversionOrder(int code) {
  ExpectOrder({T().ClassName() + std::string(" += ") + Source().ClassName(),
               [](Operands& o) { o.Add<T>(3u, 3u).template Add<Source>(3u, 3u); },
               [](Operands& o) { o.get<T>(0) += o.get<Source>(1); },
               {NotOk(1, code), NotOk(0, 50000), Sized(1, 4, 4, 40000)},
               kAll,
               1u << 1});
}

TEST(OrderOfChecks, SparsePlusConverted) {
  ExpectConversionOrder<RegularSparseMatrix, RegularMatrix>(52260);
  ExpectConversionOrder<RegularSparseMatrix, SymmetricMatrix>(52260);
  ExpectConversionOrder<RegularSparseMatrix, UpperTriangularMatrix>(52260);
  ExpectConversionOrder<RegularSparseMatrix, LowerTriangularMatrix>(52260);
  ExpectConversionOrder<SymmetricSparseMatrix, SymmetricMatrix>(50140);
}

// The flag comes before sizes that no square kind can take.
template <class K>
void ExpectSizeOrder() {
  unsigned cols = 3;
  for (const bool keep : {false, true}) {
    ExpectOrder({std::string("SetSize of ") + K().ClassName(),
                 [&](Operands& o) {
                   o.Add<K>(3u, 3u);
                   cols = 3;
                 },
                 [&](Operands& o) { o[0].SetSize(3, cols, keep); },
                 {NotOk(0, 50000), {40000, kAll, [&](Operands&) { cols = 2; }}},
                 kAll,
                 kNone});
  }
}

TEST(OrderOfChecks, SizesOfSquareKinds) {
  ExpectSizeOrder<SymmetricMatrix>();
  ExpectSizeOrder<UpperTriangularMatrix>();
  ExpectSizeOrder<LowerTriangularMatrix>();
  ExpectSizeOrder<DiagonalMatrix>();
  ExpectSizeOrder<SymmetricSparseMatrix>();
}

// Both flags, then whether the block fits.
struct Block {
  unsigned row = 0, rows = 2;
};

template <class T, class Source>
void ExpectBlockOrder() {
  Block block;
  Order order{Source().ClassName() + std::string(" into ") + T().ClassName(),
              [&](Operands& o) {
                block = Block();
                o.Add<T>(5u, 5u).template Add<Source>(3u, 3u);
              },
              [&](Operands& o) {
                if constexpr (std::is_same_v<T, DiagonalMatrix>) {
                  CopySubMat(o.get<T>(0), block.row, o.get<Source>(1), 1, 1, block.rows, 2);
                } else {
                  CopySubMat(o.get<T>(0), block.row, 3, o.get<Source>(1), 1, 1, block.rows, 2);
                }
              },
              {NotOk(0, 50000),
               NotOk(1, 50000),
               {40000, kAll, [&](Operands&) { block.row = 4; }},
               {40000, kAll, [&](Operands&) { block.rows = 3; }}},
              kAll,
              1u << 1};
  ExpectOrder(order);
}

template <class T>
void ExpectBlockOrders() {
  ExpectBlockOrder<T, RegularMatrix>();
  ExpectBlockOrder<T, SymmetricMatrix>();
  ExpectBlockOrder<T, DiagonalMatrix>();
  ExpectBlockOrder<T, SymmetricSparseMatrix>();
}

TEST(OrderOfChecks, BlockCopies) {
  ExpectBlockOrders<RegularMatrix>();
  ExpectBlockOrders<SymmetricMatrix>();
  ExpectBlockOrders<UpperTriangularMatrix>();
  ExpectBlockOrders<DiagonalMatrix>();
  ExpectBlockOrders<RegularSparseMatrix>();
  ExpectBlockOrders<SymmetricSparseMatrix>();
}

// The output takes its size before the source is looked at.
template <class Source>
void ExpectExtractionOrder() {
  unsigned last = 2;
  Order order{std::string("GetSubMat of ") + Source().ClassName(),
              [&](Operands& o) {
                last = 2;
                o.Add<RegularMatrix>(1u, 1u).Add<Source>(4u, 4u);
              },
              [&](Operands& o) { GetSubMat(o.get<RegularMatrix>(0), o.get<Source>(1), 1, last, 0, 1); },
              {NotOk(0, 50000), NotOk(1, 50000), {40000, kAll, [&](Operands&) { last = 4; }}},
              kAll,
              1u << 1};
  order.faults[1].changes = order.faults[2].changes = 1u << 0;
  ExpectOrder(order);
  ExpectOrder({std::string("SubMat of ") + Source().ClassName(),
               [&](Operands& o) {
                 last = 2;
                 o.Add<Source>(4u, 4u);
               },
               [&](Operands& o) { Release(SubMat(o.get<Source>(0), 1, last, 0, 1)); },
               {NotOk(0, 50000), {40000, kAll, [&](Operands&) { last = 4; }}}});
}

TEST(OrderOfChecks, Extraction) {
  ExpectExtractionOrder<RegularMatrix>();
  ExpectExtractionOrder<SymmetricMatrix>();
  ExpectExtractionOrder<UpperTriangularMatrix>();
  ExpectExtractionOrder<LowerTriangularMatrix>();
  ExpectExtractionOrder<DiagonalMatrix>();
}

}  // namespace
}  // namespace quorvel::test
