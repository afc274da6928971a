// What levels 1 to 3 of the square root and all levels of its reciprocal have in common: the series.
#pragma once
#include "algebraic/root_loop.h"

namespace qorvane {
namespace {

// (1 + e)^(-1/2) - 1, |e| < 2^-10, in e = x y^2 - 1: the Taylor polynomial of degree 5, in steps.
template <class V>
INLINE Partial<V> firstStep(V e) {
  return {e, (-63.0 / 256) * e + 35.0 / 128};
}
template <class V>
INLINE Partial<V> secondStep(Partial<V> p) {
  return {p.e, p.sum * p.e - 0.3125};
}
template <class V>
INLINE Partial<V> thirdStep(Partial<V> p) {
  return {p.e, p.sum * p.e + 0.375};
}
template <class V>
INLINE V lastStep(Partial<V> p) {
  return (p.sum * p.e - 0.5) * p.e;
}
constexpr auto series = [](auto p) INLINED { return lastStep(thirdStep(secondStep(p))); };

}  // namespace
}  // namespace qorvane
