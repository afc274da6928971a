// Named ranges of arguments: where each function is measured, and the largest error that is
// expected there. The families' data are in <family>/accuracy.inc, with rows
//   RANGE(stem, name, arguments, bounds...)   the first range of a function is its everyday one:
//                        ordinary arguments, which leave no fast path; the tests, the benchmark and
//                        the demo draw from it. The bounds are the largest errors known, in units
//                        in the last place of the exact result, one for each program of the
//                        function.
//   WORST(stem, range, patterns...)   arguments at which a hunt found an error close to the largest
//                        one (qorvane-accuracy --hunt prints such rows): the bit pattern of each
//                        number
#pragma once
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tools/served.h"

namespace accuracy {

using qorvane::Served;
using qorvane::Signature;

// A seeded generator of 64 random bits a call (SplitMix64).
struct Random {
  uint64_t state;
  uint64_t next() {
    uint64_t z = state += 0x9e3779b97f4a7c15;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return z ^ (z >> 31);
  }
  uint64_t below(uint64_t bound) {
    return static_cast<uint64_t>((static_cast<unsigned __int128>(next()) * bound) >> 64);
  }
  double unit() { return static_cast<double>(next() >> 11) * 0x1p-53; }  // in [0, 1)
};

// How one number is drawn from [low, high].
enum class Kind {
  none,
  uniform,                 // every value alike
  magnitudes,              // low > 0: every bit pattern alike, that is every power of two
  signedMagnitudes,        // magnitudes of both signs
  whole,                   // an integer
  halves,                  // a multiple of 1/2, or one of its two neighbours
  nearMultiplesOfPiOver4,  // at 2^-60 to 2^-2 of a multiple, of both signs
  hardForReduction,  // both signs of arguments nearest to multiples of pi/2, and their neighbours; the bounds are limits of the magnitude
  powerOfTwo,      // 2^(t/b), b the next number and t uniform: a^b is about 2^t
  nearUnitCircle,  // b the next number, in [-1, 1]: both signs of sqrt(1 - b^2) (1 ± 2^t), t uniform
};
struct Distribution {
  Kind kind;
  double low, high;
};

// How the numbers of an element are drawn, from the last one to the first: of the first input, then
// of the second one or the scalar; of a complex number the real part, then the imaginary one.
constexpr size_t mostReals = 4;
using Point = std::array<double, mostReals>;
struct Arguments {
  std::array<Distribution, mostReals> reals;
  size_t count;
};
constexpr Arguments single(Kind kind, double low, double high) { return {{Distribution{kind, low, high}}, 1}; }
constexpr Arguments pairs(Arguments a, const Arguments& b) {
  for (size_t i = 0; i < b.count; ++i) a.reals[a.count++] = b.reals[i];
  return a;
}
constexpr Arguments uniform(double low, double high) { return single(Kind::uniform, low, high); }
constexpr Arguments magnitudes(double low, double high) { return single(Kind::magnitudes, low, high); }
constexpr Arguments signedMagnitudes(double low, double high) { return single(Kind::signedMagnitudes, low, high); }
constexpr Arguments whole(double low, double high) { return single(Kind::whole, low, high); }
constexpr Arguments halves(double low, double high) { return single(Kind::halves, low, high); }
constexpr Arguments nearMultiplesOfPiOver4(double low, double high) {
  return single(Kind::nearMultiplesOfPiOver4, low, high);
}
constexpr Arguments hardForReduction(double low, double high) { return single(Kind::hardForReduction, low, high); }
constexpr Arguments powersOfTwo(double low, double high, const Arguments& b) {
  return pairs(single(Kind::powerOfTwo, low, high), b);
}
constexpr Arguments nearUnitCircle(double low, double high) {
  return pairs(single(Kind::nearUnitCircle, low, high), uniform(-1, 1));
}

constexpr double smallest = 0x1p-1074, largestSubnormal = 0x0.fffffffffffffp-1022, smallestNormal = 0x1p-1022,
                 largest = 0x1.fffffffffffffp1023;

struct Range {
  std::string_view stem, name;
  Arguments arguments;
  std::array<double, qorvane::mostPrograms> bounds;  // of each program
  size_t boundCount;

  // What a test allows: a hunt needn't have found the very largest error. But what is rounded
  // correctly is so everywhere, and a bound of 0.5 or less says just that.
  double allowed(size_t program) const {
    const double bound = bounds[program];
    return bound <= 0.5 ? bound : bound + 0.002 + 0.02 * (bound - 0.5);
  }
};

// The ranges of a function, its everyday one first.
std::span<const Range> rangesOf(std::string_view stem);

struct WorstArgument {
  std::string_view stem, range;
  Point reals;
};
std::span<const WorstArgument> worstArguments();

// What Kind::hardForReduction draws from. Their search needs MPFR, so a program that draws them
// says so by provideHardArguments (tools/references.h).
extern std::span<const double> hardArguments;

// Fills the arrays that the function has, and the scalar.
void drawArguments(const Range& range, const Signature& signature, Random& random, size_t count,
                   const std::array<double*, 2>& in, double* scalar);

// In words: how the arguments are drawn.
std::string describe(const Arguments& arguments);

// Whether x may be drawn when `next` is the next number.
bool contains(const Distribution& distribution, double x, double next);

// A neighbour at most `distance` representable numbers away; the number itself if that one lies
// outside the range.
double neighbour(const Distribution& distribution, double x, uint64_t distance, double next, Random& random);

// How many representable numbers lie in the range, about.
uint64_t width(const Distribution& distribution);

}  // namespace accuracy
