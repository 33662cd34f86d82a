// A sparse matrix as a sorted map, and its pool as three numbers.

#ifndef QUORVEL_TESTS_MODEL_SPARSE_MODEL_H
#define QUORVEL_TESTS_MODEL_SPARSE_MODEL_H

#include <algorithm>
#include <map>
#include <utility>

namespace quorvel::test {

// Records are interchangeable, so the pool is: records per block (0: not chosen), blocks, and the length of the free
// chain with its end mark. The chain gives a record only while it has two.
struct PoolModel {
  unsigned grow = 0;
  unsigned blocks = 0;
  unsigned chain = 0;

  void Take(unsigned rows, unsigned cols) {
    if (chain < 2) {
      if (grow == 0) grow = std::min(rows, cols) + 20;
      if (grow == 1) grow = 2;
      ++blocks;
      chain = grow;
    }
    --chain;
  }
  void Return(unsigned run) {
    if (run != 0) chain = chain >= 2 ? chain + run : run;
  }
  void Clear() { chain = blocks * (grow - 1); }
};

struct SparseModel {
  using Key = std::pair<unsigned, unsigned>;

  bool symmetric;
  unsigned rows;
  unsigned cols;
  std::map<Key, double> cells = {};
  PoolModel pool = {};

  Key KeyOf(unsigned row, unsigned col) const { return symmetric && col < row ? Key(col, row) : Key(row, col); }

  const double* Find(unsigned row, unsigned col) const {
    const auto found = cells.find(KeyOf(row, col));
    return found == cells.end() ? nullptr : &found->second;
  }
  double Get(unsigned row, unsigned col) const {
    const double* value = Find(row, col);
    return value != nullptr ? *value : 0.0;
  }

  // Stores the value, also a zero.
  void Store(unsigned row, unsigned col, double value) {
    const Key key = KeyOf(row, col);
    if (cells.count(key) == 0) pool.Take(rows, cols);
    cells[key] = value;
  }
  void Remove(unsigned row, unsigned col) {
    if (cells.erase(KeyOf(row, col)) != 0) pool.Return(1);
  }
  void Put(unsigned row, unsigned col, double value) {
    if (value == 0.0) {
      Remove(row, col);
    } else {
      Store(row, col, value);
    }
  }

  // Removes what `goes` names, one by one.
  template <class Goes>
  void RemoveIf(Goes goes) {
    for (auto cell = cells.begin(); cell != cells.end();) {
      if (goes(cell->first.first, cell->first.second)) {
        cell = cells.erase(cell);
        pool.Return(1);
      } else {
        ++cell;
      }
    }
  }
  // Removes what `goes` names, as one run.
  template <class Goes>
  void RemoveRun(Goes goes) {
    unsigned run = 0;
    for (auto cell = cells.begin(); cell != cells.end();) {
      if (goes(cell->first.first, cell->first.second)) {
        cell = cells.erase(cell);
        ++run;
      } else {
        ++cell;
      }
    }
    pool.Return(run);
  }

  // Gives every cell a new place.
  template <class Move>
  void MoveCells(Move move) {
    std::map<Key, double> moved;
    for (const auto& [key, value] : cells) moved[move(key.first, key.second)] = value;
    cells.swap(moved);
  }

  void Clear() {
    cells.clear();
    pool.Clear();
  }
};

}  // namespace quorvel::test

#endif
