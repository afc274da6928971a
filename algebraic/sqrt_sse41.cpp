// sqrt(x), level 4: the processor's square root.
//
// Error: correctly rounded. The kernel runs in round-to-nearest with subnormals honoured, whatever
// the caller's mode.
//
// Special values: NaN gives the NaN, quiet, +Inf, +0 and -0 give themselves; negative numbers and
// -Inf give the default NaN, and out of domain, without the instruction's flag.
#include "frame/kernel_frame.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

INLINE Float64 core(Float64 x) { return _mm_cvtsd_f64(_mm_sqrt_sd(_mm_set_sd(x), _mm_set_sd(x))); }
INLINE Lanes2 core(Lanes2 x) { return _mm_sqrt_pd(x); }
template <int K>
INLINE Pack<Lanes2, K> core(Pack<Lanes2, K> x) {
  return makePack<K>([&](int i) INLINED { return core(x.part[i]); });
}

// The lanes that aren't positive normal numbers.
template <class V>
INLINE bool anyNotPositiveNormal(V x) {
  const auto outside = [](auto words) INLINED { return (words < 0x00100000) | (words > 0x7fefffff); };
  auto words = highWords(x);
  if constexpr (packSize<decltype(words)> == 0)
    return any(outside(words));
  else
    return any(makePack<packSize<V> / 2>([&](int i) INLINED -> Words4 { return outside(words.part[i]); }));
}

[[gnu::noinline, gnu::cold]] Element sqrtFixLane(Float64 x) {
  const uint64_t b = toBits(x), magnitude = b & 0x7fffffffffffffff;
  if (magnitude > 0x7ff0000000000000) return {x * opaque(1.0)};
  if (b != magnitude && magnitude != 0) return {fromBits(0xfff8000000000000), nuvStatusOutOfDomain};
  return {core(x)};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return guardedUnaryLoop<Pack<Lanes2, 4>, Raises::no>(
      src, dst, len, [](auto x) INLINED { return core(x); }, [](auto x) INLINED { return anyNotPositiveNormal(x); },
      sqrtFixLane);
}

}  // namespace

nuvStatus sqrtSse41(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
