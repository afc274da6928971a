// What the loops over strips share: an element's parts are taken where every number within both errors
// of hi + lo rounds to one double-precision number, and the other elements go through the routines.
#pragma once
#include "complex/certified/elements.h"
#include "complex/certified/pairs.h"
#include "complex/parts.h"
#include "frame/kernel_frame.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

constexpr int stripLength = 32;

// The parts that the lanes serve, beside zeros, are from 2^-100 up. Zeros are outside at first.
constexpr uint32_t firstHighWord = 0x39b00000;
template <uint32_t limit, class V>
INLINE auto outside(V part) {
  const auto word = highWords(part) & 0x7fffffff;
  return (word > static_cast<int>(limit - 1)) | (static_cast<int>(firstHighWord) > word);
}
// Words that aren't all zeros where any of both parts is outside of first <= its high word < limit. The high words of
// both are tested at once, in any order.
template <uint32_t first, uint32_t limit>
INLINE Words4 outsideWords(Words4 highWords) {
  constexpr uint32_t lowest = 0x80000000;  // so that unsigned numbers compare as signed ones
  return wrappingDifference(highWords, static_cast<int>(first ^ lowest)) >
         static_cast<int>((limit - first - 1) ^ lowest);
}
template <uint32_t first, uint32_t limit, class V>
INLINE Words4 eitherOutside(V x, V y) {
#ifdef __AVX__
  if constexpr (laneCount<V> == 4) {
    const __m256 both = _mm256_shuffle_ps(_mm256_castpd_ps(magnitude(x)), _mm256_castpd_ps(magnitude(y)), upperHalves);
    return outsideWords<first, limit>(reinterpret_cast<Words4>(_mm256_castps256_ps128(both))) |
           outsideWords<first, limit>(reinterpret_cast<Words4>(_mm256_extractf128_ps(both, 1)));
  } else
#endif
    return outsideWords<first, limit>(packHighWords(magnitude(x), magnitude(y)));
}
INLINE bool isOutside(Float64 part, uint32_t limit) {
  return (highWord(part) & 0x7fffffff) - firstHighWord >= limit - firstHighWord && toBits(part) << 1 != 0;
}

template <class V>
INLINE ShortPair<V> loadPair(const Float64* head, const Float64* rest) {
  return {load<V>(head), load<V>(rest)};
}

template <class V>
struct Certain {
  V value, isCertain;
};
// hi + lo, and a mask where it is certain to be so within the error.
template <class V>
INLINE Certain<V> certainSum(Sum<V> x, V error) {
  const V value = x.high + (x.low + error);
  return {value, equalLanes(value, x.high + (x.low - error))};
}

// The error being that bound times hi.
template <class V, class Bound>
INLINE Certain<V> certainRelative(Sum<V> x, Bound bound) {
  if constexpr (!isFused) return certainSum(x, x.high * bound);
  const V value = x.high + timesPlus(bound, x.high, x.low);
  return {value, equalLanes(value, x.high + minusTimes(x.low, x.high, bound))};
}

// |x| with the given sign, x being a fast sum's, and the bound of its error relative to it.
template <class V, class Bound>
INLINE Certain<V> certainWithSign(Sum<V> x, V sign, Bound bound) {
  const Certain<V> sum = certainRelative(x, bound);
  return {orBits(magnitude(sum.value), sign), sum.isCertain};
}
template <class V>
INLINE Certain<V> certainProduct(ShortPair<V> a, ShortPair<V> b, V sign, Float64 bound) {
  const Sum<V> p = product(a, b);
  return certainWithSign(fastSum(p.high, p.low), sign, bound);
}

// The stages are loops over the strip. What binds them is not the operations but those that wait for others: the
// processor holds some 64 of these. So a stage is a chain of some 30 cycles, and leaves numbers and places of rows in
// the strip for the next one. W is four lanes, or, where registers are enough, two vectors in lockstep; V is one
// vector.

// The places of rows that an earlier stage has left, for the tables' functions.
INLINE auto rowsAt(const int* offsets) {
  return [offsets](int lane) INLINED -> uint64_t { return static_cast<uint32_t>(offsets[lane]); };
}
// Where element i of the strip's arguments stands: loadParts leaves four lanes as 0, 2, 1, 3.
template <class V>
constexpr int placeOf(int i) {
  return laneCount<V> == 4 ? (i & ~3) | (i & 1) << 1 | (i & 2) >> 1 : i;
}

// Calls `take` with the address of each vector of elements and its place, and fills the last one up with
// its first element; the count of places.
template <class V, class Take>
INLINE int loadStrip(const Complex64* src, int count, Take take) {
  constexpr int lanes = laneCount<V>;
  const int full = count & -lanes;
  for (int i = 0; i < full; i += lanes) take(src + i, i);
  if (full == count) return full;
  alignas(32) Complex64 last[lanes];
  storeParts(last, loadSomeParts<V>(src + full, count - full));
  take(last, full);
  return full + lanes;
}
// Has `stage` store the results, those of `whole` places, from dst on if there are as many elements.
template <int length = stripLength, class Stage>
INLINE uint64_t storeStrip(Complex64* dst, int count, int whole, Stage stage) {
  if (whole == count) return stage(dst);
  alignas(32) Complex64 results[length];
  const uint64_t left = stage(results);
  int i = 0;
  for (; i + 2 <= count; i += 2) store(&dst[i].re, load<Four>(&results[i].re));
  if (i < count) store(&dst[i].re, load<Lanes2>(&results[i].re));
  return left;
}
// The elements of a strip as a mask.
INLINE uint64_t allOf(int whole) { return ~uint64_t{0} >> (64 - whole); }

// The proof wants round to nearest, and no exception may end the call before its time.
INLINE bool isAllowed() {
  constexpr uint32_t masksAndRounding = 0x7f80, masks = 0x1f80, x87Masks = 0x3f;
  return (readMxcsr() & masksAndRounding) == masks && (readX87Control() & x87Masks) == x87Masks;
}

template <Function function, void evaluate(const Complex64*, Complex64*, int), int length = stripLength>
INLINE nuvStatus stripLoop(const Complex64* src, Complex64* dst, int64_t len) {
  if (!isAllowed()) [[unlikely]]
    return elements<function>(src, dst, len);
  for (int count; len > 0; src += count, dst += count, len -= count) {
    count = len < length ? static_cast<int>(len) : length;
    evaluate(src, dst, count);
  }
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
