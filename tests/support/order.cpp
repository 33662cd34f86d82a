#include "support/order.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>

#include "support/allocations.h"
#include "support/codes.h"
#include "support/sparse.h"

namespace quorvel::test {
namespace {

constexpr int kPending = 40999;

int calls = 0;
int heard = 0;

void Listen(int code) {
  ++calls;
  heard = code;
}

// Everything about a matrix that a caller can see.
struct Snapshot {
  explicit Snapshot(const Matrix& matrix)
      : rows(matrix.nrows()),
        cols(matrix.ncols()),
        nsing(matrix.nsing()),
        ok(matrix.ok()),
        dispensable(matrix.dispensable()) {
    if (const auto* dense = dynamic_cast<const SingleArrayMatrix*>(&matrix)) {
      if (dense->data() != nullptr) stored.assign(dense->data(), dense->data() + dense->StoredCount());
    } else {
      cells = CellsOf(dynamic_cast<const SparseMatrix&>(matrix));
    }
  }
  bool SameAs(const Snapshot& other) const {
    return rows == other.rows && cols == other.cols && nsing == other.nsing && ok == other.ok &&
           dispensable == other.dispensable && stored.size() == other.stored.size() && cells == other.cells &&
           (stored.empty() || std::memcmp(stored.data(), other.stored.data(), stored.size() * sizeof(double)) == 0);
  }

  unsigned rows, cols;
  int nsing;
  bool ok, dispensable;
  std::vector<double> stored;
  std::vector<Cell> cells;
};

bool Has(unsigned set, unsigned k) { return (set >> k & 1u) != 0; }

// The call with these dispensable operands, with up to two faults, while a code is pending or not.
void Expect(const Order& order, unsigned temporaries, bool pending, const Fault* first, const Fault* second) {
  Operands operands;
  order.make(operands);
  if (second != nullptr) second->commit(operands);
  if (first != nullptr) first->commit(operands);
  const Fault* thrown = pending ? &order.faults.front() : first;

  std::vector<Snapshot> before;
  std::vector<std::unique_ptr<WatchedBlock>> watched;
  for (unsigned k = 0; k < operands.size(); ++k) {
    operands[k].set_nsing(static_cast<int>(k) + 3);
    if (operands[k].dispensable()) temporaries |= 1u << k;  // a fault has made it so
    operands[k].set_dispensable(Has(temporaries, k));
    before.emplace_back(operands[k]);
    watched.push_back(std::make_unique<WatchedBlock>(dynamic_cast<void*>(&operands[k])));
    if (thrown != nullptr && Has(thrown->marks, k)) before.back().ok = false;
  }

  abort_reset();
  int set = pending ? kPending : 0;
  abort_set(set);
  calls = heard = 0;
  SetAbortCallback(Listen);
  const std::optional<int> code = CodeOf([&] { order.call(operands); });
  SetAbortCallback(nullptr);

  std::optional<int> expected;
  if (thrown != nullptr) expected = pending ? kPending : thrown->code;
  EXPECT_EQ(code, expected);
  EXPECT_EQ(calls, expected.value_or(0) == 0 ? 0 : 1);
  EXPECT_EQ(heard, expected.value_or(0));
  for (unsigned k = 0; k < operands.size(); ++k) {
    const unsigned dying = thrown != nullptr ? thrown->destroys : order.consumed;
    const bool died = watched[k]->deleted();
    EXPECT_EQ(died, Has(temporaries & dying, k)) << "operand " << k;
    if (died) {
      operands.Forget(k);
    } else if (thrown != nullptr && !Has(thrown->changes, k)) {
      EXPECT_TRUE(Snapshot(operands[k]).SameAs(before[k])) << "operand " << k << " has changed";
    }
  }
}

}  // namespace

Operands::~Operands() {
  for (Matrix* matrix : all_) delete matrix;
}

void Operands::Fill(Matrix& matrix) {
  if (auto* dense = dynamic_cast<SingleArrayMatrix*>(&matrix)) {
    for (unsigned k = 0; k < dense->StoredCount(); ++k) dense->data()[k] = 1.0 / (1.0 + k);
  } else {
    SparseMatrix& sparse = dynamic_cast<SparseMatrix&>(matrix);
    for (unsigned i = 0; i < matrix.nrows(); ++i) {
      for (unsigned j = i % 2; j < matrix.ncols(); j += 2) sparse.Put(i, j, 1.0 + i + 10.0 * j);
    }
  }
}

Fault NotOk(unsigned k, int code, unsigned destroys) {
  return {code, destroys, [k](Operands& o) { o[k].set_ok(false); }};
}

Fault Sized(unsigned k, unsigned rows, unsigned cols, int code, unsigned destroys) {
  return {code, destroys, [=](Operands& o) { o[k].SetSize(rows, cols, false); }};
}

void ExpectOrder(const Order& order) {
  Operands counted;
  order.make(counted);
  const std::size_t faults = order.faults.size();
  for (unsigned temporaries = 0; temporaries >> counted.size() == 0; ++temporaries) {
    if ((temporaries & ~order.temporaries) != 0) continue;
    SCOPED_TRACE(::testing::Message() << order.name << ", dispensable operands " << temporaries);
    Expect(order, temporaries, false, nullptr, nullptr);
    Expect(order, temporaries, true, nullptr, nullptr);
    for (std::size_t i = 0; i < faults; ++i) {
      SCOPED_TRACE(::testing::Message() << "fault " << i);
      Expect(order, temporaries, false, &order.faults[i], nullptr);
      Expect(order, temporaries, true, &order.faults[i], nullptr);
      for (std::size_t j = i + 1; j < faults; ++j) {
        SCOPED_TRACE(::testing::Message() << "and fault " << j);
        Expect(order, temporaries, false, &order.faults[i], &order.faults[j]);
        Expect(order, temporaries, true, &order.faults[i], &order.faults[j]);
      }
    }
  }
}

}  // namespace quorvel::test
