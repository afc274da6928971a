// Named ranges of arguments: where each function is measured, and the largest error that is
// expected there.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace accuracy {

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

// How one argument is drawn from [low, high].
enum class Kind {
  none,
  uniform,                 // every value alike
  magnitudes,              // low > 0: every bit pattern alike, that is every power of two
  signedMagnitudes,        // magnitudes of both signs
  whole,                   // an integer
  halves,                  // a multiple of 1/2, or one of its two neighbours
  nearMultiplesOfPiOver4,  // at 2^-60 to 2^-2 of a multiple, of both signs
  hardForReduction,  // both signs of arguments nearest to multiples of pi/2, and their neighbours; the bounds are limits of the magnitude
  powerOfTwo,  // 2^(t/b), b the second argument and t uniform: a^b is about 2^t
};
struct Distribution {
  Kind kind;
  double low, high;
};
struct Arguments {
  Distribution first, second;
};
constexpr Arguments uniform(double low, double high) { return {{Kind::uniform, low, high}, {Kind::none, 0, 0}}; }
constexpr Arguments magnitudes(double low, double high) { return {{Kind::magnitudes, low, high}, {Kind::none, 0, 0}}; }
constexpr Arguments signedMagnitudes(double low, double high) {
  return {{Kind::signedMagnitudes, low, high}, {Kind::none, 0, 0}};
}
constexpr Arguments whole(double low, double high) { return {{Kind::whole, low, high}, {Kind::none, 0, 0}}; }
constexpr Arguments halves(double low, double high) { return {{Kind::halves, low, high}, {Kind::none, 0, 0}}; }
constexpr Arguments nearMultiplesOfPiOver4(double low, double high) {
  return {{Kind::nearMultiplesOfPiOver4, low, high}, {Kind::none, 0, 0}};
}
constexpr Arguments hardForReduction(double low, double high) {
  return {{Kind::hardForReduction, low, high}, {Kind::none, 0, 0}};
}
constexpr Arguments pairs(Arguments a, Arguments b) { return {a.first, b.first}; }
constexpr Arguments powersOfTwo(double low, double high, Arguments b) {
  return {{Kind::powerOfTwo, low, high}, b.first};
}

struct Range {
  std::string_view stem, name;
  Arguments arguments;
  double margin;                     // what a test allows above the bound
  double bound1To3, bound4, bound5;  // the largest error in units in the last place at levels 1 to 3, 4, 5
  double bound(int level) const { return level < 4 ? bound1To3 : level == 4 ? bound4 : bound5; }
};

// The ranges of a function, its everyday one first.
std::span<const Range> rangesOf(std::string_view stem);

// In words: how the arguments are drawn.
std::string describe(const Arguments& arguments);

// An argument, or a pair, at which a hunt found an error close to the largest one.
struct WorstArgument {
  std::string_view stem, range;
  int firstLevel, lastLevel;
  double a, b;
};
std::span<const WorstArgument> worstArguments();

// Fills a, and b if the range has second arguments. With `sameSecond` the second argument is one
// for all.
void drawArguments(const Range& range, Random& random, std::span<double> a, std::span<double> b, bool sameSecond);

bool contains(const Distribution& distribution, double x, double second);

// A neighbour at most `distance` representable numbers away; the argument itself if that one lies
// outside the range.
double neighbour(const Distribution& distribution, double x, uint64_t distance, double second, Random& random);

// How many representable numbers lie in the range, about.
uint64_t width(const Distribution& distribution);

}  // namespace accuracy
