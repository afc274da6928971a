// The loop of the square root and its reciprocal: long stretches go through the pipeline of
// root_pipeline.h as far as their arguments allow, everything else through stagedLoop, with the
// seeds of root_seed.h, which are the same numbers.
#pragma once
#include <cstring>

#include "algebraic/root_pipeline.h"
#include "algebraic/root_seed.h"

namespace qorvane {
namespace {

constexpr uint32_t underflowFlag = 0x10, inexactFlag = 0x20, exceptionMasks = 0x1f80, roundingControl = 0x6000;

// Whether the pipeline may find out about arguments outside its range by trying. The flags that it
// raises with them are taken back, so no exception may trap; too large an argument must become an
// infinity; and the estimate of a number below the normal ones must be infinite, as it is on
// processors, if not in every emulation of one. An argument just below 2^-126 is rounded up to it:
// nothing but the underflow tells.
INLINE bool mayTry(uint32_t mxcsr) {
  float subnormal = 0x1p-130f;
  asm("" : "+x"(subnormal));
  return (mxcsr & (exceptionMasks | roundingControl)) == exceptionMasks &&
         _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(subnormal))) > 0x1p100f;
}
// Three arguments tell nearly all stretches with many outside the range.
INLINE bool looksFit(const Float64* x, int64_t count) {
  const auto fits = [&](int64_t i) INLINED { return int{highWord(x[i]) - 0x38100000 < 0x0fe00000}; };
  return (fits(0) & fits(count / 2) & fits(count - 1)) != 0;
}

template <class V>
struct Begun {
  Partial<V> partial;
  V y;
};
template <class V>
struct Seeded {
  V series, y;
};

// Any arguments. lane(x) -> Element serves the elements that aren't positive normal numbers.
template <class F, uint32_t kept, Raises raises, class Lane>
[[gnu::noinline]] nuvStatus inStages(const Float64* src, Float64* dst, int64_t len, Lane lane) {
  SeedChunk seeds;
  return stagedLoop<raises>(
      src, dst, len, [&](const Float64* x, int64_t i) INLINED { return storeSeeds<kept>(x, seeds, i); },
      [&](const Float64* p, int64_t i) INLINED {
        const Four x = load<Four>(p), y = seedsAt(x, seeds, i);
        return Begun<Four>{firstStep<F>(residualOf<F>(x, y)), y};
      },
      [](const auto& begun) INLINED {
        return Seeded<Four>{seriesIn<F>(begun.partial), begun.y};
      },
      [](const auto& seeded, const Float64* p, int64_t)
          INLINED { return rootFrom<F>(seeded.series, load<Four>(p), seeded.y); },
      lane);
}

template <class F, uint32_t kept, Raises raises, class Lane>
INLINE nuvStatus rootLoop(const Float64* src, Float64* dst, int64_t len, Lane lane) {
  if (len < shortestStretch) return inStages<F, kept, raises>(src, dst, len, lane);
  const bool overlap = dst < src + len && src < dst + len;
  const uint32_t before = readMxcsr(), cleared = before & ~underflowFlag;
  const auto underflowed = []() INLINED { return (readMxcsr() & underflowFlag) != 0; };
  if (!mayTry(before)) return inStages<F, kept, raises>(src, dst, len, lane);

  if (before != cleared) writeMxcsr(cleared);
  uint32_t flags = cleared;
  nuvStatus status = nuvStatusOk;
  Float64 copy[longestStretch];
  int64_t sure = 0;  // results before it stand, whatever the underflow flag says
  for (int64_t i = 0, count; i < len; i += count) {
    count = len - i < longestStretch ? len - i : longestStretch;
    const Float64* from = src + i;
    if (count >= shortestStretch && looksFit(from, count)) {
      if (overlap) from = static_cast<const Float64*>(std::memcpy(copy, from, static_cast<size_t>(count) * 8));
      const int64_t whole = count & ~int64_t{3};
      if (pipeline<F, kept>(from, dst + i, whole) && !(overlap && underflowed())) {
        count = whole;
        flags |= inexactFlag;
        continue;
      }
    }
    // The underflow may be this stretch's or an earlier one's.
    const int64_t first = !overlap && underflowed() ? sure : i;
    writeMxcsr(flags);
    const nuvStatus last =
        inStages<F, kept, raises>(first == i ? from : src + first, dst + first, i + count - first, lane);
    if (last != nuvStatusOk) status = last;
    flags = readMxcsr();
    sure = i + count;
  }
  if (!overlap && underflowed()) [[unlikely]] {
    writeMxcsr(flags);
    inStages<F, kept, raises>(src + sure, dst + sure, len - sure, lane);
  }
  if (before != cleared) writeMxcsr(readMxcsr() | underflowFlag);
  return status;
}

}  // namespace
}  // namespace qorvane
