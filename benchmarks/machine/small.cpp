// What an operation on 3 x 3 operands costs beyond its two allocations (the result's object and its array) and its
// arithmetic: "bare" does just these, with a loop that the compiler unrolls.

#include <cstdlib>

#include "race/race.h"
#include "race/samples.h"

namespace {

constexpr unsigned kOrder = 3;

// compute(c): writes the result's array.
template <unsigned count, class Compute>
auto Bare(Compute compute) {
  return [compute](auto use) {
    void* const object = ::operator new(sizeof(RegularMatrix));
    double* const c = static_cast<double*>(::operator new(count * sizeof(double)));
    asm volatile("" : : "g"(object) : "memory");
    compute(c);
    use(bench::Read{1, count, [c](unsigned, unsigned j) { return c[j]; }});
    ::operator delete(c);
    ::operator delete(object);
  };
}

template <class Ours, class Compute>
void Beside(Ours ours, Compute compute, const std::function<void(bench::Race&)>& hold) {
  bench::Race race;
  race.add("Quorvel", "", [&](auto use) {
    auto take = [&use](auto& result) {
      std::decay_t<decltype(result)> c(result);
      use(bench::Read{1, c.StoredCount(), [&c](unsigned, unsigned j) { return c.data()[j]; }});
    };
    take(ours());
  });
  race.add("bare", "two allocations and the loop", compute);
  hold(race);
}

struct Operands {
  RegularMatrix a = bench::Regular(kOrder, kOrder, 1), b = bench::Regular(kOrder, kOrder, 2);
  SymmetricMatrix p = bench::Symmetric(kOrder, 3), q = bench::Symmetric(kOrder, 4);
};

void Sum(bench::Size, const std::function<void(bench::Race&)>& hold) {
  const Operands o;
  const double *x = o.a.data(), *y = o.b.data();
  Beside([&]() -> RegularMatrix& { return o.a + o.b; }, Bare<9>([x, y](double* c) {
           for (unsigned k = 0; k < 9; ++k) c[k] = x[k] + y[k];
         }),
         hold);
}

void SymmetricSum(bench::Size, const std::function<void(bench::Race&)>& hold) {
  const Operands o;
  const double *x = o.p.data(), *y = o.q.data();
  Beside([&]() -> SymmetricMatrix& { return o.p + o.q; }, Bare<6>([x, y](double* c) {
           for (unsigned k = 0; k < 6; ++k) c[k] = x[k] + y[k];
         }),
         hold);
}

void Scaled(bench::Size, const std::function<void(bench::Race&)>& hold) {
  const Operands o;
  const double* x = o.a.data();
  Beside([&]() -> RegularMatrix& { return o.a * 2.5; }, Bare<9>([x](double* c) {
           for (unsigned k = 0; k < 9; ++k) c[k] = x[k] * 2.5;
         }),
         hold);
}

void Transposed(bench::Size, const std::function<void(bench::Race&)>& hold) {
  const Operands o;
  const double* x = o.a.data();
  Beside([&]() -> RegularMatrix& { return transpose(o.a); }, Bare<9>([x](double* c) {
           for (unsigned i = 0; i < 3; ++i) {
             for (unsigned j = 0; j < 3; ++j) c[3 * i + j] = x[3 * j + i];
           }
         }),
         hold);
}

void Product(const double* x, const double* y, double* c) {
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) {
      double sum = 0.0;
      for (unsigned k = 0; k < 3; ++k) sum += x[3 * i + k] * y[3 * k + j];
      c[3 * i + j] = sum;
    }
  }
}

void General(bench::Size, const std::function<void(bench::Race&)>& hold) {
  const Operands o;
  const double *x = o.a.data(), *y = o.b.data();
  Beside([&]() -> RegularMatrix& { return o.a * o.b; }, Bare<9>([x, y](double* c) { Product(x, y, c); }), hold);
}

void Congruence(bench::Size, const std::function<void(bench::Race&)>& hold) {
  const Operands o;
  const double *x = o.a.data(), *s = o.q.data();
  Beside([&]() -> SymmetricMatrix& { return AQAT(o.a, o.q); }, Bare<6>([x, s](double* c) {
           const double q[9] = {s[0], s[1], s[2], s[1], s[3], s[4], s[2], s[4], s[5]};
           double w[9];
           Product(x, q, w);
           for (unsigned i = 0; i < 3; ++i) {
             for (unsigned j = i; j < 3; ++j) {
               double sum = 0.0;
               for (unsigned k = 0; k < 3; ++k) sum += w[3 * i + k] * x[3 * j + k];
               *c++ = sum;
             }
           }
         }),
         hold);
}

const std::vector<bench::Size> kThree{{kOrder, 0}};
const bench::Entered sum("overhead", "overhead of A+B", kThree, Sum);
const bench::Entered symmetric("overhead", "overhead of P+Q", kThree, SymmetricSum);
const bench::Entered scaled("overhead", "overhead of A*s", kThree, Scaled);
const bench::Entered transposed("overhead", "overhead of transpose(A)", kThree, Transposed);
const bench::Entered product("overhead", "overhead of A*B", kThree, General);
const bench::Entered congruence("overhead", "overhead of AQAT", kThree, Congruence);

}  // namespace
