// The order of a call's checks: a call that is wrong in two ways throws the code of what is looked at first.

#ifndef QUORVEL_TESTS_SUPPORT_ORDER_H
#define QUORVEL_TESTS_SUPPORT_ORDER_H

#include <functional>
#include <string>
#include <vector>

#include "quorvel/quorvel.h"

namespace quorvel::test {

// The matrices of one call, by position. They live on the heap and hold no zeros.
class Operands {
 public:
  Operands() = default;
  ~Operands();
  Operands(const Operands&) = delete;
  Operands& operator=(const Operands&) = delete;

  // The size of a square kind is its order, once.
  template <class K, class... Sizes>
  Operands& Add(Sizes... sizes) {
    all_.push_back(new K(sizes...));
    Fill(*all_.back());
    return *this;
  }
  template <class K>
  K& get(unsigned k) const {
    return static_cast<K&>(*all_[k]);
  }
  Matrix& operator[](unsigned k) const { return *all_[k]; }
  unsigned size() const { return static_cast<unsigned>(all_.size()); }
  // An operation has taken this one's life.
  void Forget(unsigned k) { all_[k] = nullptr; }

 private:
  static void Fill(Matrix& matrix);
  std::vector<Matrix*> all_;
};

constexpr unsigned kAll = ~0u;  // sets of operands have bit k for operand k
constexpr unsigned kNone = 0;

// One thing that can be wrong with a call.
struct Fault {
  int code;
  unsigned destroys;  // the dispensable operands that its check takes along
  std::function<void(Operands&)> commit;
  unsigned marks = kNone;    // operands that it leaves not ok
  unsigned changes = kNone;  // operands that it leaves in another state
};

Fault NotOk(unsigned k, int code, unsigned destroys = kAll);
// The operand gets another size.
Fault Sized(unsigned k, unsigned rows, unsigned cols, int code, unsigned destroys = kAll);

struct Order {
  std::string name;
  std::function<void(Operands&)> make;  // all right
  std::function<void(Operands&)> call;  // destroys a dispensable result
  std::vector<Fault> faults;            // in the order in which they are looked at; later ones are committed first
  unsigned temporaries = kAll;          // operands that may be dispensable
  unsigned consumed = kAll;             // dispensable operands that do not survive a success (as the result, too)
};

// Makes the call with each set of dispensable operands: right, with every fault, with every two of them, and each time
// with a pending code, which comes before all of them. Asserts the code thrown, that the callback was called with it
// once, which dispensable operands died (the leak check of the room: once), and that the others are as they were, bit
// for bit. A pending code is read by the first check, and so has the consequences of the first fault.
void ExpectOrder(const Order& order);

}  // namespace quorvel::test

#endif
