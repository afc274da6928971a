// complexSinh, complexCosh, complexTanh, complexSin, complexCos and complexTan in lanes, with the bits of
// their extended routines: the loop over strips.
//
// A part of the result is the product of two short pairs, or the quotient of such, hi + lo. Where every
// number within the errors of both the lanes and the extended routine of hi + lo rounds to the same
// double-precision number, that number is the extended routine's; the other elements, one in 70 to 150,
// go through that routine, and so do those with a part outside the lanes' range.
#pragma once
#include "complex/certified/quotients.h"
#include "complex/certified/reduction_strip.h"

namespace qorvane {
namespace {

// Of hi: of the part with sinh x and the one with cosh x.
constexpr Float64 boundWithSinh = 4.625 * 0x1p-64, boundWithCosh = 5.25 * 0x1p-64;

// The arguments, the hyperbolic functions' one being x whatever part it is, and their functions.
struct Strip {
  alignas(32) Float64 x[stripLength], y[stripLength];
  ReducedStrip reducedX, reducedY;
  alignas(32) Float64 sinhHead[stripLength], sinhRest[stripLength], coshHead[stripLength], coshRest[stripLength];
  TurnStrip turn;
};

// The parts that the lanes serve, beside zeros: 2^-100 <= |part| < 256; in strips with larger ones
// |x| < 1024, in quotients all numbers, and |y| < 10^8. Zeros and these are outside at first.
constexpr uint32_t limitHighWord = 0x40700000, limitOfLargeX = 0x40900000, limitOfLargeY = 0x4197d784;
// From 512 up quotients are those of 500: 1, and a zero that isn't exact.
constexpr uint32_t limitOfQuotients = 0x40800000, infinityHighWord = 0x7ff00000;

// Whether the lanes serve the whole strip, zeros and all; the functions with a cosine of 0 have the exact
// value 1 there, and don't.
template <Function function, class V>
INLINE bool hasZerosOnly(const Strip& s, int count) {
  WordsOf<V> isOther{};
  for (int i = 0; i < count; i += laneCount<V>) {
    const V x = load<V>(s.x + i), y = load<V>(s.y + i);
    const auto anyX = isNonzero(x), anyY = isNonzero(y);
    isOther = isOther | (outside<limitHighWord>(x) & anyX) | (outside<limitHighWord>(y) & anyY);
    if constexpr (!hasSinhCos(function)) isOther = isOther | ~(anyX | anyY);
  }
  return !any(isOther);
}

// Masks of the elements outside, which become 0, and of those with |x| and |y| from 256 up that don't.
struct OutsideMasks {
  uint64_t outside, largeX, largeY;
};
template <Function function>
[[gnu::noinline]] OutsideMasks takeOutside(Strip& s, Float64* savedX, Float64* savedY, int count) {
  OutsideMasks set = {0, 0, 0};
  for (int i = 0; i < count; ++i) {
    savedX[i] = s.x[i], savedY[i] = s.y[i];
    const bool isExact = !hasSinhCos(function) && toBits(s.x[i]) << 1 == 0 && toBits(s.y[i]) << 1 == 0;
    constexpr uint32_t limitOfX = isQuotient(function) ? infinityHighWord : limitOfLargeX;
    if (isOutside(s.x[i], limitOfX) || isOutside(s.y[i], limitOfLargeY) || isExact) {
      set.outside |= uint64_t{1} << i;
      s.x[i] = s.y[i] = 0;
    } else {
      if (isQuotient(function) && isOutside(s.x[i], limitOfQuotients)) s.x[i] = s.x[i] < 0 ? -500 : 500;
      set.largeX |= static_cast<uint64_t>(isOutside(s.x[i], limitHighWord)) << i;
      set.largeY |= static_cast<uint64_t>(isOutside(s.y[i], limitHighWord)) << i;
    }
  }
  return set;
}

template <class V>
INLINE Certain<V> certainPair(ShortPair<V> a, V sign, V bound) {
  return certainWithSign(fastSum(a.head, a.rest), sign, bound);
}

template <bool hasLarge, class V>
[[gnu::noinline]] void hyperbolicStage(Strip& s, int count) {
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const ReducedStrip& a = s.reducedX;
    const U x = magnitude(load<U>(s.x + i));
    const auto h = hyperbolicPairs<hasLarge>(x, loadWords<U>(a.n + i), remainderAt<U>(a, i), rowsAt(a.row + i));
    store(s.sinhHead + i, h.sinh.head), store(s.sinhRest + i, h.sinh.rest);
    store(s.coshHead + i, h.cosh.head), store(s.coshRest + i, h.cosh.rest);
  });
}
template <class V>
INLINE V isLargeX(V x) {
  return lessLanes(broadcast<V>(0x1.fffffffffffffp7), magnitude(x));
}
template <Function function, bool hasLarge, class V>
[[gnu::noinline]] uint64_t productStage(const Strip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachGroup<Four, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto sinh = loadPair<U>(s.sinhHead + i, s.sinhRest + i), cosh = loadPair<U>(s.coshHead + i, s.coshRest + i);
    const auto [sin, cos] = turnAt<U>(s.turn, i);
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
    if constexpr (hasLarge) {  // what is certain overflows where the result does
      const U scale = select(isLargeX(x), broadcast<U>(0x1p512), broadcast<U>(1.0));
      withSinh.value = andBits(withSinh.value, withSinh.isCertain) * scale;
      withCosh.value = andBits(withCosh.value, withCosh.isCertain) * scale;
    }
    if constexpr (function == Function::cos) withSinh.value = xorBits(withSinh.value, broadcast<U>(-0.0));
    storeParts(dst + i, function == Function::sinh ? Parts<U>{withSinh.value, withCosh.value}
                                                   : Parts<U>{withCosh.value, withSinh.value});
    certain |= signMask(andBits(withSinh.isCertain, withCosh.isCertain)) << i;
  });
  return ~certain;
}

template <Function function, bool hasLarge, class V>
[[gnu::noinline]] uint64_t quotientStage(const Strip& s, Complex64* dst, int count) {
  uint64_t certain = 0;
  eachGroup<Pack<V, 2>, V>(count, [&]<class U>(U, int64_t i) INLINED {
    const auto [sin, cos] = turnAt<U>(s.turn, i);
    const auto sinh = loadPair<U>(s.sinhHead + i, s.sinhRest + i), cosh = loadPair<U>(s.coshHead + i, s.coshRest + i);
    const U x = load<U>(s.x + i), y = load<U>(s.y + i), isLarge = isLargeX(x);
    const Quotients<U> q = quotients(sinh, cosh, sin, cos, hasLarge ? besideSinh(isLarge, cos) : cos);
    const Certain<U> ofSinhCosh = certainPair(q.ofSinhCosh, signOf(x), q.boundOfSinhCosh());
    const U sign = signOf(xorBits(xorBits(sin.head, cos.head), y));
    const Certain<U> ofSinCos = hasLarge ? certainScaled(isLarge, q.ofSinCos, sign, q.boundOfSinCos())
                                         : certainPair(q.ofSinCos, sign, q.boundOfSinCos());
    storeParts(dst + i, function == Function::tanh ? Parts<U>{ofSinhCosh.value, ofSinCos.value}
                                                   : Parts<U>{ofSinCos.value, ofSinhCosh.value});
    certain |= signMask(andBits(ofSinhCosh.isCertain, ofSinCos.isCertain)) << i;
  });
  return ~certain;
}
// The last stage; a mask of the elements that aren't certain.
template <Function function, bool hasLarge, class V>
INLINE uint64_t resultStage(const Strip& s, Complex64* dst, int count) {
  if constexpr (isQuotient(function))
    return quotientStage<function, hasLarge, V>(s, dst, count);
  else
    return productStage<function, hasLarge, V>(s, dst, count);
}

template <Function function, class V>
[[gnu::noinline]] void evaluateStrip(const Complex64* src, Complex64* dst, int count) {
  Strip s;
  Words4 isOutsideOrZero{};
  const int whole = loadStrip<V>(src, count, [&](const Complex64* from, int i) INLINED {
    const Parts<V> z = loadParts<V>(from);
    constexpr bool turned = isTurned(function);
    store(s.x + i, turned ? z.im : z.re), store(s.y + i, turned ? z.re : z.im);
    isOutsideOrZero = isOutsideOrZero | eitherOutside<firstHighWord, limitHighWord>(z.re, z.im);
  });

  OutsideMasks masks = {0, 0, 0};
  const Float64 *x = s.x, *y = s.y;
  Float64 savedX[stripLength], savedY[stripLength];
  if (any(isOutsideOrZero) && !hasZerosOnly<function, V>(s, whole)) [[unlikely]] {
    masks = takeOutside<function>(s, savedX, savedY, whole);
    x = savedX, y = savedY;
  }
  uint64_t left = masks.outside;
  if (left != allOf(whole)) {
    reduceExponents<true, V>(s.reducedX, s.x, whole);
    if (masks.largeX != 0) [[unlikely]]
      hyperbolicStage<true, V>(s, whole);
    else
      hyperbolicStage<false, V>(s, whole);
    left |= masks.largeY != 0 ? turnReductionStage<true, V>(s.reducedY, s.y, nearestToRows, whole)
                              : turnReductionStage<false, V>(s.reducedY, s.y, nearestToRows, whole);
    turnRemainderStage<V>(s.reducedY, whole);
    turnStage<V>(s.reducedY, s.turn, whole);
    left |= storeStrip(dst, count, whole, [&](Complex64* results) INLINED {
      if (masks.largeX != 0) [[unlikely]]
        return resultStage<function, true, V>(s, results, whole);
      return resultStage<function, false, V>(s, results, whole);
    });
  }
  const uint64_t scaled = isQuotient(function) ? masks.largeX : 0;
  for (uint64_t rest = (left | scaled) & allOf(whole); rest != 0; rest &= rest - 1) {
    const int place = __builtin_ctzll(rest), i = placeOf<V>(place);
    if (i >= count) continue;
    if ((left >> place & 1) == 0 &&
        scaleBack(function == Function::tanh ? dst[i].im : dst[i].re, toBits(y[place]) << 1 == 0))
      continue;
    dst[i] = element<function>(isTurned(function) ? Complex64{y[place], x[place]} : Complex64{x[place], y[place]});
  }
}

template <Function function, class V>
INLINE nuvStatus certifiedLoop(const Complex64* src, Complex64* dst, int64_t len) {
  return stripLoop<function, evaluateStrip<function, V>>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
