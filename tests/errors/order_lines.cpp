// Lines of matrices that are read, changed, opened and removed in two wrong ways at once.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/order.h"

using namespace quorvel::test;

namespace {

// What a line operation is told; faults change it.
struct Line {
  unsigned index = 1, first = 1, last = 1, at = 1, count = 1;
};

// One operation on a 4 x 4 matrix. The arguments are set right for every call, then faults change them.
template <class K, class Call>
Order LineOrder(const char* what, Line& line, Call call, std::vector<Fault> faults) {
  Order order;
  order.name = std::string(K().ClassName()) + "::" + what;
  order.make = [&line](Operands& o) {
    line = Line();
    o.Add<K>(4u, 4u);
  };
  order.call = [&line, call](Operands& o) { call(o.get<K>(0), line); };
  order.faults = std::move(faults);
  order.consumed = kNone;
  return order;
}

template <class Change>
Fault Argument(int code, Change change) {
  return {code, kAll, [change](Operands&) { change(); }};
}

// Being a temporary is the fault.
Fault Temporary(int code) {
  return {code, kAll, [](Operands& o) { o[0].set_dispensable(true); }};
}

// The flag comes before the index and the range, which share their code.
template <class K, class Call>
void ExpectLineOrder(const char* what, Call call) {
  Line line;
  ExpectOrder(LineOrder<K>(what, line, call,
                           {NotOk(0, 50000), Argument(40000, [&] { line.index = 4; }),
                            Argument(40000, [&] { line.first = 2; }), Argument(40000, [&] { line.last = 4; })}));
}

template <class K>
void ExpectLineOrders() {
  ExpectLineOrder<K>("SumRow", [](K& a, Line l) { a.SumRow(l.index, l.first, l.last); });
  ExpectLineOrder<K>("SumCol", [](K& a, Line l) { a.SumCol(l.index, l.first, l.last); });
  ExpectLineOrder<K>("SumSqRow", [](K& a, Line l) { a.SumSqRow(l.index, l.first, l.last); });
  ExpectLineOrder<K>("SumSqCol", [](K& a, Line l) { a.SumSqCol(l.index, l.first, l.last); });
  ExpectLineOrder<K>("NegateRow", [](K& a, Line l) { a.NegateRow(l.index, l.first, l.last); });
  ExpectLineOrder<K>("NegateCol", [](K& a, Line l) { a.NegateCol(l.index, l.first, l.last); });
  ExpectLineOrder<K>("MultRow", [](K& a, Line l) { a.MultRow(l.index, 2.0, l.first, l.last); });
  ExpectLineOrder<K>("MultCol", [](K& a, Line l) { a.MultCol(l.index, 2.0, l.first, l.last); });
}

template <class K>
void ExpectDenseLineOrders() {
  ExpectLineOrders<K>();
  ExpectLineOrder<K>("SetRow", [](K& a, Line l) { a.SetRow(l.index, 2.0, l.first, l.last); });
  ExpectLineOrder<K>("SetCol", [](K& a, Line l) { a.SetCol(l.index, 2.0, l.first, l.last); });
  ExpectLineOrder<K>("ClearRow", [](K& a, Line l) { a.ClearRow(l.index, l.first, l.last); });
  ExpectLineOrder<K>("ClearCol", [](K& a, Line l) { a.ClearCol(l.index, l.first, l.last); });
}

TEST(OrderOfChecks, LineOperations) {
  ExpectDenseLineOrders<RegularMatrix>();
  ExpectDenseLineOrders<SymmetricMatrix>();
  ExpectDenseLineOrders<UpperTriangularMatrix>();
  ExpectDenseLineOrders<LowerTriangularMatrix>();
  ExpectLineOrders<RegularSparseMatrix>();
  ExpectLineOrders<SymmetricSparseMatrix>();
}

// Opening lines: the flag, then being a temporary, then the position.
template <class K, class Call>
void ExpectOpeningOrder(const char* what, Call call) {
  Line line;
  Order order =
      LineOrder<K>(what, line, call, {NotOk(0, 50000), Temporary(40000), Argument(30000, [&] { line.at = 5; })});
  order.temporaries = kNone;
  ExpectOrder(order);
}

// Removing and overwriting lines: one code for everything.
template <class K, class Call>
void ExpectRangeOrder(const char* what, Call call) {
  Line line;
  Order order = LineOrder<K>(what, line, call,
                             {NotOk(0, 60000), Temporary(60000), Argument(60000, [&] { line.at = 4; }),
                              Argument(60000, [&] { line.count = 4; })});
  order.temporaries = kNone;
  ExpectOrder(order);
}

template <class K>
void ExpectRectangularOrders() {
  ExpectOpeningOrder<K>("InsertRows", [](K& a, Line l) { a.InsertRows(l.at, l.count); });
  ExpectOpeningOrder<K>("InsertCols", [](K& a, Line l) { a.InsertCols(l.at, l.count); });
  ExpectRangeOrder<K>("RemoveRows", [](K& a, Line l) { a.RemoveRows(l.at, l.count); });
  ExpectRangeOrder<K>("RemoveCols", [](K& a, Line l) { a.RemoveCols(l.at, l.count); });
}

template <class K>
void ExpectSquareOrders() {
  ExpectOpeningOrder<K>("InsertRowsAndCols", [](K& a, Line l) { a.InsertRowsAndCols(l.at, l.count); });
  ExpectRangeOrder<K>("RemoveRowsAndCols", [](K& a, Line l) { a.RemoveRowsAndCols(l.at, l.count); });
}

template <class K>
void ExpectBandOrders() {
  ExpectRangeOrder<K>("SetRows", [](K& a, Line l) { a.SetRows(2.0, l.at, l.count); });
  ExpectRangeOrder<K>("SetCols", [](K& a, Line l) { a.SetCols(2.0, l.at, l.count); });
}

TEST(OrderOfChecks, OpeningAndRemovingLines) {
  ExpectRectangularOrders<RegularMatrix>();
  ExpectRectangularOrders<RegularSparseMatrix>();
  ExpectSquareOrders<SymmetricMatrix>();
  ExpectSquareOrders<UpperTriangularMatrix>();
  ExpectSquareOrders<LowerTriangularMatrix>();
  ExpectSquareOrders<DiagonalMatrix>();
  ExpectBandOrders<RegularMatrix>();
  ExpectBandOrders<SymmetricMatrix>();
  ExpectBandOrders<UpperTriangularMatrix>();
  ExpectBandOrders<LowerTriangularMatrix>();
}

}  // namespace
