// atanh(x), all levels: the evaluation in x87 extended precision.
//
// Method: atanh|x| = ln((1 + a) / (1 - a)) / 2, a = |x|, from 2^-8 up; below, a polynomial in a^2.
// The two elements of a pair, 2i and 2i + 1, share the division if both are from 2^-8 up to 1; an
// element without such a partner has I = 1 / d^2, d = a - 1, where they have I = 1 / (d0 d1). So
// the last bit of a result may, rarely, depend on the partner.
//
// Error: 4.6 + 4.4 y units of 2^-64 for the result y, before the rounding to double precision
// (docs/atanh.md has the proof).
#include "hyperbolic/atanh_extended.h"

#include "frame/loops.h"
#include "hyperbolic/extended_ln.h"

namespace qorvane {
namespace {

bool isOrdinary(Float64 x) { return (highWord(x) & 0x7fffffff) - 0x3f700000 < 0x3ff00000 - 0x3f700000; }

// (1 + a) / (1 - a), from the reciprocal of a - 1
Extended ratio(Extended reciprocal) { return reciprocal * -2.0L - 1.0L; }

// From 2^-8 up to 1, alone. The number goes from memory into the x87 unit and back, its sign by
// factors: a way through other registers and the stack would take longer than they do.
void ordinaryElement(const Float64* src, Float64* dst) {
  static constexpr Float64 signs[] = {1.0, -1.0}, signedHalves[] = {0.5, -0.5};
  const uint64_t isNegative = toBits(*src) >> 63;
  const Extended d = Extended{signs[isNegative]} * *src - 1.0L;
  ExtendedChunk one;
  storeParts(one, 0, ratio((1.0L / (d * d)) * d));
  reduceParts(one, 1);
  *dst = static_cast<Float64>(signedHalves[isNegative] * lnAt(one, 0));
}

Element otherElement(Float64 x) {
  constexpr Float64 t7 = fromBits(0x3fc2492492492492);  // 0.14285714285714285
  constexpr Float64 t5 = fromBits(0x3fc999999999999a);  // 0.2
  constexpr Float64 t3 = fromBits(0x3fd5555555555555);  // 0.3333333333333333
  if ((highWord(x) & 0x7fffffff) < 0x3f700000) {
    const Extended a = magnitude(x), w = a * a;
    return {withSignOf(static_cast<Float64>(a + a * (((t7 * w + t5) * w + t3) * w)), x)};
  }
  if (x != x) return {withSignOf(fromBits(0x7fffffffffffffff), x)};
  if (magnitude(x) == 1.0) return {withSignOf(fromBits(0x7ff0000000000000), x), nuvStatusPole};
  return {withSignOf(fromBits(0x7fffffffffffffff), x), nuvStatusOutOfDomain};
}

}  // namespace

nuvStatus atanhElement(const Float64* src, Float64* dst) {
  if (isOrdinary(*src)) [[likely]]
    return ordinaryElement(src, dst), nuvStatusOk;
  const Element element = otherElement(*src);
  *dst = element.value;
  return element.status;
}

nuvStatus atanhElements(const Float64* src, Float64* dst, int count, uint64_t set) {
  nuvStatus status = nuvStatusOk;
  ExtendedChunk chunk;
  int place[extendedChunk], used = 0;
  for (; set != 0; set &= set - 1) {
    const int c = __builtin_ctzll(set), partner = c ^ 1;
    if (partner >= count || !isOrdinary(src[c]) || !isOrdinary(src[partner])) {
      takeStatus<Raises::no>(status, atanhElement(src + c, dst + c));
      continue;
    }
    const Extended d = magnitude(src[c]) - 1.0L, ofPartner = magnitude(src[partner]) - 1.0L;
    storeParts(chunk, used, ratio(ofPartner * (1.0L / (d * ofPartner))));
    place[used++] = c;
  }
  reduceParts(chunk, used);
  for (int i = 0; i < used; ++i) dst[place[i]] = withSignOf(static_cast<Float64>(0.5L * lnAt(chunk, i)), src[place[i]]);
  return status;
}

}  // namespace qorvane
