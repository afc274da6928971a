#include "hyperbolic/atanh_extended.h"

#include "frame/loops.h"
#include "hyperbolic/extended_ln.h"

namespace qorvane {

#include "hyperbolic/half_log_tables.inc"

namespace {

bool isOrdinary(Float64 x) { return (highWord(x) & 0x7fffffff) - 0x3f700000 < 0x3ff00000 - 0x3f700000; }

// (1 + a) / (1 - a), from the reciprocal of a - 1
INLINE Extended ratio(Extended reciprocal) { return reciprocal * -2.0L - 1.0L; }

}  // namespace

Element atanhLane(Float64 x) {
  constexpr Float64 t7 = fromBits(0x3fc2492492492492), t5 = fromBits(0x3fc999999999999a),
                    t3 = fromBits(0x3fd5555555555555);
  const Float64 a = magnitude(x);
  const Extended extended = a;
  if (isOrdinary(x)) {
    const Extended d = extended - 1.0L;
    return {withSignOf(static_cast<Float64>(0.5L * lnExtended(ratio((1.0L / (d * d)) * d))), x)};
  }
  if (a < 1.0) {
    const Extended w = extended * extended;
    return {withSignOf(static_cast<Float64>(extended + extended * (((t7 * w + t5) * w + t3) * w)), x)};
  }
  if (a == 1.0) return {withSignOf(fromBits(0x7ff0000000000000), x), nuvStatusPole};
  return {withSignOf(fromBits(0x7fffffffffffffff), x), x != x ? nuvStatusOk : nuvStatusOutOfDomain};
}

nuvStatus atanhElements(const Float64* src, Float64* dst, int count, uint64_t set) {
  Float64 x[extendedChunk];
  int8_t place[extendedChunk];
  ExtendedChunk chunk;
  nuvStatus status = nuvStatusOk;
  int used = 0;
  __builtin_memcpy(x, src, static_cast<size_t>(count) * sizeof *src);
  for (; set != 0; set &= set - 1) {
    const int c = __builtin_ctzll(set), partner = c ^ 1;
    if (partner >= count || !isOrdinary(x[c]) || !isOrdinary(x[partner])) {
      takeElement<Raises::no>(status, dst + c, atanhLane(x[c]));
      continue;
    }
    const Extended d = magnitude(x[c]) - 1.0L, other = magnitude(x[partner]) - 1.0L;
    const Extended inverse = 1.0L / (d * other);
    storeParts(chunk, used, ratio(other * inverse));
    place[used++] = static_cast<int8_t>(c);
  }
  reduceParts(chunk, used);
  for (int i = 0; i < used; ++i) {
    const int c = place[i];
    dst[c] = withSignOf(static_cast<Float64>(0.5L * lnAt(chunk, i)), x[c]);
  }
  return status;
}

}  // namespace qorvane
