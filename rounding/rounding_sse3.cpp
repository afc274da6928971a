// Floor, Ceil, Trunc, Round, Rint and NearbyInt, levels 1 to 3.
//
// Method: the shifter, see rounding/shifter.h, with the kernel's MXCSR set to the direction; Rint
// and NearbyInt are one program and run in the caller's mode. Round adds 1 to the ties that
// round-to-nearest took down to an even number; as no half is added to x, numbers just below a tie
// stay below it.
//
// Error: none. Zero results have the sign of x, but for Rint and NearbyInt in a caller's round-down
// mode: there a zero is -0. Rint and NearbyInt both raise inexact; the others do, too, and lose it
// where they had to change MXCSR.
//
// Special values: from 2^52 up, and infinities, x itself; NaN gives the NaN, quiet. There is no
// status.
#include "frame/kernel_frame.h"
#include "rounding/shifter.h"

namespace qorvane {
namespace {

// The directions, for |x| < 2^52.

// Exact cancellation gives -0 when the mode is down, so a zero sum needs the cleared sign of a
// positive x. A negative x has no zero but -0.
constexpr auto down = [](auto x) INLINED {
  using V = decltype(x);
  const V sign = signOf(x), m = orBits(sign, broadcast<V>(shifter));
  return andBits((x + m) - m, orBits(sign, broadcast<V>(fromBits(0x7fffffffffffffff))));
};

// Up, and to the nearest in the caller's mode: a zero takes the sign of x.
constexpr auto inMode = [](auto x) INLINED {
  using V = decltype(x);
  const V sign = signOf(x), m = orBits(sign, broadcast<V>(shifter));
  return orBits((x + m) - m, sign);
};

constexpr auto towardZero = [](auto x) INLINED { return orBits(integral(magnitude(x)), signOf(x)); };

constexpr auto tiesAway = [](auto x) INLINED {
  const auto a = magnitude(x);
  return orBits(tieAwayFromZero(a, integral(a)), signOf(x));
};

template <class Direction>
INLINE Float64 roundOne(Float64 x, Direction direction) {
  const uint32_t exponent = highWord(x) & 0x7ff00000;
  if (exponent == 0x7ff00000) return x + x;  // makes a NaN quiet
  return exponent >= highWord(shifter) ? x : direction(x);
}

template <auto direction>
nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  using V = Pack<Lanes2, 2>;
  int64_t i = 0;
  while (i < len) {
    for (; i + laneCount<V> <= len; i += laneCount<V>) {
      const V x = load<V>(src + i);
      if (anyWithoutFraction(x)) [[unlikely]]
        break;
      store(dst + i, direction(x));
    }
    for (const int64_t end = len - i < laneCount<V> ? len : i + laneCount<V>; i < end; ++i)
      dst[i] = roundOne(src[i], direction);
  }
  return nuvStatusOk;
}

}  // namespace

// clang-format off
nuvStatus floorSse3(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::forceDown, loop<down>>(len, src, dst); }
nuvStatus ceilSse3(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::forceUp, loop<inMode>>(len, src, dst); }
nuvStatus truncSse3(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::forceToZero, loop<towardZero>>(len, src, dst); }
nuvStatus roundSse3(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::clearMode, loop<tiesAway>>(len, src, dst); }
nuvStatus rintSse3(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::pointersFirst, Mode::none, loop<inMode>>(len, src, dst); }
// Without the rounding instruction inexact can't be helped.
nuvStatus nearbyIntSse3(const Float64* src, Float64* dst, int32_t len) { return rintSse3(src, dst, len); }
// clang-format on

}  // namespace qorvane
