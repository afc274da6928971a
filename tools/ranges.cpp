#include "tools/ranges.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <numbers>

#if __has_include("tools/hard_trig_arguments.h")
#include "tools/hard_trig_arguments.h"
#endif

namespace accuracy {
namespace {

constexpr Range ranges[] = {
#define RANGE(stem, name, arguments, margin, bound1To3, bound4, bound5) \
  {#stem, name, arguments, margin, bound1To3, bound4, bound5},
#include "tools/ranges.inc"
#undef RANGE
};

constexpr WorstArgument worst[] = {
#define WORST(stem, range, firstLevel, lastLevel, a, b) \
  {#stem, range, firstLevel, lastLevel, std::bit_cast<double>(uint64_t{a}), std::bit_cast<double>(uint64_t{b})},
#include "tests/worst_arguments.inc"
#undef WORST
};

// Doubles counted in their order, zeros as one.
int64_t rank(double x) {
  const auto pattern = std::bit_cast<int64_t>(x);
  return pattern >= 0 ? pattern : -(pattern & INT64_MAX);
}
double atRank(int64_t r) { return r >= 0 ? std::bit_cast<double>(r) : -std::bit_cast<double>(-r); }

double sign(Random& random) { return random.next() & 1 ? -1.0 : 1.0; }

const std::vector<double>& hardArguments(double low, double high) {
  thread_local std::vector<double> found;
  thread_local double foundLow = 0, foundHigh = 0;
  if (foundLow != low || foundHigh != high) {
    found.clear();
#if __has_include("tools/hard_trig_arguments.h")
    for (const double x : tables::hardTrigArguments())
      if (std::fabs(x) >= low && std::fabs(x) <= high) found.push_back(std::fabs(x));
#else
    if (high > 0x1p800)
      found.push_back(std::ldexp(6381956970095103.0, 797));
    else
      found.push_back(std::numbers::pi / 2);
#endif
    foundLow = low, foundHigh = high;
  }
  return found;
}

double draw(const Distribution& d, double second, Random& random) {
  switch (d.kind) {
    case Kind::none: return 0;
    case Kind::uniform: return d.low + (d.high - d.low) * random.unit();
    case Kind::magnitudes: return atRank(rank(d.low) + static_cast<int64_t>(random.below(width(d))));
    case Kind::signedMagnitudes:
      return sign(random) * atRank(rank(d.low) + static_cast<int64_t>(random.below(width(d))));
    case Kind::whole: return std::round(d.low + (d.high - d.low) * random.unit());
    case Kind::halves: {
      const double half = std::round(2 * (d.low + (d.high - d.low) * random.unit())) / 2;
      return half == 0 ? sign(random) * half : atRank(rank(half) - 1 + static_cast<int64_t>(random.below(3)));
    }
    case Kind::nearMultiplesOfPiOver4: {
      constexpr long double step = std::numbers::pi_v<long double> / 4;
      const long double multiple =
          std::floor(static_cast<long double>(d.low + (d.high - d.low) * random.unit()) / step);
      return static_cast<double>(sign(random) * (multiple * step + sign(random) * std::exp2(-2 - 58 * random.unit())));
    }
    case Kind::hardForReduction: {
      const std::vector<double>& all = hardArguments(d.low, d.high);
      const double x = all[random.below(all.size())];
      return sign(random) * (random.next() % 4 != 0 ? x : atRank(rank(x) - 4 + static_cast<int64_t>(random.below(9))));
    }
    case Kind::powerOfTwo: return std::exp2((d.low + (d.high - d.low) * random.unit()) / second);
  }
  return 0;
}

}  // namespace

std::span<const WorstArgument> worstArguments() { return worst; }

std::string describe(const Arguments& arguments) {
  // Powers of two in their short form, where that is shorter.
  const auto bound = [](double x) {
    int exponent;
    const bool power = std::fabs(std::frexp(x, &exponent)) == 0.5 && std::abs(exponent) > 10;
    char out[40];
    if (power)
      std::snprintf(out, sizeof out, "%s2^%d", x < 0 ? "-" : "", exponent - 1);
    else
      std::snprintf(out, sizeof out, "%.8g", x);
    return std::string(out);
  };
  const auto one = [&](const Distribution& d, const char* name) {
    const std::string low = bound(d.low), high = bound(d.high);
    const char* format = "";
    switch (d.kind) {
      case Kind::none: break;
      case Kind::uniform: format = "%s from %s to %s"; break;
      case Kind::magnitudes: format = "%s from %s to %s, each power of two alike"; break;
      case Kind::signedMagnitudes: format = "±%s from %s to %s, each power of two alike"; break;
      case Kind::whole: format = "whole %s from %s to %s"; break;
      case Kind::halves: format = "%s at multiples of 1/2 and next to them, from %s to %s"; break;
      case Kind::nearMultiplesOfPiOver4: format = "±%s near multiples of π/4, from %s to %s"; break;
      case Kind::hardForReduction: format = "±%s nearest to multiples of π/2 at every exponent, from %s to %s"; break;
      case Kind::powerOfTwo: format = "%s^y from 2^(%s) to 2^(%s)"; break;
    }
    char out[200];
    std::snprintf(out, sizeof out, format, name, low.c_str(), high.c_str());
    return std::string(out);
  };
  std::string text = one(arguments.first, "x");
  if (arguments.second.kind != Kind::none) text.append("; ").append(one(arguments.second, "y"));
  return text;
}

bool contains(const Distribution& d, double x, double second) {
  switch (d.kind) {
    case Kind::none: return true;
    case Kind::uniform:
    case Kind::magnitudes:
    case Kind::halves: return x >= d.low && x <= d.high;
    case Kind::whole: return x >= d.low && x <= d.high && x == std::round(x);
    case Kind::signedMagnitudes:
    case Kind::nearMultiplesOfPiOver4:
    case Kind::hardForReduction: return std::fabs(x) >= d.low && std::fabs(x) <= d.high;
    case Kind::powerOfTwo: {
      const double t = second * std::log2(x);
      return x > 0 && t >= d.low && t <= d.high;
    }
  }
  return false;
}

uint64_t width(const Distribution& d) {
  switch (d.kind) {
    case Kind::none:
    case Kind::whole: return 0;
    case Kind::hardForReduction: return 16;
    case Kind::powerOfTwo: return uint64_t{1} << 52;
    default: return static_cast<uint64_t>(rank(d.high)) - static_cast<uint64_t>(rank(d.low)) + 1;
  }
}

std::span<const Range> rangesOf(std::string_view stem) {
  const auto first = std::find_if(std::begin(ranges), std::end(ranges), [&](const Range& r) { return r.stem == stem; });
  const auto last = std::find_if(first, std::end(ranges), [&](const Range& r) { return r.stem != stem; });
  return {first, last};
}

void drawArguments(const Range& range, Random& random, std::span<double> a, std::span<double> b, bool sameSecond) {
  const auto& [first, second] = range.arguments;
  double one = 0;
  for (size_t i = 0; i < a.size(); ++i) {
    if (i == 0 || !sameSecond) one = draw(second, 0, random);
    b[i] = one;
    a[i] = draw(first, one, random);
  }
}

double neighbour(const Distribution& d, double x, uint64_t distance, double second, Random& random) {
  if (d.kind == Kind::none || distance == 0) return x;
  const double y =
      atRank(rank(x) - static_cast<int64_t>(distance) + static_cast<int64_t>(random.below(2 * distance + 1)));
  return contains(d, y, second) ? y : x;
}

}  // namespace accuracy
