// The vocabulary of the kernels in extended precision: numbers with 64-bit significands and a
// 15-bit exponent, in the x87 unit.
//
// The kernels run with the control word that the frame sets: 64-bit significands, round to nearest.
// Every operation of a formula is rounded to 64 bits by itself. All is in an unnamed namespace: a
// kernel is compiled into its callers, since a call would send its numbers through memory.
//
//   extended(field, significand)   a constant
//   Stored                         a number in memory
//   Argument                       a number and its exponent key, by which a kernel picks its range
//   Sum, fastTwoSum                a number as a sum of two, and the exact sum of two numbers
//   toMultiple, leadingPart        short parts of a number, whose products are exact
//   wholePart, toInt32             integers
//   powerOfTwo                     factors 2^m
//   overflowed, underflowed        results with their flags
//   tinyOdd                        what the odd functions give for a tiny argument
#pragma once
#include "frame/bits.h"

namespace qorvane {

using Extended80 = long double;

// The same number, but the compiler can't know it: an operation on it is made at run time and raises
// its flags.
INLINE static Extended80 opaque(Extended80 x) {
  asm volatile("" : "+m"(x));
  return x;
}

namespace {

// 2^n, folded.
consteval Extended80 constantPowerOfTwo(int n) {
  Extended80 power = 1, square = n < 0 ? 0.5L : 2.0L;
  for (unsigned rest = static_cast<unsigned>(n < 0 ? -n : n); rest != 0; rest >>= 1) {
    if ((rest & 1) != 0) power *= square;
    if (rest > 1) square *= square;
  }
  return power;
}

// The number with this sign and exponent field and this significand.
consteval Extended80 extendedNumber(unsigned field, uint64_t significand) {
  const int exponent = static_cast<int>(field & 0x7fff) - 0x3fff - 63;
  const int half = exponent / 2;  // 2^exponent may be too small by itself
  const Extended80 magnitude = static_cast<Extended80>(significand) * constantPowerOfTwo(half);
  return (field & 0x8000) != 0 ? -(magnitude * constantPowerOfTwo(exponent - half))
                               : magnitude * constantPowerOfTwo(exponent - half);
}

// A constant with more than 53 bits is kept as the sum of two double-precision numbers, the lower one
// with 11 bits, and added up, exactly, where it is used: loading 80 bits takes some fifteen times as
// long as loading 64. The compiler would fold the sum to 80 bits, or make it early, where registers
// are short; so it is made in one piece, and only once the other operand is there. A constant of 53
// bits is an operand in memory, for the same reasons.
struct Constant {
  Float64 hi, lo;

  INLINE Extended80 beside(Extended80 x) const {
    Extended80 sum;
    asm("fldl %1\n\tfaddl %2" : "=&t"(sum) : "m"(hi), "m"(lo), "f"(x));
    return sum;
  }
};

// With the leading 53 bits of a constant only.
INLINE Extended80 plusLeading53(Extended80 x, const Constant& c) {
  asm("faddl %1" : "+t"(x) : "m"(c.hi));
  return x;
}
INLINE Extended80 timesLeading53(Extended80 x, const Constant& c) {
  asm("fmull %1" : "+t"(x) : "m"(c.hi));
  return x;
}
INLINE Extended80 operator+(Extended80 x, const Constant& c) {
  return c.lo == 0 ? plusLeading53(x, c) : x + c.beside(x);
}
INLINE Extended80 operator*(Extended80 x, const Constant& c) {
  return c.lo == 0 ? timesLeading53(x, c) : x * c.beside(x);
}
INLINE Extended80 operator+(const Constant& c, Extended80 x) { return x + c; }
INLINE Extended80 operator*(const Constant& c, Extended80 x) { return x * c; }

// The constant with this sign and exponent field and this significand, its exponent in the range of
// double precision.
consteval Constant extended(unsigned field, uint64_t significand) {
  return {static_cast<Float64>(extendedNumber(field, significand & ~uint64_t{0x7ff})),
          static_cast<Float64>(extendedNumber(field, significand & 0x7ff))};
}

// The leading 53 bits of a constant.
consteval Constant leading53(const Constant& c) { return {c.hi, 0}; }

// A number in memory for later, in two double-precision numbers; it must be 0 or from 2^-960 to 2^1023
// in magnitude, or a double-precision number. Storing and loading all 80 bits at once takes longer
// than this.
class Stored {
 public:
  INLINE explicit Stored(Extended80 x) : hi(static_cast<Float64>(x)), lo(static_cast<Float64>(x - hi)) {}
  INLINE operator Extended80() const { return Extended80{hi} + lo; }

 private:
  Float64 hi, lo;
};

// The fields of a number. A number is read this way, but never made: a load that takes in two
// stores waits until they have reached the cache.
struct Pattern {
  uint64_t significand;
  uint16_t field;
};
INLINE Pattern patternOf(Extended80 x) {
  Pattern p;
  __builtin_memcpy(&p, &x, 10);
  return p;
}

// The exponent field of 2^n, and the key of a magnitude: the exponent field above the leading 16
// bits of the significand. Keys of magnitudes compare as the numbers do, up to those 16 bits.
constexpr uint32_t exponentField(int n) { return static_cast<uint32_t>(0x3fff + n); }
constexpr uint32_t keyFrom(uint32_t field) { return field << 16; }  // a key is at least this from the field up
constexpr uint32_t keyOfInfinity = 0x7fff8000;

// What a kernel takes: the number, the key of its magnitude and its sign. A double-precision number
// has its key from its own bits, without the way through memory: its zeros and subnormal numbers,
// which are normal here, all get the exponent field 0x3c00. Every kernel's first range reaches up to
// 0x3fb3, and only there it looks for zeros.
struct Argument {
  Extended80 x;
  uint32_t key;
  bool negative;

  INLINE Argument(Extended80 v) : x(v) {
    const Pattern p = patternOf(v);
    key = static_cast<uint32_t>(p.field & 0x7fff) << 16 | static_cast<uint32_t>(p.significand >> 48);
    negative = (p.field & 0x8000) != 0;
  }
  INLINE Argument(Float64 v) : x(v), negative(toBits(v) >> 63 != 0) {
    const uint32_t high = highWord(v) & 0x7fffffff, exponent = high >> 20;
    key = (exponent == 0x7ff ? 0x7fff : exponent + (0x3fff - 0x3ff)) << 16 | 0x8000 | (high >> 5 & 0x7fff);
  }
  INLINE uint32_t field() const { return key >> 16; }
  INLINE Extended80 magnitude() const { return __builtin_fabsl(x); }
  INLINE Float64 sign() const { return negative ? -1.0 : 1.0; }
};

// A number as the sum of two; lo is at most half a unit in the last place of hi, or nearly so.
struct Sum {
  Extended80 hi, lo;
};

// a + b and the rounding error, exact where |a| >= |b|, a = 0, or nothing is rounded.
INLINE Sum fastTwoSum(Extended80 a, Extended80 b) {
  const Extended80 sum = a + b;
  return {sum, (a - sum) + b};
}

// x rounded to a multiple of the unit of `shifter`, which is 1.5 * 2^n: the unit is 2^(n - 63). |x|
// is at most 2^(n - 2).
INLINE Extended80 toMultiple(Extended80 x, Float64 shifter) { return (x + shifter) - shifter; }

// The leading bits of x, some 63 - n of them, for a factor of 1.5 * 2^n.
INLINE Extended80 leadingPart(Extended80 x, Float64 factor) {
  const Extended80 product = factor * x;
  return (x + product) - product;
}

constexpr Float64 shifterTo0 = fromBits(0x43e8000000000000);   // 1.5 * 2^63: rounds to integers
constexpr Float64 shifterTo15 = fromBits(0x42f8000000000000);  // 1.5 * 2^48: to multiples of 2^-15
constexpr Float64 shifterTo31 = fromBits(0x41f8000000000000);  // 1.5 * 2^32: to multiples of 2^-31
constexpr Float64 leading31 = fromBits(0x41f8000000000000);    // 1.5 * 2^32: leaves 31 bits
constexpr Float64 leading11 = fromBits(0x4338000000000000);    // 1.5 * 2^52: leaves 11 bits
constexpr Float64 leading10 = fromBits(0x4348000000000000);    // 1.5 * 2^53: leaves 10 bits

// The nearest integer, as a number.
INLINE Extended80 wholePart(Extended80 x) { return toMultiple(x, shifterTo0); }

// An integer below 2^31 in magnitude.
INLINE int32_t toInt32(Extended80 integer) {
  int32_t result;
  asm("fistpl %0" : "=m"(result) : "t"(integer) : "st");
  return result;
}

// floor(x) for 0 <= x < 2^32: its significand shifted. No flag is raised.
INLINE uint32_t floorOf(Extended80 x) {
  const Pattern p = patternOf(x);
  const unsigned shift = 0x401eu - p.field;
  return shift > 31 ? 0 : static_cast<uint32_t>(p.significand >> 32) >> shift;
}

// 2^m as a factor, m from -1022 to 1023: the unit multiplies by it as it stands in memory.
INLINE Float64 powerOfTwo(int32_t m) { return fromBits((static_cast<uint64_t>(static_cast<int64_t>(m)) + 1023) << 52); }

// The number is made, and its flags raised, though nobody reads it.
INLINE void discard(Extended80 x) { asm volatile("" : : "t"(x)); }
INLINE void discard(Float64 x) { asm volatile("" : : "x"(x)); }

constexpr Extended80 hugeFactor = extendedNumber(0x670f, 0x8000000000000000);  // 2^10000: its square overflows
constexpr Extended80 tinyFactor = extendedNumber(0x18ef, 0x8000000000000000);  // 2^-10000: its square underflows to 0

// Flags in the x87 unit.
INLINE Extended80 overflowed() { return opaque(hugeFactor) * hugeFactor; }
INLINE Extended80 underflowed() { return opaque(tinyFactor) * tinyFactor; }

// The NaN, quiet, and invalid if it wasn't. A product with 1 would be folded.
INLINE Extended80 quieted(Extended80 nan) { return nan + nan; }

constexpr Float64 twoTo75 = fromBits(0x44a0000000000000);
constexpr Float64 twoToMinus75 = fromBits(0x3b40000000000000);

// x + O(x^3) where that is x: x with the inexact flag, and with underflow where x is subnormal. A
// zero stays exact.
INLINE Extended80 tinyOdd(Extended80 x) {
  if (x == 0) return x;
  if (__builtin_fabsl(x) < constantPowerOfTwo(-16382)) [[unlikely]]
    discard(underflowed());
  return (twoTo75 * x + x) * twoToMinus75;
}

}  // namespace
}  // namespace qorvane
