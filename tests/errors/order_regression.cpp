// Regression, polynomial fit and kinematic models that are called wrongly in two ways.

#include <gtest/gtest.h>

#include "quorvel/quorvel.h"
#include "support/kinds.h"
#include "support/order.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

constexpr unsigned kOperands = 3u;  // A and y, t and y: the result x or c is never consumed
constexpr unsigned kResult = 1u << 2;

TEST(OrderOfChecks, L1Regression) {
  Order order{"L1Regression",
              [](Operands& o) { o.Add<R>(3u, 2u).Add<R>(3u, 1u).Add<R>(1u, 1u); },
              [](Operands& o) { L1Regression(o.get<R>(0), o.get<R>(1), o.get<R>(2)); },
              {NotOk(0, 56110, kOperands), NotOk(1, 56110, kOperands), Sized(1, 2, 1, 46110, kOperands),
               NotOk(2, 50000, kOperands)},
              kOperands,
              kOperands};
  ExpectOrder(order);
  order.faults[2] = Sized(1, 3, 0, 46110, kOperands);
  ExpectOrder(order);
  // A temporary x survives what is wrong with the operands.
  order.temporaries = kOperands | kResult;
  order.faults.pop_back();
  ExpectOrder(order);
}

TEST(OrderOfChecks, PolyFit) {
  double rms = -1.0;
  Order order{"PolyFit",
              [](Operands& o) { o.Add<R>(3u, 1u).Add<R>(3u, 1u).Add<R>(2u, 1u); },
              [&](Operands& o) { PolyFit(o.get<R>(0), o.get<R>(1), o.get<R>(2), rms); },
              {NotOk(0, 56120, kOperands), NotOk(1, 56120, kOperands), Sized(0, 2, 1, 46120, kOperands),
               Sized(1, 4, 1, 46120, kOperands), NotOk(2, 50140, kOperands)},
              kOperands,
              kOperands};
  ExpectOrder(order);
  order.faults[2] = Sized(0, 3, 0, 46120, kOperands);
  order.faults[3] = Sized(1, 3, 0, 46120, kOperands);
  ExpectOrder(order);
  order.temporaries = kOperands | kResult;
  order.faults.pop_back();
  ExpectOrder(order);
}

// A target that is not ok and a temporary are refused alike, before anything is resized; the temporary dies.
template <class K, class Model>
void ExpectModelOrder(const char* name, Model model) {
  Order order{name,
              [](Operands& o) { o.Add<K>(7u); },
              [model](Operands& o) { model(o.get<K>(0)); },
              {NotOk(0, 50000), {50000, kAll, [](Operands& o) { o[0].set_dispensable(true); }}},
              kNone};
  ExpectOrder(order);
}

TEST(OrderOfChecks, KinematicModels) {
  ExpectModelOrder<U>("Phi_PV", [](U& phi) { Phi_PV(phi, 1.0); });
  ExpectModelOrder<U>("Phi_PVA", [](U& phi) { Phi_PVA(phi, 1.0); });
  ExpectModelOrder<U>("Phi_PVAJ", [](U& phi) { Phi_PVAJ(phi, 1.0); });
  ExpectModelOrder<S>("Q_PV", [](S& q) { Q_PV(q, 1.0, 1.0); });
  ExpectModelOrder<S>("Q_PVA", [](S& q) { Q_PVA(q, 1.0, 1.0); });
  ExpectModelOrder<S>("Q_PVAJ", [](S& q) { Q_PVAJ(q, 1.0, 1.0); });
}

}  // namespace
