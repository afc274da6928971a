// The loops of asinh and acosh: all arguments go through the lanes of log_of_sum.h, and those whose
// results aren't certain there, or that aren't in the lanes' range, through the level's program.
#pragma once
#include "frame/pipeline.h"
#include "hyperbolic/log_of_sum.h"

namespace qorvane {
namespace {

constexpr int stripLength = 64;

// A function at a level: `first` tells, in the upper 16 bits of a number, where the lanes' arguments
// begin; program(x, y, count) -> status takes up to stripLength arguments of any kind; x may be y.
struct Definition {
  Inverse inverse;
  Bound bound;
  int first;
  nuvStatus (*program)(const Float64* x, Float64* y, int64_t count);
};

// The elements whose bit is set. Mostly it is one.
template <const Definition& f>
[[gnu::noinline]] nuvStatus byProgram(const Float64* src, Float64* dst, uint64_t set) {
  Float64 x[stripLength], y[stripLength];
  if ((set & (set - 1)) == 0) {
    const int place = __builtin_ctzll(set);
    const nuvStatus status = f.program(src + place, y, 1);
    dst[place] = y[0];
    return status;
  }
  int count = 0;
  for (uint64_t left = set; left != 0; left &= left - 1) x[count++] = src[__builtin_ctzll(left)];
  const nuvStatus status = f.program(x, y, count);
  count = 0;
  for (uint64_t left = set; left != 0; left &= left - 1) dst[__builtin_ctzll(left)] = y[count++];
  return status;
}

// Of a mask of lanes.
template <class V>
INLINE bool isSetInAll(V mask) {
  if constexpr (isPack<V>) {
    PartOf<V> all = mask.part[0];
    for (int i = 1; i < packSize<V>; ++i) all = andBits(all, mask.part[i]);
    return isSetInAll(all);
  } else {
    return signMask(mask) == (1 << laneCount<V>)-1;
  }
}

// Numbers between the stages, which are loops of their own: then their chains are short enough for
// the processor to overlap their turns.
struct Strip {
  alignas(32) Float64 x[stripLength], root[stripLength], u[stripLength], rest[stripLength], w[stripLength];
  alignas(32) int row[stripLength], exponent[stripLength];
};

[[gnu::noinline]] uint64_t bitsOfClear(const Float64* masks, int64_t count) {
  uint64_t clear = 0;
  for (int64_t i = 0; i < count; i += 4) clear |= (signMask(load<Four>(masks + i)) ^ 15) << i;
  return clear;
}
// The stages for a multiple of four arguments in the lanes' range; x may be dst. Gives the bits of
// the elements that aren't certain.
template <const Definition& f>
INLINE uint64_t stages(const Float64* x, Float64* dst, int64_t count, Strip& s) {
  const auto each = [&](auto stage) INLINED {
    for (int64_t i = 0; i < count; i += 4) stage(i);
  };
  const auto argument = [&](int64_t i) INLINED { return load<Four>(x + i); };
  each([&](int64_t i) INLINED {
    const Four a = magnitudeOf<f.inverse>(argument(i)), r = firstRoot<f.inverse>(a);
    store(s.root + i, r);
    store(s.u + i, a + r);
  });
  each([&](int64_t i) INLINED {
    const Four u = load<Four>(s.u + i);
    storeWords(s.row + i, rowOf(u));
    storeWords(s.exponent + i, exponentOfSum(u));
    store(s.rest + i, restOfSum<f.inverse>(magnitudeOf<f.inverse>(argument(i)), load<Four>(s.root + i), u));
  });
  Float64 *const hi = s.root, *const lo = s.rest, *const masks = s.u;
  each([&](int64_t i) INLINED {
    const auto offsets = [&](int lane) INLINED { return static_cast<uint64_t>(s.row[i + lane]); };
    const auto parts = logParts(load<Four>(s.u + i), load<Four>(s.rest + i), numbersAt<Four>(s.exponent + i), offsets);
    store(hi + i, parts.hi);
    store(lo + i, parts.lo);
    store(s.w + i, parts.w);
  });
  Four all = equalLanes(broadcast<Four>(0.0), broadcast<Four>(0.0));
  each([&](int64_t i) INLINED {
    const auto [y, isCertain] = resultOf<Four>({load<Four>(hi + i), load<Four>(lo + i), load<Four>(s.w + i)}, f.bound);
    store(masks + i, isCertain);
    all = andBits(all, isCertain);
    store(dst + i, withSignOf<f.inverse>(y, argument(i)));
  });
  return isSetInAll(all) ? 0 : bitsOfClear(masks, count);
}

// Up to stripLength elements, not all of them in the lanes' range. The others get harmless numbers
// there, but where they are most, the program takes all.
template <const Definition& f>
[[gnu::noinline]] nuvStatus mixedStrip(const Float64* src, Float64* dst, int64_t count) {
  Float64 x[stripLength], inLanes[stripLength];
  const int64_t whole = (count + 3) & ~int64_t{3};
  uint64_t outside = 0;
  int64_t number = 0;
  for (int64_t i = 0; i < whole; i += 4) {
    const Four v = i + 4 <= count ? load<Four>(src + i) : loadPart<Four>(src + i, count - i);
    const auto words = highWords(magnitudeOf<f.inverse>(v));
    const Words4 mask = partOf(((f.first << 16) > words) | (words > (afterLast << 16) - 1), 0);
    outside |= static_cast<uint64_t>(_mm_movemask_ps(reinterpret_cast<__m128>(mask))) << i;
    store(x + i, v);
    store(inLanes + i, v);
  }
  for (uint64_t left = outside; left != 0; left &= left - 1, ++number) inLanes[__builtin_ctzll(left)] = 2.0;
  if (4 * number > 3 * count) return f.program(src, dst, count);
  Strip s;
  const uint64_t left = (outside | stages<f>(inLanes, inLanes, whole, s)) & (~uint64_t{0} >> (stripLength - count));
  __builtin_memcpy(dst, inLanes, static_cast<size_t>(count) * sizeof *dst);
  return left == 0 ? nuvStatusOk : byProgram<f>(x, dst, left);
}
template <const Definition& f>
INLINE nuvStatus strip(const Float64* src, Float64* dst, int64_t count) {
  Strip s;
  const int64_t fours = count & ~int64_t{3}, whole = (count + 3) & ~int64_t{3};
  const Float64* x = src;
  if (fours != whole || src == dst) {
    for (int64_t i = 0; i < fours; i += 4) store(s.x + i, load<Four>(src + i));
    if (fours != whole) store(s.x + fours, loadPart<Four>(src + fours, count - fours));
    x = s.x;
  }
  Extremes extremes;
  for (int64_t i = 0; i < whole; i += 4) take(extremes, magnitudeOf<f.inverse>(load<Four>(x + i)));
  if (!areInLanes(extremes, f.first)) [[unlikely]]
    return mixedStrip<f>(src, dst, count);
  uint64_t left;
  if (fours == whole) {
    left = stages<f>(x, dst, whole, s);
  } else {
    left = stages<f>(x, s.w, whole, s) & (~uint64_t{0} >> (stripLength - count));
    for (int64_t i = 0; i < fours; i += 4) store(dst + i, load<Four>(s.w + i));
    storePart(dst + fours, load<Four>(s.w + fours), count - fours);
  }
  return left == 0 ? nuvStatusOk : byProgram<f>(x, dst, left);
}
template <const Definition& f>
[[gnu::noinline]] nuvStatus eachStrip(const Float64* src, Float64* dst, int64_t len) {
  nuvStatus status = nuvStatusOk;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < stripLength ? len : stripLength;
    takeStatus<Raises::no>(status, strip<f>(src, dst, count));
  }
  return status;
}

// Up to all lanes of V, in one piece. Where one isn't in the lanes' range, the program takes all; so it
// does, in place, where one isn't certain: keeping the arguments would take registers from all.
template <class V, const Definition& f>
INLINE nuvStatus few(const Float64* src, Float64* dst, int64_t count) {
  const V x = loadPart<V>(src, count), a = magnitudeOf<f.inverse>(x);
  Extremes extremes;
  take(extremes, a);
  if (!areInLanes(extremes, f.first)) [[unlikely]]
    return f.program(src, dst, count);
  const V r = firstRoot<f.inverse>(a), u = a + r;
  const auto parts = logParts(u, restOfSum<f.inverse>(a, r, u), numbersOf<V>(exponentOfSum(u)), rowOf(u));
  const auto [y, isCertain] = resultOf(parts, f.bound);
  if (isSetInAll(isCertain)) [[likely]]
    return storePart(dst, withSignOf<f.inverse>(y, x), count), nuvStatusOk;
  if (src == dst) return f.program(src, dst, count);
  storePart(dst, withSignOf<f.inverse>(y, x), count);
  return byProgram<f>(src, dst, ~signMask(isCertain) & (~uint64_t{0} >> (stripLength - count)));
}
template <class V, const Definition& f>
[[gnu::noinline]] nuvStatus fewApart(const Float64* src, Float64* dst, int64_t count) {
  return few<V, f>(src, dst, count);
}

template <const Definition& f>
INLINE nuvStatus inverseLoop(const Float64* src, Float64* dst, int64_t len) {
#ifdef __AVX__
  using Eight = Pack<Lanes4, 2>;
#else
  using Eight = Pack<Lanes2, 4>;
#endif
  if (len == 1) return few<Lanes2, f>(src, dst, len);
  if (len == 2) return fewApart<Lanes2, f>(src, dst, len);
  if (len <= 4) return fewApart<Four, f>(src, dst, len);
  if (len <= 8) return fewApart<Eight, f>(src, dst, len);
  return eachStrip<f>(src, dst, len);
}

}  // namespace
}  // namespace qorvane
