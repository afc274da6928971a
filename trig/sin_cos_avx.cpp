// sin(x), cos(x) and both at once, level 5.
//
// Method: x is taken to the nearest of the points t = 2 pi j / 512 and a remainder r + e, and sin(t
// + r + e) is expanded around t with the sine and the cosine of t from a table (sin_cos.h). Up to
// 65536 the remainder comes from subtractions of the step in three parts. If any element of a block
// of 8 is larger, the whole block is reduced by whole-number arithmetic (revolutions.h): the last
// bit of a result may depend on that. Elements after the last block stand for themselves.
//
// Error: largest found 0.505 ulp in round-to-nearest (docs/accuracy.md has the argument). Rounding
// mode, FTZ and DAZ are the caller's. With another rounding mode x may go to the table point beyond
// the nearest; results then stay within 2^-52, but near zeros of the function they lose their
// relative accuracy.
//
// Special values: infinities give the default NaN, and out-of-domain with its flag; a NaN gives
// itself, quiet. sin(-0) is -0 from Sin, +0 from SinCos.
#include "frame/kernel_frame.h"
#include "frame/pipeline.h"
#include "trig/revolutions.h"
#include "trig/sin_cos_512.h"

namespace qorvane {
namespace {

// The sine of m, a quarter turn further on the cosine.
template <class V>
INLINE V sineFrom(int firstRow, Remainder<V> m) {
  const Polynomials<V> p = polynomials(m.r);
  const Terms<V> t = expandAt(firstRow, (m.shifted & 511u) << 5, m.r, m.e, p.sinPoly, p.cosPoly);
  return t.hi + ((((t.d2 + t.d1) + t.ps) + t.pc) + t.g);
}

// Large arguments in a block of 8 or in a single element. finish(V x, Remainder<V> m, int64_t i,
// int64_t count, bool inBlock) stores the results of the first `count` lanes, `replace` sets those
// of one element.
template <class Argument, class Finish, class Replace>
[[gnu::noinline]] nuvStatus slowBlock(const Float64* x, int64_t first, int64_t count, Argument argument, Finish finish,
                                      Replace replace) {
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
INLINE nuvStatus loop(const Float64* src, int64_t len, Argument argument, Finish finish, Replace replace) {
  using Block = Pack<Lanes4, 2>;
  return blockLoop<Block>(
      src, len, [](auto x) INLINED { return isLarge(x); },
      [&](auto x, int64_t i, int64_t count)
          INLINED { finish(x, removeSteps(argument(x), step), i, count, laneCount<decltype(x)> == laneCount<Block>); },
      [&](auto x, int64_t i, int64_t count) INLINED {
        alignas(32) Float64 saved[laneCount<Block>];
        store(saved, x);
        return slowBlock(saved, i, count, argument, finish, replace);
      });
}

[[gnu::noinline]] nuvStatus sinBlocks(const Float64* src, Float64* dst, int64_t len) {
  return loop(
      src, len, [](auto x) INLINED { return magnitude(x); },
      [=](auto x, auto m, int64_t i, int64_t count, bool)
          INLINED { put(dst + i, xorBits(sineFrom(0, m), signOf(x)), count); },
      [=](int64_t i, Float64 y) INLINED { dst[i] = y; });
}

[[gnu::noinline]] nuvStatus cosBlocks(const Float64* src, Float64* dst, int64_t len) {
  return loop(
      src, len, [](auto x) INLINED { return x; },
      [=](auto, auto m, int64_t i, int64_t count, bool) INLINED { put(dst + i, sineFrom(quarterTurn, m), count); },
      [=](int64_t i, Float64 y) INLINED { dst[i] = y; });
}

[[gnu::noinline]] nuvStatus sinCosBlocks(const Float64* src, Float64* dstA, Float64* dstB, int64_t len) {
  return loop(
      src, len, [](auto x) INLINED { return x; },
      [=](auto, auto m, int64_t i, int64_t count, bool inBlock) INLINED {
        const auto p = polynomials(m.r);
        const auto offsets = (m.shifted & 511u) << 5;
        // The sine of a single element is added up in another order.
        const auto sine = expandAt(0, offsets, m.r, m.e, p.sinPoly, p.cosPoly);
        const auto begin = (sine.ps + sine.g) + sine.d2;
        put(dstA + i, sine.hi + (inBlock ? (begin + sine.pc) + sine.d1 : (begin + sine.d1) + sine.pc), count);
        const auto cosine = expandAt(quarterTurn, offsets, m.r, m.e, p.sinPoly, p.cosPoly);
        put(dstB + i, cosine.hi + ((((cosine.ps + cosine.g) + cosine.d2) + cosine.pc) + cosine.d1), count);
      },
      [=](int64_t i, Float64 y) INLINED { dstA[i] = y, dstB[i] = y; });
}

// Stretches: the reduction of a stretch goes to memory, and the evaluation is a software pipeline
// over what stands there. What the loop above does in one go is a chain of some hundred cycles,
// more than the processor's window covers. Operations and blocks are the same, and so are the bits.
constexpr int64_t longestStretch = 256, shortestStretch = 32, blockSize = 8, vector = laneCount<Lanes4>;

// A key's pattern has the byte offset of a row in the bits of keyMask.
constexpr Float64 keyShifter = 0x1.8p47;  // a unit is worth 2^-5, a row has 2^5 bytes
constexpr uint32_t keyMask = 511 << 5;
struct Scratch {
  alignas(32) Float64 r[longestStretch], e[longestStretch], keys[longestStretch];
};

// A block with large arguments. False if it has infinities or NaNs.
template <class Argument>
[[gnu::noinline]] bool reduceLargeBlock(const Float64* x, Argument argument, int64_t i, Scratch& c) {
  for (int64_t end = i + 8; i < end; i += vector, x += vector) {
    const Lanes4 part = load<Lanes4>(x);
    if (anyMagnitudeFrom(part, 0x7ff00000)) return false;
    const Remainder<Lanes4> m = reduceRevolutions(argument(part));
    store(c.r + i, m.r), store(c.e + i, m.e), store(c.keys + i, valueOf<Lanes4>(m.shifted << 5));
  }
  return true;
}
template <class Argument>
INLINE bool reduceStretch(const Float64* x, int64_t count, Argument argument, Scratch& c) {
  using Block = Pack<Lanes4, 2>;
  for (int64_t i = 0; i < count; i += laneCount<Block>) {
    const Block part = load<Block>(x + i);
    if (isLarge(part)) [[unlikely]] {
      if (!reduceLargeBlock(x + i, argument, i, c)) return false;
      continue;
    }
    const Remainder<Block> m = removeSteps(argument(part), step);
    store(c.r + i, m.r), store(c.e + i, m.e), store(c.keys + i, m.count + keyShifter);
  }
  return true;
}

INLINE SplitSine<Lanes4> rowsAt(int firstRow, const Float64* keys) {
  const auto row =
      columns<4, Lanes4>(trigTable512[firstRow], [&](int lane) INLINED { return toBits(keys[lane]) & keyMask; });
  return {row.of[0], row.of[1], row.of[2], row.of[3]};
}

// finish(int64_t i, Terms) stores.
template <int firstRow, class Finish>
INLINE void evaluate(int64_t count, Scratch& c, Finish finish) {
  SplitSine<Lanes4> row;
  Polynomials<Lanes4> p;
  Lanes4 r;
  pipeline<vector>(
      count,
      [&](int64_t i) INLINED {
        row = rowsAt(firstRow, c.keys + i);
        r = load<Lanes4>(c.r + i);
        p = polynomials(r);
      },
      [&](int64_t i) INLINED { finish(i, expand(row, r, load<Lanes4>(c.e + i), p.sinPoly, p.cosPoly)); });
}

// The same for sine and cosine, which share the polynomials.
template <class FinishSine, class FinishCosine>
INLINE void evaluateBoth(int64_t count, Scratch& c, FinishSine finishSine, FinishCosine finishCosine) {
  SplitSine<Lanes4> sineRow, cosineRow;
  Polynomials<Lanes4> p, ofCosine;
  const auto terms = [&](int64_t i, SplitSine<Lanes4> row, Polynomials<Lanes4> of) INLINED {
    return expand(row, load<Lanes4>(c.r + i), load<Lanes4>(c.e + i), of.sinPoly, of.cosPoly);
  };
  pipeline<vector>(
      count,
      [&](int64_t i) INLINED {
        sineRow = rowsAt(0, c.keys + i);
        p = polynomials(load<Lanes4>(c.r + i));
      },
      [&](int64_t i) INLINED {
        cosineRow = rowsAt(quarterTurn, c.keys + i);
        ofCosine = p;
        finishSine(i, terms(i, sineRow, p));
      },
      [&](int64_t i) INLINED { finishCosine(i, terms(i, cosineRow, ofCosine)); });
}

constexpr auto sum = [](Terms<Lanes4> t) INLINED { return t.hi + ((((t.d2 + t.d1) + t.ps) + t.pc) + t.g); };
constexpr auto sumOfBoth = [](Terms<Lanes4> t) INLINED { return t.hi + ((((t.ps + t.g) + t.d2) + t.pc) + t.d1); };
constexpr auto itself = [](auto x) INLINED { return x; };
constexpr auto absolute = [](auto x) INLINED { return magnitude(x); };

nuvStatus sinLoop(const Float64* src, Float64* dst, int64_t len) {
  return shortOrLongLoop<longestStretch, shortestStretch, blockSize>(
      len,
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        Scratch c;
        if (!reduceStretch(x, count, absolute, c)) return false;
        evaluate<0>(count, c, [=](int64_t i, Terms<Lanes4> t) INLINED {
          store(y + i, xorBits(sum(t), signOf(load<Lanes4>(x + i))));
        });
        return true;
      },
      [](int64_t count, const Float64* x, Float64* y) { return sinBlocks(x, y, count); }, src, dst);
}

nuvStatus cosLoop(const Float64* src, Float64* dst, int64_t len) {
  return shortOrLongLoop<longestStretch, shortestStretch, blockSize>(
      len,
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        Scratch c;
        if (!reduceStretch(x, count, itself, c)) return false;
        evaluate<quarterTurn>(count, c, [=](int64_t i, Terms<Lanes4> t) INLINED { store(y + i, sum(t)); });
        return true;
      },
      [](int64_t count, const Float64* x, Float64* y) { return cosBlocks(x, y, count); }, src, dst);
}

nuvStatus sinCosLoop(const Float64* src, Float64* dstA, Float64* dstB, int64_t len) {
  return shortOrLongLoop<longestStretch, shortestStretch, blockSize>(
      len,
      [](int64_t count, const Float64* x, Float64* yA, Float64* yB) INLINED {
        Scratch c;
        if (!reduceStretch(x, count, itself, c)) return false;
        evaluateBoth(
            count, c, [=](int64_t i, Terms<Lanes4> t) INLINED { store(yA + i, sumOfBoth(t)); },
            [=](int64_t i, Terms<Lanes4> t) INLINED { store(yB + i, sumOfBoth(t)); });
        return true;
      },
      [](int64_t count, const Float64* x, Float64* yA, Float64* yB) { return sinCosBlocks(x, yA, yB, count); }, src,
      dstA, dstB);
}

}  // namespace

nuvStatus sinAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, sinLoop>(len, src, dst);
}
nuvStatus cosAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, cosLoop>(len, src, dst);
}
nuvStatus sinCosAvx(const Float64* src, Float64* dstA, Float64* dstB, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, sinCosLoop>(len, src, dstA, dstB);
}

}  // namespace qorvane
