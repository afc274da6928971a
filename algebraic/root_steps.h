// The steps from an argument and its seed to the square root or its reciprocal, each but a few
// operations long. F has those in which the functions differ:
//   highBits                 the bits of x that make its high part; the low part is the rest
//   coefficients             of the series s in the residual e, the highest first: s = e (... + c
//   e)
//   residual(terms)          e, from y^2 times either part
//   product(s, x, y), result(product, halves)
// and for the pipeline, which doesn't meet squares of seeds that are subnormal,
//   open(x, y)               what the terms, and the result if it endsWithHalves, begin with
//   terms(x, y, opened)      the same two terms from there
#pragma once
#include <array>

#include "frame/lanes.h"

namespace qorvane {
namespace {

template <class V>
struct Halves {
  V high, low;
};
template <class F, class V>
INLINE Halves<V> partsOf(V x) {
  const V high = andBits(x, broadcast<V>(fromBits(F::highBits)));
  return {high, x - high};
}
template <class V>
struct Partial {
  V e, sum;
};
template <class V>
struct Product {
  V value, y;
};

template <class F, class V>
INLINE Partial<V> firstStep(V e) {
  return {e, F::coefficients[0] * e + F::coefficients[1]};
}
template <class F, int k, class V>
INLINE Partial<V> middleStep(Partial<V> p) {
  return {p.e, p.sum * p.e + F::coefficients[k + 1]};
}
template <class F, class V>
INLINE V lastStep(Partial<V> p) {
  return (p.sum * p.e + F::coefficients.back()) * p.e;
}
template <class F, class V>
INLINE V seriesIn(Partial<V> p) {
  p = middleStep<F, 1>(p);
  if constexpr (F::coefficients.size() == 5) p = middleStep<F, 2>(p);
  return lastStep<F>(p);
}

// All of them together, for any seed.
template <class F, class V>
INLINE V residualOf(V x, V y) {
  const V y2 = y * y;
  const Halves<V> part = partsOf<F>(x);
  return F::residual(Halves<V>{part.high * y2, part.low * y2});
}
template <class F, class V>
INLINE V seriesOf(V x, V y) {
  return seriesIn<F>(firstStep<F>(residualOf<F>(x, y)));
}
template <class F, class V>
INLINE V rootFrom(V series, V x, V y) {
  return F::result(F::product(series, x, y), F::open(x, y));
}
template <class F, class V>
INLINE V rootOf(V x, V y) {
  return rootFrom<F>(seriesOf<F>(x, y), x, y);
}

// sqrt(x) = x y (1 + s). The seed is short enough for its products with the parts of x to be exact:
// the largest term of the sum at the end is, and y times such a product is what y^2, exact too,
// times the part would be.
template <uint64_t high>
struct RootSteps {
  static constexpr uint64_t highBits = high;
  static constexpr bool endsWithHalves = true;
  template <class V>
  INLINE static Halves<V> open(V x, V y) {
    const Halves<V> part = partsOf<RootSteps>(x);
    return {y * part.high, y * part.low};
  }
  template <class V>
  INLINE static Halves<V> terms(V, V y, Halves<V> opened) {
    return {y * opened.high, y * opened.low};
  }
  template <class V>
  INLINE static Product<V> product(V series, V x, V y) {
    return {x * (series * y), y};
  }
  template <class V>
  INLINE static V result(Product<V> p, Halves<V> opened) {
    return opened.high + (opened.low + p.value);
  }
};

}  // namespace
}  // namespace qorvane
