// Inv and Div, 1 / x and a / b, levels 1 to 4.
//
// Method: the processor's division; beside it integer work looks for poles.
//
// Error: none beyond the rounding of the quotient, at most 0.5 ulp. The kernel runs in
// round-to-nearest without FTZ; DAZ stays the caller's, so that a subnormal divisor may give an
// infinity.
//
// Special values: all the processor's. A divisor of zero is a pole and raises divide-by-zero, also
// in 0 / 0, but in Div not where the numerator is infinite or a NaN. Overflow and underflow give no
// status.
//
// In place, the pairs of the array are tested as they are once the quotients have been stored. Over
// the divisors, a pole goes unseen and a quotient of zero (for Div with a finite numerator) looks
// like one; over the numerators, no pole is seen, since its quotient is no finite numerator. The
// last element of an odd length is tested as it came.
#include "frame/kernel_frame.h"
#include "frame/raise_fp_status.h"
#include "frame/words.h"

namespace qorvane {
namespace {

enum class Numerators { ones, given };

// By the bits, whatever DAZ is; in halves, since SSE2 has no comparison of 64-bit integers.
template <class V>
INLINE auto isZero(V x) {
  return ((highWords(x) & 0x7fffffff) | lowWords(x)) == 0;
}
template <class V>
INLINE auto isFinite(V x) {
  return (highWords(x) & 0x7ff00000) != 0x7ff00000;
}

template <Numerators numerators>
INLINE nuvStatus divide(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  constexpr bool given = numerators == Numerators::given;
  const bool overDivisors = dst == srcB, overNumerators = given && dst == srcA;
  Words4 poles{};
  int64_t i = 0;
  for (; i + 2 <= len; i += 2) {
    const Lanes2 a = given ? load<Lanes2>(srcA + i) : broadcast<Lanes2>(1.0), b = load<Lanes2>(srcB + i),
                 quotient = a / b;
    store(dst + i, quotient);
    const Words4 zeros = isZero(overDivisors ? quotient : b);
    poles |= given ? zeros & isFinite(a) : zeros;
  }
  bool anyPole = !overNumerators && any(poles);
  if (i < len) {
    const Float64 a = given ? srcA[i] : 1.0, b = srcB[i];
    dst[i] = a / b;
    anyPole |= given ? isFinite(a) && b == 0.0 : isZero(b);  // with DAZ, Div takes a subnormal divisor for zero here
  }
  if (!anyPole) return nuvStatusOk;
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

nuvStatus invSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::clearRounding, invLoop>(len, src, dst);
}
nuvStatus divSse3(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::clearRounding, divLoop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
