// Inv and Div, 1 / x and a / b, level 5. MXCSR is the caller's.
//
// Method: the processor's division; beside it a comparison of the divisor with zero looks for
// poles.
//
// Error: none beyond the rounding of the quotient in the caller's mode: at most 0.5 ulp in
// round-to-nearest.
//
// Special values: all the processor's. A divisor that compares equal to zero (with DAZ a subnormal
// one does) is a pole and raises divide-by-zero, whatever the numerator is. Overflow and underflow
// give no status.
#include "frame/kernel_frame.h"
#include "frame/lanes.h"
#include "frame/raise_fp_status.h"

namespace qorvane {
namespace {

enum class Numerators { ones, given };

// All ones in the lanes where a divisor is zero, in any vector of a pack.
INLINE Lanes4 zeroLanes(Lanes4 b) { return _mm256_cmp_pd(b, Lanes4{}, _CMP_EQ_OQ); }
template <int K>
INLINE Lanes4 zeroLanes(Pack<Lanes4, K> b) {
  Lanes4 all = zeroLanes(b.part[0]);
  for (int i = 1; i < K; ++i) all = orBits(all, zeroLanes(b.part[i]));
  return all;
}

template <Numerators numerators>
INLINE nuvStatus divide(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  constexpr bool given = numerators == Numerators::given;
  using V = Pack<Lanes4, 4>;
  using Part = PartOf<V>;
  Lanes4 poles{};
  int64_t i = 0;
  for (; i + laneCount<V> <= len; i += laneCount<V>) {
    const V b = load<V>(srcB + i), a = given ? load<V>(srcA + i) : broadcast<V>(1.0);
    poles = orBits(poles, zeroLanes(b));
    store(dst + i, a / b);
  }
  for (int64_t count; i < len; i += count) {
    count = len - i < laneCount<Part> ? len - i : laneCount<Part>;
    const Part b = loadPart<Part>(srcB + i, count), a = given ? loadPart<Part>(srcA + i, count) : broadcast<Part>(1.0);
    poles = orBits(poles, zeroLanes(b));
    storePart(dst + i, a / b, count);
  }
  if (_mm256_movemask_pd(poles) == 0) return nuvStatusOk;
  raiseFpStatus(nuvStatusPole);
  return nuvStatusPole;
}

nuvStatus invLoop(const Float64* src, Float64* dst, int64_t len) {
  return divide<Numerators::ones>(nullptr, src, dst, len);
}
nuvStatus divLoop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  return divide<Numerators::given>(srcA, srcB, dst, len);
}

}  // namespace

nuvStatus invAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, invLoop>(len, src, dst);
}
nuvStatus divAvx(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, divLoop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
