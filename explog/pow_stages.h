// The loop of the x^y kernels.
//
// The way from x and y to the result is one chain of some 140 cycles, and a processor's window
// holds about a third of its operations: what follows it in the program can't start early enough to
// fill the gaps. So a chunk of elements goes through the chain in stages, each a loop of its own
// whose short chains overlap. Between the stages the chunk is in arrays on the stack. The indices
// of the table rows are made four at a time and read back one by one, which also spares the
// transfers between register files.
//
// Elements that the fast path isn't made for are found from the high words of x and of P, the
// leading part of y log2 x; the scalar routine recomputes them from their arguments, which are
// still in place: results of such a chunk are stored after that.
#pragma once
#include "explog/pow_core.h"
#include "explog/pow_lanes.h"
#include "frame/kernel_frame.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

namespace power {

// Which elements the scalar routine recomputes: those outside the fast range, or all of a group of
// four that has one. Elements after the last whole group stand alone.
enum class Repair { elements, groupsOf4 };

// An exponent for each element, or one for all.
enum class Exponents { each, same };

constexpr int chunkLength = 128;

struct Scratch {
  alignas(32) Float64 high[chunkLength], low[chunkLength], t[chunkLength], r[chunkLength];
  alignas(32) uint32_t logRow[chunkLength], exp2Row[chunkLength];  // byte offsets
  int k[chunkLength], scale[chunkLength], leading[chunkLength];    // exponents of x, high words of 2^e and of P
  Float64 x[chunkLength], y[chunkLength];                          // arguments with ones for outside ones
  bool isOutside[chunkLength];
};

// Eight elements
template <class Part>
using Block = Pack<Part, 8 / laneCount<Part>>;

// The rows at these byte offsets in powRcpTable, with their exponents.
template <class V>
INLINE LogRow<V> logRowAt(const uint32_t* offsets, const int* k) {
  const auto [hi, lo] = twoColumns<V>(powLog2Table, [=](int lane) INLINED { return uint64_t{2} * offsets[lane]; });
  const V rcp = column<V>(powRcpTable, [=](int lane) INLINED { return offsets[lane]; });
  return {rcp, hi, lo, numbersAt<V>(k)};
}

// The high word of 2^e.
template <class W>
INLINE W scaleWord(W shifted) {
  return wrappingSum(shifted << 13, 0x3ff00000) & static_cast<int>(0xfff00000);
}

// From the high words of x: its row's byte offset in powRcpTable, and k.
template <class W>
INLINE W rowOffset(W w) {
  return (((w & 0xffe00) + 0x200) >> 10) << 3;
}
template <class W>
INLINE W exponentOf(W w) {
  return wrappingSum(w, -0x3fe7fe00u) >> 20;
}

// From 2^63 up an exponent need not enter the arithmetic: there is no other result in range than 1,
// of x = 1.
constexpr int hugeExponent = 0x43e00000;

// From the high words of x and of P: x not positive, normal and finite; the result not certainly
// normal and finite, or P a NaN.
template <class W>
INLINE auto outsideBase(W w) {
  return 0x200000 > wrappingSum(w, 0x100000);
}
template <Repair repair, class W>
INLINE auto outsideResult(W w) {
  if constexpr (repair == Repair::elements)
    return (w & 0x7fffffff) > 0x408feffe;  // |P| from 1021.9999 up
  else
    return (w > 0x408ff7f7) | ((w ^ static_cast<int>(0x80000000)) >
                               0x408e1ff7);  // e > 1022 or e < -963: P from 1022.99609375 up or from -963.99609375 down
}
// An exponent below 2^-1042 sends its group to the scalar routine, too.
template <class W>
INLINE auto tinyExponent(W w) {
  return 1 > (w & 0x7fffffff);
}

// The stages up to the product, for n elements, a multiple of eight. Whether any of them is outside.
template <class Part, Program program, Repair repair, Exponents exponents>
INLINE bool stagesToProduct(const Float64* x, const Float64* y, int64_t n, Scratch& c) {
  using V = Block<Part>;
  auto outside = highWords(V{}) & 0;
  for (int64_t i = 0; i < n; i += 8) {
    const auto w = highWords(load<V>(x + i));
    storeWords(c.logRow + i, rowOffset(w));
    storeWords(c.k + i, exponentOf(w));
    outside = outside | outsideBase(w);
  }
  for (int64_t i = 0; i < n; i += 8) {
    const auto leading = leadingLog<V>(load<V>(x + i), logRowAt<V>(c.logRow + i, c.k + i));
    store(c.high + i, leading.a2);
    store(c.low + i, leading.low);
    store(c.t + i, leading.t);
  }
  for (int64_t i = 0; i < n; i += 8) store(c.r + i, upperPolynomial<program>(load<V>(c.t + i)));
  for (int64_t i = 0; i < n; i += 8) {
    const auto log = completeLog<program>(load<V>(c.high + i), load<V>(c.low + i), load<V>(c.t + i), load<V>(c.r + i));
    store(c.high + i, log.high);
    store(c.low + i, log.low);
  }
  for (int64_t i = 0; i < n; i += 8) {
    const auto factor = [&] {
      if constexpr (exponents == Exponents::same)
        return splitExponent(*y);
      else
        return splitExponent(load<V>(y + i));
    }();
    const auto p = product(load<V>(c.high + i), load<V>(c.low + i), factor);
    const auto leading = highWords(p.p), shifted = lowWords(p.shifted);
    storeWords(c.leading + i, leading);
    storeWords(c.exp2Row + i, (shifted << 4) & 0x7f0);
    storeWords(c.scale + i, scaleWord(shifted));
    store(c.r + i, p.r);
    outside = outside | outsideResult<repair>(leading);
    if constexpr (repair == Repair::groupsOf4 && exponents == Exponents::each)
      outside = outside | tinyExponent(highWords(factor.all));
  }
  return any(outside);
}

template <class Part, Program program>
INLINE void lastStage(Float64* z, int64_t n, const Scratch& c) {
  using V = Block<Part>;
  for (int64_t i = 0; i < n; i += 8) {
    const auto [th, tl] = twoColumns<V>(powExp2Table, [&](int lane) INLINED { return c.exp2Row[i + lane]; });
    const V scale = fromHighWords<V>(loadWords<V>(c.scale + i));
    store(z + i, completePower<program>(load<V>(c.r + i), th, tl, scale));
  }
}

// Which elements of a chunk the scalar routine computes; the chunk runs again without them, as if
// their arguments were ones, and without the errors that they raised as flags. `flags` has those that
// stood before.
template <Repair repair, Exponents exponents>
[[gnu::noinline, gnu::cold]] void replaceOutside(const Float64* x, const Float64* y, int64_t n, int64_t count,
                                                 Scratch& c, uint32_t flags) {
  constexpr bool each = exponents == Exponents::each;
  for (int64_t i = 0; i < n; ++i)
    c.isOutside[i] = outsideBase(highWords(x[i])) || outsideResult<repair>(c.leading[i]) ||
                     (repair == Repair::groupsOf4 && each && tinyExponent(highWords(y[i])));
  if (repair == Repair::groupsOf4)
    for (int64_t i = 0; i + 4 <= count; i += 4) {
      bool* four = c.isOutside + i;
      if (four[0] || four[1] || four[2] || four[3]) four[0] = four[1] = four[2] = four[3] = true;
    }
  for (int64_t i = 0; i < n; ++i) {
    c.x[i] = c.isOutside[i] ? 1.0 : x[i];
    if (each) c.y[i] = c.isOutside[i] ? 1.0 : y[i];
  }
  constexpr uint32_t errors = 0x0d;  // invalid, divide by zero, overflow: inside nothing raises them
  writeMxcsr((readMxcsr() & ~errors) | (flags & errors));
}
template <Exponents exponents>
[[gnu::noinline, gnu::cold]] nuvStatus repairChunk(const Float64* x, const Float64* y, Float64* z, int64_t count,
                                                   const Scratch& c, nuvStatus status, PowScalarRoutine* scalar) {
  for (int64_t i = 0; i < count; ++i)
    if (c.isOutside[i]) takeElement<Raises::yes>(status, z + i, scalar(x[i], y[exponents == Exponents::same ? 0 : i]));
  return status;
}

// Elements that stand alone, in registers: as many as are faster so.
constexpr int64_t few = 3;
template <Program program, Repair repair, Exponents exponents>
[[gnu::noinline]] nuvStatus oneByOne(const Float64* x, const Float64* y, Float64* dst, int64_t len, nuvStatus status,
                                     PowScalarRoutine* scalar) {
  constexpr bool each = exponents == Exponents::each;
  const auto power = [&](Float64 base, Float64 exponent) INLINED -> Element {
    const int w = highWords(base), yWord = highWords(exponent);
    const bool isOutside = repair == Repair::groupsOf4 && each && tinyExponent(yWord);
    if (outsideBase(w) || isOutside || anyMagnitudeFrom(exponent, hugeExponent)) [[unlikely]]
      return scalar(base, exponent);
    const uint32_t row = static_cast<uint32_t>(rowOffset(w));
    const int k = exponentOf(w);
    const auto leading = leadingLog(base, logRowAt<Float64>(&row, &k));
    const auto log = completeLog<program>(leading.a2, leading.low, leading.t, upperPolynomial<program>(leading.t));
    const auto p = product(log.high, log.low, splitExponent(exponent));
    if (outsideResult<repair>(highWords(p.p))) [[unlikely]]
      return scalar(base, exponent);
    const int shifted = lowWords(p.shifted);
    const auto [th, tl] = twoColumns<Float64>(powExp2Table, (shifted << 4) & 0x7f0);
    return {completePower<program>(p.r, th, tl, fromHighWords<Float64>(scaleWord(shifted)))};
  };
  for (int64_t i = 0; i < len; ++i) takeElement<Raises::yes>(status, dst + i, power(x[i], each ? y[i] : *y));
  return status;
}

// stages(count). Where the count is `known` the compiler knows it, too: what one stage leaves in memory
// for the next one then stays in registers.
template <int64_t known, class Stages>
INLINE auto withKnownCount(int64_t count, Stages stages) {
  if (count == known) return stages(std::integral_constant<int64_t, known>{});
  return stages(count);
}

// Up to eight elements and ones after them. They go through registers: a vector's load would wait for
// single numbers on their way to memory.
INLINE Lanes2 pairWithOnes(const Float64* p, int64_t count) {
  const Lanes2 ones = broadcast<Lanes2>(1.0);
  return count >= 2 ? load<Lanes2>(p) : count == 1 ? _mm_loadl_pd(ones, p) : ones;
}
INLINE void copyWithOnes(const Float64* p, int64_t count, Float64* block) {
  for (int j = 0; j < 8; j += 4)
    store(block + j, joinHalves(pairWithOnes(p + j, count - j), pairWithOnes(p + j + 2, count - j - 2)));
}

// The last elements after whole blocks, if they are many, are made up to a block with ones, which
// raise no flag and aren't outside. `flags` are those of MXCSR, errors at least.
template <class Part, Program program, Repair repair, Exponents exponents>
[[gnu::noinline, gnu::flatten]] nuvStatus manyElements(const Float64* x, const Float64* y, Float64* dst, int64_t len,
                                                       PowScalarRoutine* scalar, uint32_t& flags) {
  constexpr bool same = exponents == Exponents::same;
  nuvStatus status = nuvStatusOk;
  Scratch c;
  alignas(32) Float64 lastX[8], lastY[8];
  for (int64_t i = 0, count; i < len; i += count) {
    const int64_t blocks = (len - i) & ~7;
    const Float64 *xs = x + i, *ys = same ? y : y + i;
    int64_t n = blocks < chunkLength ? blocks : chunkLength;
    count = n;
    if (n == 0) {
      count = len - i, n = 8;
      if (count <= few) return oneByOne<program, repair, exponents>(xs, ys, dst + i, count, status, scalar);
      copyWithOnes(xs, count, lastX);
      if (!same) copyWithOnes(ys, count, lastY);
      xs = lastX;
      if (!same) ys = lastY;
    }
    const Float64 *xsInside = xs, *ysInside = ys;
    const auto stages = [&](auto elements) INLINED {
      return stagesToProduct<Part, program, repair, exponents>(xsInside, ysInside, elements, c);
    };
    while (withKnownCount<8>(n, stages)) [[unlikely]] {
        replaceOutside<repair, exponents>(xs, ys, n, count, c, flags);
        xsInside = c.x;
        if (!same) ysInside = c.y;
      }
    const bool anyOutside = xsInside != xs, inPlace = !anyOutside && count == n;
    Float64* const z = inPlace ? dst + i : c.t;
    lastStage<Part, program>(z, n, c);
    if (anyOutside) [[unlikely]] {
      status = repairChunk<exponents>(xs, ys, z, count, c, status, scalar);
      flags = readMxcsr();
    }
    if (!inPlace)
      for (int64_t j = 0; j < count; ++j) dst[i + j] = z[j];
  }
  return status;
}

template <class Part, Program program, Repair repair, Exponents exponents>
INLINE nuvStatus powerLoop(const Float64* x, const Float64* y, Float64* dst, int64_t len, PowScalarRoutine* scalar,
                           uint32_t& flags) {
  if (len <= few) return oneByOne<program, repair, exponents>(x, y, dst, len, nuvStatusOk, scalar);
  return manyElements<Part, program, repair, exponents>(x, y, dst, len, scalar, flags);
}

// x^y with one exponent for all elements.
template <class Part>
INLINE nuvStatus fixedExponentLoop(const Float64* src, Float64 value, Float64* dst, int64_t len, uint32_t& flags) {
  if (toBits(value) == toBits(2.0))
    return plainLoop<Pack<Part, 4>>(src, dst, len, [](auto x) INLINED { return x * x; });
  if (toBits(value) << 1 == 0 || anyMagnitudeFrom(value, hugeExponent)) {
    nuvStatus status = nuvStatusOk;
    for (int64_t i = 0; i < len; ++i) takeElement<Raises::yes>(status, dst + i, powFixLane(src[i], value));
    return status;
  }
  return powerLoop<Part, Program::longer, Repair::groupsOf4, Exponents::same>(src, &value, dst, len, powFixLane, flags);
}

}  // namespace power
}  // namespace
}  // namespace qorvane
