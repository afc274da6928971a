// sin(x), cos(x) and both at once, level 5.
//
// Method: x is taken to the nearest of the points t = 2 pi j / 512 and a remainder r + e, and sin(t + r + e) is expanded around t with the sine and the cosine
// of t from a table (sin_cos.h). Up to 65536 the remainder comes from subtractions of the step in three parts. If any element of a block of 8 is larger, the
// whole block is reduced by whole-number arithmetic (revolutions.h): the last bit of a result may depend on that. Elements after the last block stand for
// themselves.
//
// Error: largest found 0.505 ulp in round-to-nearest (docs/accuracy.md has the argument). Rounding mode, FTZ and DAZ are the caller's. With another rounding
// mode x may go to the table point beyond the nearest; results then stay within 2^-52, but near zeros of the function they lose their relative accuracy.
//
// Special values: infinities give the default NaN, and out-of-domain with its flag; a NaN gives itself, quiet. sin(-0) is -0 from Sin, +0 from SinCos.
#include "frame/kernel_frame.h"
#include "trig/revolutions.h"
#include "trig/sin_cos.h"

namespace qorvane {
namespace {

#include "trig/sin_cos_512_tables.inc"

constexpr int quarterTurn = 128;

// 2 pi / 512 in three parts; a count times the first is exact up to |x| = 65536, times the second to 2^-73 at worst.
constexpr Step step = {
    fromBits(0x40545f306dc9c883),  // 81.48733086305042 = 512 / (2 pi)
    fromBits(0x3f8921fb54400000),  // 0.012271846302610356
    fromBits(0x3d60b4611a600000),  // 4.747734770549973e-13
    fromBits(0x3b33198a2e037073),  // 1.5798955068718364e-23
};
constexpr Float64 largestFast = 65536.0;  // beyond it an odd count times step.part1 has more than 53 bits

// sin r - r = r * z * (q0 + q1 z), cos r - 1 = z * (r0 + r1 z + r2 z^2) with z = r^2, |r| <= pi / 512
constexpr Float64 q1 = fromBits(0x3f81110fabb3551c);  // 0.008333322932609515
constexpr Float64 q0 = fromBits(0xbfc5555555554448);  // -0.1666666666665455
constexpr Float64 r2 = fromBits(0xbf56c16ab163b2d7);  // -0.0013888875887985619
constexpr Float64 r1 = fromBits(0x3fa5555555554ccf);  // 0.041666666666651524
constexpr Float64 r0 = fromBits(0xbfe0000000000000);  // -0.5

// y with its sign flipped where x is negative.
template <class V>
[[gnu::always_inline]] inline V flipBySignOf(V y, V x) {
  if constexpr (packSize < V >> 0)
    return makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return flipBySignOf(y.part[i], x.part[i]); });
  else
    return _mm256_xor_pd(y, signOf(x));
}

// Whether any |x| is too large for the fast path; a NaN isn't.
template <class V>
[[gnu::always_inline]] inline bool isLarge(V x) {
  constexpr int parts = laneCount<V> / 4;
  const auto isAbove = [](Lanes4 a) __attribute__((always_inline)) { return _mm256_cmp_pd(magnitude(a), broadcast<Lanes4>(largestFast), _CMP_GT_OQ); };
  Lanes4 all = isAbove(partOf(x, 0));
  for (int i = 1; i < parts; ++i) all = _mm256_or_pd(all, isAbove(partOf(x, i)));
  return _mm256_movemask_pd(all) != 0;
}

template <class V>
[[gnu::always_inline]] inline Terms<V> expandAt(int firstRow, BitsOf<V> offsets, V r, V e, V sinPoly, V cosPoly) {
  const auto cosine = twoColumns<V>(trigTable512[firstRow], offsets), sine = twoColumns<V>(trigTable512[firstRow] + 2, offsets);
  return expand(SplitSine<V>{cosine.first, cosine.second, sine.first, sine.second}, r, e, sinPoly, cosPoly);
}

template <class V>
struct Polynomials {
  V sinPoly, cosPoly;
};
template <class V>
[[gnu::always_inline]] inline Polynomials<V> polynomials(V r) {
  const V z = r * r;
  return {(q1 * z + q0) * z, ((r2 * z + r1) * z + r0) * z};
}

// The sine of m, a quarter turn further on the cosine.
template <class V>
[[gnu::always_inline]] inline V sineFrom(int firstRow, Remainder<V> m) {
  const Polynomials<V> p = polynomials(m.r);
  const Terms<V> t = expandAt(firstRow, (m.shifted & 511u) << 5, m.r, m.e, p.sinPoly, p.cosPoly);
  return t.hi + ((((t.d2 + t.d1) + t.ps) + t.pc) + t.g);
}

// Large arguments in a block of 8 or in a single element. finish(V x, Remainder<V> m, int64_t i, int64_t count, bool inBlock) stores the results of the first
// `count` lanes, `replace` sets those of one element.
template <class Argument, class Finish, class Replace>
[[gnu::noinline]] nuvStatus slowBlock(const Float64* x, int64_t first, int64_t count, Argument argument, Finish finish, Replace replace) {
  bool anySpecial = false;
  for (int64_t i = 0; i < count; i += 4) {
    const int64_t lanes = count < 4 ? 1 : 4;
    const Lanes4 part = loadPart<Lanes4>(x + i, lanes);
    finish(part, reduceRevolutions(argument(part)), first + i, lanes, count > 1);
    anySpecial |= anyMagnitudeFrom(part, 0x7ff00000);
  }
  nuvStatus status = nuvStatusOk;
  if (anySpecial) [[unlikely]]
    for (int64_t i = 0; i < count; ++i) {
      if ((highWord(x[i]) & 0x7ff00000) != 0x7ff00000) continue;
      const bool isInfinite = toBits(x[i]) << 12 == 0;
      replace(first + i, isInfinite ? x[i] * 0.0 : x[i] * x[i]);
      takeStatus<Raises::yes>(status, isInfinite ? nuvStatusOutOfDomain : nuvStatusOk);
    }
  return status;
}

template <class Argument, class Finish, class Replace>
[[gnu::always_inline]] inline nuvStatus loop(const Float64* src, int64_t len, Argument argument, Finish finish, Replace replace) {
  using Block = Pack<Lanes4, 2>;
  return blockLoop<Block>(
      src, len, [](auto x) __attribute__((always_inline)) { return isLarge(x); },
      [&](auto x, int64_t i, int64_t count)
          __attribute__((always_inline)) { finish(x, removeSteps(argument(x), step), i, count, laneCount<decltype(x)> == laneCount<Block>); },
      [&](auto x, int64_t i, int64_t count) __attribute__((always_inline)) {
        alignas(32) Float64 saved[laneCount<Block>];
        store(saved, x);
        return slowBlock(saved, i, count, argument, finish, replace);
      });
}

[[gnu::noinline]] nuvStatus sinLoop(const Float64* src, Float64* dst, int64_t len) {
  return loop(
      src, len, [](auto x) __attribute__((always_inline)) { return magnitude(x); },
      [=](auto x, auto m, int64_t i, int64_t count, bool) __attribute__((always_inline)) { put(dst + i, flipBySignOf(sineFrom(0, m), x), count); },
      [=](int64_t i, Float64 y) __attribute__((always_inline)) { dst[i] = y; });
}

[[gnu::noinline]] nuvStatus cosLoop(const Float64* src, Float64* dst, int64_t len) {
  return loop(
      src, len, [](auto x) __attribute__((always_inline)) { return x; },
      [=](auto, auto m, int64_t i, int64_t count, bool) __attribute__((always_inline)) { put(dst + i, sineFrom(quarterTurn, m), count); },
      [=](int64_t i, Float64 y) __attribute__((always_inline)) { dst[i] = y; });
}

[[gnu::noinline]] nuvStatus sinCosLoop(const Float64* src, Float64* dstA, Float64* dstB, int64_t len) {
  return loop(
      src, len, [](auto x) __attribute__((always_inline)) { return x; },
      [=](auto, auto m, int64_t i, int64_t count, bool inBlock) __attribute__((always_inline)) {
        const auto p = polynomials(m.r);
        const auto offsets = (m.shifted & 511u) << 5;
        // The sine of a single element is added up in another order.
        const auto sine = expandAt(0, offsets, m.r, m.e, p.sinPoly, p.cosPoly);
        const auto begin = (sine.ps + sine.g) + sine.d2;
        put(dstA + i, sine.hi + (inBlock ? (begin + sine.pc) + sine.d1 : (begin + sine.d1) + sine.pc), count);
        const auto cosine = expandAt(quarterTurn, offsets, m.r, m.e, p.sinPoly, p.cosPoly);
        put(dstB + i, cosine.hi + ((((cosine.ps + cosine.g) + cosine.d2) + cosine.pc) + cosine.d1), count);
      },
      [=](int64_t i, Float64 y) __attribute__((always_inline)) { dstA[i] = y, dstB[i] = y; });
}

}  // namespace

nuvStatus sinLevel5(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::lengthFirst, Mode::none, sinLoop>(len, src, dst); }
nuvStatus cosLevel5(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::lengthFirst, Mode::none, cosLoop>(len, src, dst); }
nuvStatus sinCosLevel5(const Float64* src, Float64* dstA, Float64* dstB, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, sinCosLoop>(len, src, dstA, dstB);
}

}  // namespace qorvane
