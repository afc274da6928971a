// Numbers in lanes as short pairs: head + rest, where the head has 26 bits and the rest all that is
// below. Products of heads are exact, so the product of two pairs is three products and two sums,
// good to 2^-77.
#pragma once
#include "complex/pairs.h"

namespace qorvane {
namespace {

// Sources with the ending _fma have forms with fused multiply-adds, in which a product's low part costs one
// operation: a head is then a whole number in double precision.
#ifdef __FMA__
constexpr bool isFused = true;
#else
constexpr bool isFused = false;
#endif

// A number for all lanes, or lanes as they are.
template <class V, class A>
INLINE V lifted(A a) {
  if constexpr (std::is_same_v<A, V>)
    return a;
  else
    return broadcast<V>(a);
}
// a b + c and c - a b, with one rounding in the fused forms.
template <class A, class V, class C>
INLINE V timesPlus(A a, V b, C c) {
  if constexpr (isFused)
    return fused(lifted<V>(a), b, lifted<V>(c));
  else
    return a * b + c;
}
template <class V, class B>
INLINE V minusTimes(V c, V a, B b) {
  if constexpr (isFused)
    return fusedFrom(c, a, lifted<V>(b));
  else
    return c - a * b;
}

template <class V>
INLINE V headOf(V x) {
  return halvesOf(x).upper;
}

template <class V>
struct ShortPair {
  V head, rest;
};
template <class V>
INLINE ShortPair<V> splitOf(V x) {
  const V head = headOf(x);
  return {head, x - head};
}
// An exact sum as a pair.
template <class V>
INLINE ShortPair<V> pairOf(Sum<V> x) {
  if constexpr (isFused) return {x.high, x.low};
  const V head = headOf(x.high);
  return {head, (x.high - head) + x.low};
}
// v + low; low is below 2^-12 of v, or v and low are 0.
template <class V>
INLINE ShortPair<V> shortPair(V v, V low) {
  V head = v + low;
  if constexpr (!isFused) head = headOf(head);
  return {head, (v - head) + low};
}

// A product: that of the heads, exact, and what is left.
template <class V>
INLINE Sum<V> product(ShortPair<V> a, ShortPair<V> b) {
  if constexpr (isFused) {
    const V high = a.head * b.head;
    return {high, fused(a.rest, b.head, fused(a.head, b.rest, fusedLess(a.head, b.head, high)))};
  }
  return {a.head * b.head, a.head * b.rest + a.rest * (b.head + b.rest)};
}
template <class V>
INLINE Sum<V> square(ShortPair<V> a) {
  if constexpr (isFused) {
    const V high = a.head * a.head;
    return {high, fused(a.head + a.head, a.rest, fusedLess(a.head, a.head, high))};
  }
  return {a.head * a.head, ((a.head + a.head) + a.rest) * a.rest};
}
template <class V>
INLINE ShortPair<V> sumOf(Sum<V> a, Sum<V> b) {
  const Sum<V> s = exactSum(a.high, b.high);
  return shortPair(s.high, s.low + (a.low + b.low));
}
// a / b, where `reciprocal` is 1/b in double precision: the leading 26 bits, and the rest from the exact
// remainder.
template <class V>
INLINE ShortPair<V> quotient(Sum<V> a, ShortPair<V> b, V reciprocal) {
  if constexpr (isFused) {
    const V head = a.high * reciprocal;
    return {head, fusedFrom(fusedFrom(a.high, head, b.head) + a.low, head, b.rest) * reciprocal};
  }
  const V head = headOf((a.high + a.low) * reciprocal);
  return {head, ((a.high - head * b.head) + (a.low - head * b.rest)) * reciprocal};
}

}  // namespace
}  // namespace qorvane
