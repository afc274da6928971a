// extReduceLarge: the reduction modulo quarters of pi of numbers from 2^30 up, by integers.
//
// Method: the 64-bit significand times the 256 bits of 4/pi that matter to its exponent: what comes
// before them would add multiples of 8 quarters. The product's three leading bits are the quotient
// modulo 8, the rest is the fraction, good to 2^-189. Centred and normalised, its leading 128 bits
// are multiplied by pi/4 and read as two double-precision numbers.
//
// Error: 2^-104 of the remainder, as long as the fraction is above 2^-80; double-precision numbers
// come as near as 2^-62 to a multiple of pi/4.
#include "complex/extended/ext_trig_reduction.h"

namespace qorvane {
namespace {

#include "complex/extended/four_over_pi_table.inc"

using Wide = unsigned __int128;

INLINE uint64_t highHalf(Wide x) { return static_cast<uint64_t>(x >> 64); }

}  // namespace

int32_t extReduceLarge(Extended80 x, int32_t addend, Float64* remainder) {
  // The fraction's leading bit has the weight 2^-1 after x = significand * 2^(field - 0x3fff - 63).
  const Pattern p = patternOf(x);
  const uint32_t place = p.field - (0x3fffu + 63 - 61);
  const uint64_t* const words = fourOverPi + (place >> 6);
  const auto window = [&](int i) { return highHalf((Wide{words[i]} << 64 | words[i + 1]) << (place & 63)); };
  const uint64_t m = p.significand;
  const Wide p3 = Wide{m} * window(3);
  const Wide p2 = Wide{m} * window(2) + highHalf(p3);
  const Wide p1 = Wide{m} * window(1) + highHalf(p2);
  const uint64_t p0 = m * window(0) + highHalf(p1);

  // The fraction behind the three bits of the quotient, or 1 minus it.
  const int32_t quotient = static_cast<int32_t>(p0 >> 61) + addend;
  const uint64_t flip = (quotient & 1) != 0 ? ~uint64_t{0} : 0;
  uint64_t f0 = (p0 << 3 | static_cast<uint64_t>(p1) >> 61) ^ flip;
  uint64_t f1 = (static_cast<uint64_t>(p1) << 3 | static_cast<uint64_t>(p2) >> 61) ^ flip;
  uint64_t f2 = (static_cast<uint64_t>(p2) << 3 | static_cast<uint64_t>(p3) >> 61) ^ flip;
  int zeros = 0;
  if (f0 == 0) {
    f0 = f1, f1 = f2, f2 = 0;
    zeros = 64;
  }
  const int shift = __builtin_clzll(f0 | 1);
  const uint64_t hi = highHalf((Wide{f0} << 64 | f1) << shift), lo = highHalf((Wide{f1} << 64 | f2) << shift);
  zeros += shift;

  constexpr uint64_t quarterHi = 0xc90fdaa22168c234, quarterLo = 0xc4c6628b80dc1cd1;  // pi/4 * 2^128
  const Wide product = Wide{hi} * quarterHi + highHalf(Wide{hi} * quarterLo) + highHalf(Wide{lo} * quarterHi);
  const uint64_t upper = static_cast<uint64_t>(product >> 75),
                 lower = static_cast<uint64_t>(product >> 22) & 0x1fffffffffffff;
  const Float64 unit = flip != 0 ? -powerOfTwo(-53 - zeros) : powerOfTwo(-53 - zeros);
  remainder[0] = static_cast<Float64>(static_cast<int64_t>(upper)) * unit;
  remainder[1] = static_cast<Float64>(static_cast<int64_t>(lower)) * (unit * powerOfTwo(-53));
  return quotient;
}

}  // namespace qorvane
