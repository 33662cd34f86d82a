// Factorisations, updates and solutions that are wrong in two ways: which code comes, who dies, what stays.

#include <gtest/gtest.h>

#include "quorvel/quorvel.h"
#include "support/kinds.h"
#include "support/order.h"
#include "support/truth_table.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

TEST(OrderOfChecks, UDMeasurementUpdate) {
  ExpectOrder({"UDMeasurementUpdate",
               [](Operands& o) { o.Add<U>(3u).Add<D>(3u).Add<R>(1u, 3u).Add<R>(3u, 1u); },
               [](Operands& o) { UDMeasurementUpdate(o.get<U>(0), o.get<D>(1), o.get<R>(2), 1.0, o.get<R>(3)); },
               {NotOk(0, 50000), NotOk(1, 50000), NotOk(2, 50000), NotOk(3, 50000), Sized(1, 2, 2, 40000),
                Sized(2, 2, 1, 40000)},
               kAll,
               1u << 2});
}

TEST(OrderOfChecks, UDTimeUpdate) {
  ExpectOrder({"UDTimeUpdate",
               [](Operands& o) { o.Add<U>(3u).Add<D>(3u).Add<R>(3u, 3u).Add<R>(3u, 2u).Add<D>(2u); },
               [](Operands& o) { UDTimeUpdate(o.get<U>(0), o.get<D>(1), o.get<R>(2), o.get<R>(3), o.get<D>(4)); },
               {NotOk(0, 50000), NotOk(1, 50000), NotOk(2, 50000), NotOk(3, 50000), NotOk(4, 50000),
                Sized(1, 2, 2, 40000), Sized(2, 3, 4, 40000), Sized(3, 2, 2, 40000), Sized(4, 1, 1, 40000)},
               kAll,
               7u << 2});
  ExpectOrder({"UDTimeUpdate with a full Q",
               [](Operands& o) { o.Add<U>(3u).Add<D>(3u).Add<R>(3u, 3u).Add<S>(3u); },
               [](Operands& o) { UDTimeUpdate(o.get<U>(0), o.get<D>(1), o.get<R>(2), o.get<S>(3)); },
               {NotOk(0, 50000), NotOk(1, 50000), NotOk(2, 50000), NotOk(3, 50000), Sized(1, 2, 2, 40000),
                Sized(2, 2, 3, 40000), Sized(3, 4, 4, 40000)},
               kAll,
               3u << 2});
}

// Flags come before sizes. Factors that are not temporaries take any order.
TEST(OrderOfChecks, UDFactor) {
  const auto call = [](Operands& o) { UDFactor(o.get<U>(0), o.get<D>(1), o.get<S>(2)); };
  const auto make = [](Operands& o) { o.Add<U>(3u).Add<D>(3u).Add<S>(3u); };
  ExpectOrder({"UDFactor", make, call, {NotOk(0, 50000), NotOk(1, 50000), NotOk(2, 50000)}, kAll, 1u << 2});
}

// The reduction takes flags before shapes, sparse or not, whatever becomes the result.
TEST(OrderOfChecks, HouseholderTransformation) {
  for (const bool in_place : {false, true}) {
    ExpectOrder({"HouseholderTransformation",
                 [](Operands& o) { o.Add<R>(4u, 3u); },
                 [=](Operands& o) { Release(HouseholderTransformation(o.get<R>(0), in_place)); },
                 {NotOk(0, 50000), Sized(0, 3, 4, 40000)}});
    ExpectOrder({"HouseholderTransformation, sparse",
                 [](Operands& o) { o.Add<RS>(4u, 3u); },
                 [=](Operands& o) { Release(HouseholderTransformation(o.get<RS>(0), in_place)); },
                 {NotOk(0, 50000), Sized(0, 3, 4, 40000)}});
  }
}

TEST(OrderOfChecks, VectorHelpers) {
  ExpectOrder({"VecEqMatrixTimesSelf",
               [](Operands& o) { o.Add<R>(3u, 1u).Add<U>(3u); },
               [](Operands& o) { VecEqMatrixTimesSelf(o.get<R>(0), o.get<U>(1)); },
               {NotOk(0, 50000), NotOk(1, 50000), Sized(0, 3, 2, 40000), Sized(1, 2, 2, 40000)},
               kAll,
               1u << 1});
  ExpectOrder({"MOutPrd",
               [](Operands& o) { o.Add<R>(3u, 1u).Add<R>(3u, 1u); },
               [](Operands& o) { Release(MOutPrd(o.get<R>(0), o.get<R>(1))); },
               {NotOk(0, 50000), NotOk(1, 50000), Sized(0, 1, 3, 40000), Sized(1, 3, 2, 40000)}});
  unsigned index[4];
  // The shape of x comes before its length, and before that of the output.
  ExpectOrder({"SetNonZeros",
               [](Operands& o) { o.Add<R>(4u, 1u).Add<R>(4u, 1u); },
               [&](Operands& o) { SetNonZeros(4, o.get<R>(0), o.get<R>(1), index); },
               {Sized(0, 3, 2, 40360), Sized(1, 3, 1, 60360)},
               kAll,
               1u << 0});
  ExpectOrder({"SetNonZeros, too long",
               [](Operands& o) { o.Add<R>(4u, 1u).Add<R>(4u, 1u); },
               [&](Operands& o) { SetNonZeros(4, o.get<R>(0), o.get<R>(1), index); },
               {Sized(0, 4, 2, 40360), Sized(0, 3, 1, 60360), Sized(1, 4, 0, 60360)},
               kAll,
               1u << 0});
}

// A > b with the codes of the operator at every order, also where a small inverse does the work. A is not consumed.
template <class A, class B>
void SolveOrder(bool rectangular) {
  for (const unsigned n : {1u, 2u, 3u, 5u}) {
    Order order{A().ClassName() + std::string(" > ") + B().ClassName(),
                [n](Operands& o) { o.Add<A>(n, n).template Add<B>(n, 2u); },
                [](Operands& o) { Release(o.get<A>(0) > o.get<B>(1)); },
                {NotOk(0, 50580), NotOk(1, 50580), Sized(1, n + 1, 2, 40580)},
                kAll,
                1u << 1};
    if (rectangular) order.faults.push_back(Sized(0, n + 2, n, 40580));
    ExpectOrder(order);
  }
}

TEST(OrderOfChecks, Solve) {
  SolveOrder<D, R>(false);
  SolveOrder<U, R>(false);
  SolveOrder<L, R>(false);
  SolveOrder<S, R>(false);
  SolveOrder<R, R>(true);
  SolveOrder<RS, R>(true);
  SolveOrder<RS, RS>(true);
  SolveOrder<SS, RS>(false);
}

// Orders other than 2 and 3 look at the flag before the shape; those two belong to square matrices only.
TEST(OrderOfChecks, Inverse) {
  for (const bool in_place : {false, true}) {
    ExpectOrder({"inv",
                 [](Operands& o) { o.Add<R>(4u, 4u); },
                 [=](Operands& o) { Release(inv(o.get<R>(0), in_place)); },
                 {NotOk(0, 50940), Sized(0, 3, 2, 40900)}});
    ExpectOrder({"inv, sparse",
                 [](Operands& o) { o.Add<RS>(4u, 4u); },
                 [=](Operands& o) { Release(inv(o.get<RS>(0), in_place)); },
                 {NotOk(0, 50940), Sized(0, 2, 3, 40900)}});
    const auto empty = [](Operands& o) { o.Add<RS>(4u, 4u).get<RS>(0).Clear(); };
    ExpectOrder({"inv_ut",
                 empty,
                 [=](Operands& o) { Release(inv_ut(o.get<RS>(0), in_place)); },
                 {NotOk(0, 50500), Sized(0, 2, 3, 40500)}});
    ExpectOrder({"inv_lt",
                 empty,
                 [=](Operands& o) { Release(inv_lt(o.get<RS>(0), in_place)); },
                 {NotOk(0, 50500), Sized(0, 3, 2, 40500)}});
    ExpectOrder({"inv2x2",
                 [](Operands& o) { o.Add<R>(2u, 2u); },
                 [=](Operands& o) { Release(inv2x2(o.get<R>(0), in_place)); },
                 {NotOk(0, 50000), Sized(0, 3, 3, 40000)}});
    ExpectOrder({"inv3x3",
                 [](Operands& o) { o.Add<S>(3u); },
                 [=](Operands& o) { Release(inv3x3(o.get<S>(0), in_place)); },
                 {NotOk(0, 50000), Sized(0, 2, 2, 40000)}});
  }
}

}  // namespace
