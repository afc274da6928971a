// The loop of the x^y kernels. A block of V is computed whole; elements that the fast path isn't made for are marked in it, and the scalar routine recomputes
// them from their arguments, which are still in place: a block is stored after that.
#pragma once
#include "explog/pow_lanes.h"
#include "frame/lanes.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

namespace power {

// Results, and a set word for each marked element.
template <class V>
struct Marked {
  V value;
  Pack<Words4, laneCount<V> / 4> marks;
};

// Who is recomputed: the marked elements, or every element of a group of four that has one. Elements after the last whole group stand alone.
enum class Repair { elements, groupsOf4 };

// An exponent for each element, or one for all.
enum class Exponents { each, same };

template <Repair repair, Exponents exponents>
[[gnu::noinline, gnu::cold]] nuvStatus repairBlock(const Float64* x, const Float64* y, Float64* z, int* marks, int64_t count, nuvStatus status,
                                                   PowScalarRoutine* scalar) {
  if (repair == Repair::groupsOf4)
    for (int* group = marks; group + 4 <= marks + count; group += 4) group[0] = group[1] = group[2] = group[3] = group[0] | group[1] | group[2] | group[3];
  for (int64_t i = 0; i < count; ++i)
    if (marks[i]) takeStatus<Raises::yes>(status, scalar(x[i], y[exponents == Exponents::each ? i : 0], z + i));
  return status;
}

// Whole blocks; `count` elements of each block count.
template <class V, Repair repair, Exponents exponents, auto fast>
[[gnu::noinline]] nuvStatus powerBlocks(const Float64* x, const Float64* y, Float64* dst, int64_t len, int64_t count, nuvStatus status,
                                        PowScalarRoutine* scalar) {
  for (int64_t i = 0; i < len; i += laneCount<V>) {
    const Float64* yi = exponents == Exponents::each ? y + i : y;
    auto [z, marks] = fast(x + i, yi);
    if (any(marks)) [[unlikely]] {
      alignas(32) Float64 zs[laneCount<V>];
      alignas(16) int words[laneCount<V>];
      store(zs, z);
      __builtin_memcpy(words, &marks, sizeof words);
      status = repairBlock<repair, exponents>(x + i, yi, zs, words, count, status, scalar);
      z = load<V>(zs);
    }
    store(dst + i, z);
  }
  return status;
}

// fast(const Float64* x, const Float64* y) -> Marked<V>. What remains after the last block is made up to a block with ones, which raise no flag.
template <class V, Repair repair, Exponents exponents, auto fast>
[[gnu::always_inline]] inline nuvStatus powerLoop(const Float64* x, const Float64* y, Float64* dst, int64_t len, PowScalarRoutine* scalar) {
  constexpr int64_t block = laneCount<V>;
  const int64_t rest = len % block, whole = len - rest;
  nuvStatus status = powerBlocks<V, repair, exponents, fast>(x, y, dst, whole, block, nuvStatusOk, scalar);
  if (rest == 0) return status;
  Float64 xs[block], ys[block], zs[block];
  for (int64_t i = 0; i < block; ++i) {
    xs[i] = i < rest ? x[whole + i] : 1.0;
    ys[i] = i < rest && exponents == Exponents::each ? y[whole + i] : 1.0;
  }
  status = powerBlocks<V, repair, exponents, fast>(xs, exponents == Exponents::each ? ys : y, zs, block, rest, status, scalar);
  for (int64_t i = 0; i < rest; ++i) dst[whole + i] = zs[i];
  return status;
}

}  // namespace power
}  // namespace
}  // namespace qorvane
