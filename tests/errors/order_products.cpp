// Products that are wrong in two ways: operands before their sizes, both before the result.

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "quorvel/quorvel.h"
#include "support/kinds.h"
#include "support/operations.h"
#include "support/order.h"

namespace {

using namespace quorvel::test;
using namespace quorvel::test::kinds;

constexpr unsigned kOperands = 3u << 1;  // of a call whose operand 0 is the result

struct CheckOrder {
  template <class A, class B, class Call>
  void operator()(const char* name, int code, A*, B*, Call call) const {
    ExpectOrder({name,
                 [](Operands& o) { o.Add<A>(3u, 3u).template Add<B>(3u, 3u); },
                 [call](Operands& o) { Drop(call(o.get<A>(0), o.get<B>(1))); },
                 {NotOk(0, code + 50000), NotOk(1, code + 50000), Sized(1, 4, 4, code + 40000)}});
  }
};

TEST(OrderOfChecks, DenseProducts) { ForEachDensePair(CheckOrder()); }
TEST(OrderOfChecks, SparseProducts) { ForEachSparsePair(CheckOrder()); }
TEST(OrderOfChecks, ProductsInBlocks) { ForEachBlockPair(3, CheckOrder()); }

// A result that is not ok is refused after the operands. Only then does a temporary that it is die.
template <class K, class A, class B>
void ExpectMultOrder(int code) {
  ExpectOrder({std::string("Mult: ") + A().ClassName() + " * " + B().ClassName(),
               [](Operands& o) { o.Add<K>(3u, 3u).template Add<A>(3u, 3u).template Add<B>(3u, 3u); },
               [](Operands& o) { Mult(o.get<K>(0), o.get<A>(1), o.get<B>(2)); },
               {NotOk(1, code + 50000, kOperands), NotOk(2, code + 50000, kOperands),
                Sized(2, 4, 4, code + 40000, kOperands), NotOk(0, 50000)},
               kAll,
               kOperands});
}

TEST(OrderOfChecks, ProductsIntoAResult) {
  ExpectMultOrder<R, R, R>(320);
  ExpectMultOrder<R, S, S>(320);
  ExpectMultOrder<R, U, L>(320);
  ExpectMultOrder<U, U, U>(320);
  ExpectMultOrder<L, L, D>(320);
  ExpectMultOrder<D, D, D>(320);
  ExpectMultOrder<R, R, RS>(320);
  ExpectMultOrder<R, SS, S>(320);
  ExpectMultOrder<RS, RS, RS>(294);
  ExpectMultOrder<RS, SS, SS>(294);
}

template <class K>
void ExpectScalingOrder() {
  ExpectOrder({std::string("Mult by a number: ") + K().ClassName(),
               [](Operands& o) { o.Add<K>(3u, 3u).template Add<K>(3u, 3u); },
               [](Operands& o) { Mult(o.get<K>(0), o.get<K>(1), 2.0); },
               {NotOk(1, 50320, 1u << 1), NotOk(0, 50000)},
               kAll,
               1u << 1});
}

TEST(OrderOfChecks, ScalingIntoAResult) {
  ExpectScalingOrder<R>();
  ExpectScalingOrder<S>();
  ExpectScalingOrder<U>();
  ExpectScalingOrder<L>();
  ExpectScalingOrder<D>();
  ExpectScalingOrder<RS>();
  ExpectScalingOrder<SS>();
}

// The factors; then the result's flag; then whether the product is square.
TEST(OrderOfChecks, SymmetricOfProductIntoAResult) {
  ExpectOrder({"SymmetricOfProduct",
               [](Operands& o) { o.Add<S>(3u).Add<RS>(3u, 2u).Add<RS>(2u, 3u); },
               [](Operands& o) { SymmetricOfProduct(o.get<S>(0), o.get<RS>(1), o.get<RS>(2)); },
               {NotOk(1, 50320, kOperands), NotOk(2, 50320, kOperands), Sized(2, 4, 3, 40320, kOperands),
                NotOk(0, 50000), Sized(2, 2, 4, 40000)},
               kAll,
               kOperands});
}

TEST(OrderOfChecks, TransposeIntoAResult) {
  ExpectOrder({"transpose",
               [](Operands& o) { o.Add<R>(2u, 3u).Add<R>(3u, 2u); },
               [](Operands& o) { static_cast<void>(transpose(o.get<R>(0), &o.get<R>(1))); },
               {NotOk(0, 51040, 1u << 0), NotOk(1, 50000)},
               kAll,
               1u << 0});
}

// The first operand is looked at before the second, each for its flag and then for its size; a refused one dies alone.
template <class A, class B>
void ExpectKronOrder() {
  ExpectOrder({std::string("kron of ") + A().ClassName() + " and " + B().ClassName(),
               [](Operands& o) { o.Add<A>(2u, 2u).template Add<B>(2u, 2u); },
               [](Operands& o) { Drop(kron(o.get<A>(0), o.get<B>(1))); },
               {NotOk(0, 50000, 1u << 0), Sized(0, 0, 0, 40000, 1u << 0), NotOk(1, 50000, 1u << 1),
                Sized(1, 0, 0, 40000, 1u << 1)},
               kAll,
               kNone});
}

TEST(OrderOfChecks, Kron) {
  ExpectKronOrder<D, D>();
  ExpectKronOrder<S, D>();
  ExpectKronOrder<D, R>();
  ExpectKronOrder<R, R>();
  ExpectKronOrder<R, RS>();
  ExpectKronOrder<RS, RS>();
  ExpectKronOrder<SS, SS>();
}

}  // namespace
