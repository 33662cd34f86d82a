// Every exported function of the library as a call with drawn arguments.

#ifndef QUORVEL_TESTS_MISUSE_CALLS_H
#define QUORVEL_TESTS_MISUSE_CALLS_H

#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "misuse/arguments.h"

namespace quorvel::test {

struct Call {
  const char* symbol;
  void (*run)(Arguments&);
};

// All of them, sorted by symbol.
const std::vector<Call>& Calls();

// A call that some source file adds before main().
struct AddCall {
  AddCall(const char* symbol, void (*run)(Arguments&));
};

// Draws the arguments in the order of the parameters, and calls.
template <class... Parameters, class Function>
void Run(Arguments& arguments, Function function) {
  std::tuple<Holder<Parameters>...> held{Holder<Parameters>(arguments)...};
  std::apply(
      [&](auto&... holder) {
        using Result = decltype(function(holder.get()...));
        arguments.Begin();
        if constexpr (std::is_convertible_v<std::decay_t<Result>*, const Matrix*> && std::is_reference_v<Result>) {
          arguments.Returned(&function(holder.get()...));
        } else if constexpr (std::is_convertible_v<Result, const Matrix*>) {
          arguments.Returned(function(holder.get()...));
        } else {
          static_cast<void>(function(holder.get()...));
        }
      },
      held);
}

}  // namespace quorvel::test

#endif
