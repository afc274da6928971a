// One way to call every function. Its parameter list says everything: a pointer to const is the
// next input, another pointer the next output, the last int32_t the length, any other int32_t the
// offset of the array before it, and what remains is the scalar. An array of complex numbers is
// handed over as an array of doubles, two an element.
#pragma once
#include <algorithm>
#include <cstring>
#include <tuple>
#include <type_traits>

#include "frame/bits.h"
#include "frame/include/qorvane.h"

namespace qorvane {

// The arguments of one call; a function takes those that it has parameters for.
struct Call {
  const double* in[2];
  double* out[2];
  double value[2];  // the scalar: a number, or the two parts of a complex one
  int32_t len;
  int32_t inOffset[2], outOffset[2];  // of twins, in elements
};

struct Signature {
  int inputs, outputs;  // arrays
  int parts;            // doubles an element: 1, or 2 where the elements are complex
  bool scalar;

  constexpr int realsIn() const { return (inputs + scalar) * parts; }
  constexpr int realsOut() const { return outputs * parts; }
};

template <class P>
constexpr bool isOutput = std::is_pointer_v<P> && !std::is_const_v<std::remove_pointer_t<P>>;
template <class P>
constexpr bool isInput = std::is_pointer_v<P> && !isOutput<P>;
template <class P>
constexpr bool isScalar = !std::is_pointer_v<P> && !std::is_same_v<P, int32_t>;

template <class... P>
constexpr Signature signatureOf(nuvStatus (*)(P...)) {
  return {(isInput<P> + ...), (isOutput<P> + ...),
          static_cast<int>(std::max({sizeof(std::remove_pointer_t<P>)...}) / sizeof(double)), (isScalar<P> || ...)};
}

template <class... P>
INLINE nuvStatus call(nuvStatus (*function)(P...), const Call& c) {
  size_t inputs = 0, outputs = 0, left = sizeof...(P);
  int32_t offset = 0;
  const auto next = [&]<class T>(std::type_identity<T>) -> T {
    --left;
    if constexpr (isInput<T>) {
      offset = c.inOffset[inputs];
      return reinterpret_cast<T>(c.in[inputs++]);
    } else if constexpr (isOutput<T>) {
      offset = c.outOffset[outputs];
      return reinterpret_cast<T>(c.out[outputs++]);
    } else if constexpr (isScalar<T>) {
      T scalar;
      std::memcpy(&scalar, c.value, sizeof scalar);
      return scalar;
    } else {
      return left == 0 ? c.len : offset;
    }
  };
  const std::tuple<P...> arguments{next(std::type_identity<P>{})...};  // from left to right
  return std::apply(function, arguments);
}

}  // namespace qorvane
