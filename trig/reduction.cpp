// The reduction of large arguments modulo pi/2, for single elements.
//
// Method: octants of pi/4 are counted, and the count is rounded up to an even number, so that whole
// quadrants are taken off. Three ranges of |x|:
//   below 2^23   count * pi/4 with pi/4 in four parts (Cody and Waite)
//   below 2^30   the same with five parts, each short enough for a count of 31 bits
//   above        |x| times the bits of 4/pi that matter to it (Payne and Hanek): products of a half
//                of |x| with 25 bits of 4/pi are exact, those that are whole multiples of 8 octants are left out, and the sum of the others is kept as a value
//                with its rounding errors beside it
//
// Error: hi + lo is within 2^-58.9 of itself at the numbers next to multiples of pi/2 (the
// remainder comes down to 4.7e-19, at 5.3193726483265414e255; the largest error is at
// 14461176.67027838), within 2^-75 at 3 * 10^5 random arguments.
#include "trig/reduction.h"

namespace qorvane {
namespace {

#include "trig/pi_over_2_tables.inc"

constexpr Float64 fourOverPi = fromBits(0x3ff45f306dc9c883);  // 1.2732395447351628

// pi/4 in four parts; the first three leave 23 bits and more for the count.
constexpr Float64 a1 = fromBits(0x3fe921fb54000000);  // 0.78539816290140152
constexpr Float64 a2 = fromBits(0x3e010b4612000000);  // 4.9604679044912281e-10
constexpr Float64 a3 = fromBits(0xbc2676733c000000);  // -6.088525906594782e-19
constexpr Float64 a4 = fromBits(0x3a61701b839a2520);  // 1.7607799325916001e-27

// pi/4 in five parts; the first four leave 31 bits and more.
constexpr Float64 b1 = fromBits(0x3fe921fa00000000);  // 0.78539752960205078
constexpr Float64 b2 = fromBits(0x3ea5444300000000);  // 6.3379548009834252e-07
constexpr Float64 b3 = fromBits(0xbd373dca00000000);  // -8.2569910110630307e-14
constexpr Float64 b4 = fromBits(0xbbf3b39a00000000);  // -6.675151087907452e-20
constexpr Float64 b5 = fromBits(0x3a845c06e0e68948);  // 8.2231284681621288e-27

constexpr Float64 splitFactor = 0x1.8p26;                    // 100663296.0 = 1.5 * 2^26
constexpr Float64 piOver4Hi = fromBits(0x3fe921fb40000000);  // 0.78539812564849854, 26 bits
constexpr Float64 piOver4Lo = fromBits(0x3e64442d18469899);  // 3.7748949774459412e-08

constexpr Float64 clearLowBits(Float64 x, int bits) { return fromBits(toBits(x) >> bits << bits); }

struct Sum {
  Float64 hi, lo;
};

Sum removeBelow2To23(Float64 a, Float64 z) {
  const Float64 t1 = a - z * a1;
  const Float64 t2 = t1 - z * a2;
  const Float64 c1 = (t1 - t2) - z * a2;
  const Float64 hi = t2 - z * a3;
  const Float64 c2 = (t2 - hi) - z * a3;
  return {hi, (c1 + c2) - z * a4};
}

Sum removeBelow2To30(Float64 a, Float64 z) {
  const Float64 t1 = a - z * b1;
  const Float64 t2 = t1 - z * b2;
  const Float64 c1 = (t1 - t2) - z * b2;
  const Float64 t3 = t2 - z * b3;
  const Float64 c2 = (t2 - t3) - z * b3;
  const Float64 t = c1 + c2;
  const Float64 u = t + t3;
  const Float64 v = (t3 - u) + t;
  const Float64 hi = u - z * b4;
  const Float64 c3 = (u - hi) - z * b4;
  return {hi, (v + c3) - z * b5};
}

// A sum with the rounding errors that it has made so far. An error is exact if the sum is not
// smaller than the term, or both are multiples of a unit that the result keeps.
struct RunningSum {
  Float64 value, errors;
  void add(Float64 term) {
    const Float64 sum = value + term;
    errors = ((value - sum) + term) + errors;
    value = sum;
  }
};

PiOver2Remainder reduceFrom2To30(Float64 a, int exponent, Float64 sign) {
  const Float64 scaled = fromBits(toBits(a) - (uint64_t{200} << 52));  // the table has 4/pi * 2^200
  const Float64 high = clearLowBits(scaled, 27), low = scaled - high;
  const int first = ((exponent - 1052) * 83886) >> 21;  // what comes before low * t[0] is a multiple of 8 octants
  const int rest = exponent - 1052 - 25 * first;
  const Float64* t = fourOverPiChunks + first;

  // The leading terms, without those of their bits that are multiples of 2^15 octants.
  const Float64 lowTerm = low * t[0], highTerm = high * t[1], leading = lowTerm + highTerm,
                error = highTerm + (lowTerm - leading);
  RunningSum sum{leading - clearLowBits(leading + error, 38 - rest), error};
  sum.add(low * t[1]);
  sum.add(high * t[2]);
  const Float64 p3 = low * t[2], p4 = high * t[3];

  // The count of whole octants comes off, and one octant more where it is odd.
  const int64_t count = static_cast<int64_t>(p4 + (p3 + (sum.errors + sum.value)));
  const Float64 f = sum.value - static_cast<Float64>(count), g = sum.errors + f;
  sum = {g + (count & 1 ? -1.0 : 0.0), (f - g) + sum.errors};
  sum.add(p3);
  sum.add(p4);
  sum.add(low * t[3]);
  sum.add(high * t[4]);
  sum.add(low * t[4]);
  sum.add(high * t[5]);
  sum.add(low * t[5] + high * t[6]);
  sum.add(low * t[6] + high * t[7]);
  const Float64 last = low * t[7] + high * t[8];

  // Times pi/4, the sum being split into 26 bits and the rest.
  const Float64 v = last + sum.value;
  const Float64 shifted = v * splitFactor;
  const Float64 head = (v + shifted) - shifted;
  const Float64 tail = (last + (sum.value - head)) + sum.errors;
  const Float64 product = head * piOver4Hi;
  const Float64 correction = tail * piOver4Hi + (tail + head) * piOver4Lo;
  const Float64 r = correction + product;
  const int quadrant = static_cast<int>((static_cast<uint32_t>(count) + 1) >> 1);
  return {sign * r, sign * ((product - r) + correction), (sign < 0 ? -quadrant : quadrant) & 3};
}

}  // namespace

PiOver2Remainder reducePiOver2(Float64 x) {
  const Float64 sign = x < 0 ? -1.0 : 1.0, a = x * sign;
  const int exponent = static_cast<int>(toBits(a) >> 52);
  if (exponent >= 1053) return reduceFrom2To30(a, exponent, sign);

  const int octants = static_cast<int>(a * fourOverPi);  // below 2^31
  const Float64 z = octants + (octants & 1);
  const Sum r = exponent <= 1045 ? removeBelow2To23(a, z) : removeBelow2To30(a, z);
  const Float64 hi = sign * r.hi, lo = sign * r.lo, sum = lo + hi;
  const int quadrant = (octants + 1) >> 1;
  return {sum, lo + (hi - sum), (sign < 0 ? -quadrant : quadrant) & 3};
}

}  // namespace qorvane
