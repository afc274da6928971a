// complexSinh, complexCosh, complexTanh, complexSin, complexCos and complexTan in lanes, with the bits of
// their extended routines: the loop over strips.
//
// A part of the result is the product of two short pairs, or the quotient of such, hi + lo. Where every
// number within the errors of both the lanes and the extended routine of hi + lo rounds to the same
// double-precision number, that number is the extended routine's; the other elements, one in 70 to 150,
// go through that routine, and so do those with a part outside the lanes' range.
#pragma once
#include "complex/certified/elements.h"
#include "complex/certified/quotients.h"
#include "complex/parts.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

constexpr int stripLength = 32;
// Of hi: of the part with sinh x and the one with cosh x.
constexpr Float64 boundWithSinh = 4.625 * 0x1p-64, boundWithCosh = 5.25 * 0x1p-64;

// The arguments, the hyperbolic functions' one being x whatever part it is, and their functions.
struct Strip {
  alignas(32) Float64 x[stripLength], y[stripLength];
  alignas(32) Float64 sinhHead[stripLength], sinhRest[stripLength], coshHead[stripLength], coshRest[stripLength];
  alignas(32) Float64 sinHead[stripLength], sinRest[stripLength], cosHead[stripLength], cosRest[stripLength];
};

// The parts that the lanes serve, beside zeros: 2^-100 <= |part| < 256, and in quotients |x| < 512. Zeros
// and these are outside at first.
constexpr uint32_t firstHighWord = 0x39b00000, limitHighWord = 0x40700000, limitOfQuotients = 0x40800000;
template <class V>
INLINE auto outside(V part) {
  const auto word = highWords(part) & 0x7fffffff;
  return (word > static_cast<int>(limitHighWord - 1)) | (static_cast<int>(firstHighWord) > word);
}
INLINE bool isOutside(Float64 part, uint32_t limit) {
  return (highWord(part) & 0x7fffffff) - firstHighWord >= limit - firstHighWord && toBits(part) << 1 != 0;
}

// Whether the lanes serve the whole strip, zeros and all; the functions with a cosine of 0 have the exact
// value 1 there, and don't.
template <Function function, class V>
INLINE bool hasZerosOnly(const Strip& s, int count) {
  WordsOf<V> isOther{};
  for (int i = 0; i < count; i += laneCount<V>) {
    const auto bitsOfMagnitude = [](V part) INLINED { return (highWords(part) & 0x7fffffff) | lowWords(part); };
    const V x = load<V>(s.x + i), y = load<V>(s.y + i);
    const auto anyX = bitsOfMagnitude(x) != 0, anyY = bitsOfMagnitude(y) != 0;
    isOther = isOther | (outside(x) & anyX) | (outside(y) & anyY);
    if constexpr (!hasSinhCos(function)) isOther = isOther | ~(anyX | anyY);
  }
  return !any(isOther);
}

// Masks of the elements outside, which become 0, and of those with |x| from 256 up that don't.
struct OutsideMasks {
  uint64_t outside, large;
};
template <Function function>
[[gnu::noinline]] OutsideMasks takeOutside(Strip& s, int count) {
  OutsideMasks set = {0, 0};
  for (int i = 0; i < count; ++i) {
    const bool isExact = !hasSinhCos(function) && toBits(s.x[i]) << 1 == 0 && toBits(s.y[i]) << 1 == 0;
    constexpr uint32_t limitOfX = isQuotient(function) ? limitOfQuotients : limitHighWord;
    if (isOutside(s.x[i], limitOfX) || isOutside(s.y[i], limitHighWord) || isExact) {
      set.outside |= uint64_t{1} << i;
      s.x[i] = s.y[i] = 0;
    } else if (isOutside(s.x[i], limitHighWord)) {
      set.large |= uint64_t{1} << i;
    }
  }
  return set;
}

template <class V>
INLINE ShortPair<V> loadPair(const Float64* head, const Float64* rest) {
  return {load<V>(head), load<V>(rest)};
}

template <class V>
struct Certain {
  V value, isCertain;
};
// |hi + lo| with the given sign, and a mask where it is certain.
template <class V, class Bound>
INLINE Certain<V> certainSum(V hi, V lo, V sign, Bound bound) {
  const V error = hi * bound, value = hi + (lo + error);
  return {orBits(magnitude(value), sign), equalLanes(value, hi + (lo - error))};
}
template <class V>
INLINE Certain<V> certainProduct(ShortPair<V> a, ShortPair<V> b, V sign, Float64 bound) {
  const V first = a.head * b.head, second = a.head * b.rest + a.rest * (b.head + b.rest);
  const V hi = first + second;
  return certainSum(hi, (first - hi) + second, sign, bound);
}
template <class V>
INLINE Certain<V> certainPair(ShortPair<V> a, V sign, V bound) {
  const V hi = a.head + a.rest;
  return certainSum(hi, (a.head - hi) + a.rest, sign, bound);
}

// In stages, each a loop over the strip: their chains are short enough for the processor to overlap
// their turns. W is two vectors in lockstep, V one.
template <class W, class V, class Stage>
INLINE void eachVector(int count, Stage stage) {
  int i = 0;
  for (; i + laneCount<W> <= count; i += laneCount<W>) stage(W{}, i);
  for (; i < count; i += laneCount<V>) stage(V{}, i);
}
template <class W, class V>
[[gnu::noinline]] void hyperbolicStage(Strip& s, int count) {
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto h = hyperbolicPairs(magnitude(load<U>(s.x + i)));
    store(s.sinhHead + i, h.sinh.head), store(s.sinhRest + i, h.sinh.rest);
    store(s.coshHead + i, h.cosh.head), store(s.coshRest + i, h.cosh.rest);
  });
}
template <class W, class V>
[[gnu::noinline]] uint64_t trigonometricStage(Strip& s, int count) {
  uint64_t unsure = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto t = trigonometricPairs(magnitude(load<U>(s.y + i)));
    store(s.sinHead + i, t.sin.head), store(s.sinRest + i, t.sin.rest);
    store(s.cosHead + i, t.cos.head), store(s.cosRest + i, t.cos.rest);
    unsure |= signMask(t.isUnsure) << i;
  });
  return unsure;
}
template <Function function, class W, class V>
[[gnu::noinline]] uint64_t productStage(const Strip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto sinh = loadPair<U>(s.sinhHead + i, s.sinhRest + i), cosh = loadPair<U>(s.coshHead + i, s.coshRest + i);
    const auto sin = loadPair<U>(s.sinHead + i, s.sinRest + i), cos = loadPair<U>(s.cosHead + i, s.cosRest + i);
    const U x = load<U>(s.x + i), y = load<U>(s.y + i);
    const U signOfSin = signOf(xorBits(sin.head, y)), signOfCos = signOf(cos.head);
    Certain<U> withSinh, withCosh;
    if constexpr (hasSinhCos(function)) {
      withSinh = certainProduct(sinh, cos, xorBits(signOfCos, signOf(x)), boundWithSinh);
      withCosh = certainProduct(cosh, sin, signOfSin, boundWithCosh);
    } else {
      withSinh = certainProduct(sinh, sin, xorBits(signOfSin, signOf(x)), boundWithSinh);
      withCosh = certainProduct(cosh, cos, signOfCos, boundWithCosh);
    }
    if constexpr (function == Function::cos) withSinh.value = xorBits(withSinh.value, broadcast<U>(-0.0));
    storeParts(dst + i, function == Function::sinh ? Parts<U>{withSinh.value, withCosh.value}
                                                   : Parts<U>{withCosh.value, withSinh.value});
    certain |= signMask(andBits(withSinh.isCertain, withCosh.isCertain)) << i;
  });
  return ~certain;
}

template <Function function, bool hasLarge, class W, class V>
[[gnu::noinline]] uint64_t quotientStage(const Strip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachVector<W, V>(count, [&]<class U>(U, int i) INLINED {
    const auto sin = loadPair<U>(s.sinHead + i, s.sinRest + i), cos = loadPair<U>(s.cosHead + i, s.cosRest + i);
    Scaled<U> p = {loadPair<U>(s.sinhHead + i, s.sinhRest + i), loadPair<U>(s.coshHead + i, s.coshRest + i), cos};
    const U x = load<U>(s.x + i), y = load<U>(s.y + i);
    if constexpr (hasLarge) p = scaledDown(x, p.sinh, p.cosh, cos);
    const Quotients<U> q = quotients(p.sinh, p.cosh, sin, cos, p.cos);
    const Certain<U> ofSinhCosh = certainPair(q.ofSinhCosh, signOf(x), q.boundOfSinhCosh());
    const Certain<U> ofSinCos =
        certainPair(q.ofSinCos, signOf(xorBits(xorBits(sin.head, cos.head), y)), q.boundOfSinCos());
    storeParts(dst + i, function == Function::tanh ? Parts<U>{ofSinhCosh.value, ofSinCos.value}
                                                   : Parts<U>{ofSinCos.value, ofSinhCosh.value});
    certain |= signMask(andBits(ofSinhCosh.isCertain, ofSinCos.isCertain)) << i;
  });
  return ~certain;
}
// The last stage; a mask of the elements that aren't certain.
template <Function function, class W, class V>
INLINE uint64_t resultStage(const Strip& s, Complex64* dst, int count, bool hasLarge) {
  if constexpr (!isQuotient(function)) return productStage<function, W, V>(s, dst, count);
  if (hasLarge) return quotientStage<function, true, W, V>(s, dst, count);
  return quotientStage<function, false, W, V>(s, dst, count);
}

// Where element i of the strip's arguments stands: loadParts leaves four lanes as 0, 2, 1, 3.
template <class V>
constexpr int placeOf(int i) {
  return laneCount<V> == 4 ? (i & ~3) | (i & 1) << 1 | (i & 2) >> 1 : i;
}

template <Function function, class W, class V>
[[gnu::noinline]] void evaluateStrip(const Complex64* src, Complex64* dst, int count) {
  Strip s;
  constexpr int lanes = laneCount<V>;
  WordsOf<V> isOutsideOrZero{};
  const auto take = [&](const Complex64* from, int i) INLINED {
    const Parts<V> z = loadParts<V>(from);
    constexpr bool turned = isTurned(function);
    store(s.x + i, turned ? z.im : z.re), store(s.y + i, turned ? z.re : z.im);
    isOutsideOrZero = isOutsideOrZero | outside(z.re) | outside(z.im);
  };
  const int full = count & -lanes, whole = (count + lanes - 1) & -lanes;
  for (int i = 0; i < full; i += lanes) take(src + i, i);
  if (full < whole) {
    Complex64 last[lanes];
    for (int i = 0; i < lanes; ++i) last[i] = src[full + i < count ? full + i : full];
    take(last, full);
  }

  uint64_t left = 0, large = 0;
  const Float64 *x = s.x, *y = s.y;
  Float64 savedX[stripLength], savedY[stripLength];
  if (any(isOutsideOrZero) && !hasZerosOnly<function, V>(s, whole)) [[unlikely]] {
    __builtin_memcpy(savedX, s.x, static_cast<size_t>(whole) * sizeof *s.x);
    __builtin_memcpy(savedY, s.y, static_cast<size_t>(whole) * sizeof *s.y);
    x = savedX, y = savedY;
    const OutsideMasks masks = takeOutside<function>(s, whole);
    left = masks.outside, large = masks.large;
  }
  if (left != ~uint64_t{0} >> (64 - whole)) {
    hyperbolicStage<W, V>(s, whole);
    left |= trigonometricStage<W, V>(s, whole);
    if (whole == count) {
      left |= resultStage<function, W, V>(s, dst, whole, large != 0);
    } else {
      Complex64 results[stripLength];
      left |= resultStage<function, W, V>(s, results, whole, large != 0);
      __builtin_memcpy(dst, results, static_cast<size_t>(count) * sizeof *dst);
    }
    left &= ~uint64_t{0} >> (64 - whole);
  }
  if ((left | large) == 0) return;
  for (int i = 0; i < count; ++i) {
    const int place = placeOf<V>(i);
    if ((left >> place & 1) == 0) {
      if ((large >> place & 1) == 0 || scaleBack(function == Function::tanh ? dst[i].im : dst[i].re)) continue;
    }
    dst[i] = element<function>(isTurned(function) ? Complex64{y[place], x[place]} : Complex64{x[place], y[place]});
  }
}

// The proof wants round to nearest, and no exception may end the call before its time.
INLINE bool isAllowed() {
  constexpr uint32_t masksAndRounding = 0x7f80, masks = 0x1f80, x87Masks = 0x3f;
  return (readMxcsr() & masksAndRounding) == masks && (readX87Control() & x87Masks) == x87Masks;
}

template <Function function, class W, class V>
INLINE nuvStatus certifiedLoop(const Complex64* src, Complex64* dst, int64_t len) {
  if (!isAllowed()) [[unlikely]]
    return elements<function>(src, dst, len);
  for (int count; len > 0; src += count, dst += count, len -= count) {
    count = len < stripLength ? static_cast<int>(len) : stripLength;
    evaluateStrip<function, W, V>(src, dst, count);
  }
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
