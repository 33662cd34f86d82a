// How a row of the generated lists becomes a call.

#ifndef QUORVEL_TESTS_MISUSE_CALLS_ROWS_H
#define QUORVEL_TESTS_MISUSE_CALLS_ROWS_H

#include "misuse/calls.h"

#define QUORVEL_ROW_NAME_(line) add_call_##line
#define QUORVEL_ROW_NAME(line) QUORVEL_ROW_NAME_(line)
#define QUORVEL_ROW const AddCall QUORVEL_ROW_NAME(__LINE__)

#define CALL(symbol, name, ...)                                                                            \
  QUORVEL_ROW(symbol, [](Arguments& arguments) {                                                           \
    Run<__VA_ARGS__>(arguments,                                                                            \
                     [](auto&&... x) -> decltype(auto) { return name(static_cast<decltype(x)>(x)...); }); \
  });
#define CALL0(symbol, name)                                                                 \
  QUORVEL_ROW(symbol, [](Arguments& arguments) {                                            \
    arguments.Begin();                                                                      \
    name();                                                                                 \
  });
#define MEMBER(symbol, name, ...)                                                                      \
  QUORVEL_ROW(symbol, [](Arguments& arguments) {                                                       \
    Run<__VA_ARGS__>(arguments, [](auto& object, auto&&... x) -> decltype(auto) {                      \
      return object.name(static_cast<decltype(x)>(x)...);                                              \
    });                                                                                                \
  });
#define MAKE(symbol, kind, ...)                                                                        \
  QUORVEL_ROW(symbol, [](Arguments& arguments) {                                                       \
    Run<__VA_ARGS__>(arguments, [](auto&&... x) { kind made(static_cast<decltype(x)>(x)...); });       \
  });
#define MAKE0(symbol, kind)                      \
  QUORVEL_ROW(symbol, [](Arguments& arguments) { \
    arguments.Begin();                           \
    kind made;                                   \
  });

#endif
