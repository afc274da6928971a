// The loop of the square root and its reciprocal. Long stretches of arguments from 2^-126 up to 2^128
// go through a software pipeline: single precision holds them, and the processor's estimate of the
// argument itself serves as the seed, without work on exponents; estimates repeat themselves,
// halved, at four times their argument. Everything else goes through stagedLoop, with the seeds of
// root_seed.h, which are the same numbers.
#pragma once
#include <cstring>

#include "algebraic/root_seed.h"
#include "frame/kernel_frame.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

constexpr int64_t longestStretch = 512,
                  shortestStretch = 48;  // in elements; what a stretch takes stays in the first-level cache
#ifdef __AVX__
using Part = Lanes4;
#else
using Part = Lanes2;
#endif
constexpr int64_t vector = laneCount<Part>;

// What the stages of a pipeline leave to later ones: the estimates, which are found there without
// waiting for them; the seeds; and what a square root ends with.
struct Scratch {
  alignas(32) float estimates[longestStretch];
  alignas(32) Float64 seeds[longestStretch], high[longestStretch], low[longestStretch];
};

// The processor's estimates of 1/sqrt(x), with the bits of `kept`, for x cut to single precision,
// which makes the conversion exact; and the seeds from there.
template <uint32_t kept>
INLINE void storeEstimates(float* p, Part x) {
  const Part cut = andBits(x, broadcast<Part>(fromBits(0xffffffffe0000000)));
  const auto keep = [](__m128 roots) INLINED {
    return kept == 0xffffffff ? roots : _mm_and_ps(roots, _mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(kept))));
  };
#ifdef __AVX__
  _mm_store_ps(p, keep(_mm_rsqrt_ps(_mm256_cvtpd_ps(cut))));
#else
  _mm_storel_pi(reinterpret_cast<__m64*>(p), keep(_mm_rsqrt_ps(_mm_cvtpd_ps(cut))));
#endif
}
INLINE Part seedsFrom(const float* estimates) {
#ifdef __AVX__
  return _mm256_cvtps_pd(_mm_load_ps(estimates));
#else
  return _mm_cvtps_pd(_mm_castpd_ps(_mm_load_sd(reinterpret_cast<const Float64*>(estimates))));
#endif
}
// The estimates run four vectors ahead.
constexpr auto pause = [](int64_t) INLINED {};

// Whether all of a stretch was in range, from the sums of its residuals. For an argument outside it
// the seed is zero, infinite or a NaN, so that its residual is a NaN or at least 1 in magnitude,
// while all others' in a lane don't add up to more than 0.2.
INLINE bool allInRange(Part residuals) { return !anyMagnitudeFrom(residuals, 0x3fe00000); }

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
INLINE bool underflowed() { return (readMxcsr() & underflowFlag) != 0; }
// Three arguments tell nearly all stretches with many outside the range.
INLINE bool looksFit(const Float64* x, int64_t count) {
  const auto fits = [&](int64_t i) INLINED { return int{highWord(x[i]) - 0x38100000 < 0x0fe00000}; };
  return (fits(0) & fits(count / 2) & fits(count - 1)) != 0;
}

// Any arguments, from the pieces of a core: begin(x, y) -> Partial from the seed y, series(Partial) ->
// s, root(s, x, y); lane(x) -> Element serves what isn't a positive normal number.
template <class V>
struct Partial {
  V e, sum;  // the residual, and the first step of the series in it
};
template <class V>
struct Seeded {
  V series, y;
};
template <uint32_t kept, Raises raises, class Begin, class Series, class Root, class Lane>
INLINE nuvStatus seededLoop(const Float64* src, Float64* dst, int64_t len, Begin begin, Series series, Root root,
                            Lane lane) {
  struct Begun {
    Partial<Four> partial;
    Four y;
  };
  SeedScratch seeds;
  return stagedLoop<raises>(
      src, dst, len, [&](auto x, int64_t i) INLINED { return storeSeeds<kept>(x, seeds, i); },
      [&](const Float64* p, int64_t i) INLINED {
        const Four x = load<Four>(p), y = seedsAt(x, seeds, i);
        return Begun{begin(x, y), y};
      },
      [&](const auto& begun) INLINED {
        return Seeded<Four>{series(begun.partial), begun.y};
      },
      [&](const auto& seeded, const Float64* p, int64_t)
          INLINED { return root(seeded.series, load<Four>(p), seeded.y); },
      lane);
}

// stretch(x, y, count) -> bool runs the pipeline and tells whether its results are right;
// inStages(x, y, count) -> status takes any arguments.
template <auto stretch, auto inStages>
INLINE nuvStatus rootLoop(const Float64* src, Float64* dst, int64_t len) {
  if (len < shortestStretch) return inStages(src, dst, len);
  const uint32_t before = readMxcsr();
  if (!mayTry(before)) return inStages(src, dst, len);
  const bool overlap = dst < src + len && src < dst + len;
  Float64 results[longestStretch];  // of a stretch that may turn out to have been the wrong way
  uint32_t flags = before & ~underflowFlag;
  if (before != flags) writeMxcsr(flags);
  const Float64* sure = src;  // results before it stand, whatever the underflow flag says
  const nuvStatus status = stretchLoop<longestStretch, shortestStretch, 4>(
      len,
      [&](int64_t count, const Float64* x, Float64* y) INLINED {
        if (!looksFit(x, count) || !stretch(x, overlap ? results : y, count) || (overlap && underflowed()))
          return false;
        if (overlap) std::memcpy(y, results, static_cast<size_t>(count) * sizeof *y);
        flags |= inexactFlag;
        return true;
      },
      [&](int64_t count, const Float64* x, Float64* y) INLINED {
        // The underflow may be this stretch's or an earlier one's.
        const int64_t earlier = !overlap && underflowed() ? x - sure : 0;
        writeMxcsr(flags);
        const nuvStatus last = inStages(x - earlier, y - earlier, count + earlier);
        flags = readMxcsr();
        sure = x + count;
        return last;
      },
      src, dst);
  if (!overlap && underflowed()) [[unlikely]] {
    writeMxcsr(flags);
    inStages(sure, dst + (sure - src), src + len - sure);
  }
  if ((before & underflowFlag) != 0) writeMxcsr(readMxcsr() | underflowFlag);
  return status;
}

}  // namespace
}  // namespace qorvane
