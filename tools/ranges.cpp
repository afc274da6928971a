#include "tools/ranges.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <vector>

namespace accuracy {
namespace {

template <class... Bounds>
constexpr Range row(std::string_view stem, std::string_view name, const Arguments& arguments, Bounds... bounds) {
  return {stem, name, arguments, {static_cast<double>(bounds)...}, sizeof...(bounds)};
}
constexpr WorstArgument worstRow(std::string_view stem, std::string_view range, auto... patterns) {
  return {stem, range, {std::bit_cast<double>(static_cast<uint64_t>(patterns))...}};
}

// The files of all families.
#define RANGE(stem, name, arguments, ...) row(#stem, name, arguments, __VA_ARGS__),
#define WORST(...)
constexpr Range ranges[] = {
#include "tools/all/accuracy.inc"
};
#undef RANGE
#undef WORST
#define RANGE(...)
#define WORST(stem, range, ...) worstRow(#stem, range, __VA_ARGS__),
constexpr WorstArgument worst[] = {
#include "tools/all/accuracy.inc"
};
#undef RANGE
#undef WORST

// Doubles counted in their order, zeros as one.
int64_t rank(double x) {
  const auto pattern = std::bit_cast<int64_t>(x);
  return pattern >= 0 ? pattern : -(pattern & INT64_MAX);
}
double atRank(int64_t r) { return r >= 0 ? std::bit_cast<double>(r) : -std::bit_cast<double>(-r); }

double sign(Random& random) { return random.next() & 1 ? -1.0 : 1.0; }

// Those of a range.
std::span<const double> hardArgumentsIn(double low, double high) {
  thread_local std::vector<double> found;
  thread_local double foundLow = 0, foundHigh = 0;
  if (foundLow != low || foundHigh != high) {
    found.clear();
    for (const double x : hardArguments)
      if (x >= low && x <= high) found.push_back(x);
    foundLow = low, foundHigh = high;
  }
  if (found.empty()) std::fputs("ranges.cpp: no hard arguments were provided\n", stderr), std::abort();
  return found;
}

double draw(const Distribution& d, double next, Random& random) {
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
      const std::span<const double> all = hardArgumentsIn(d.low, d.high);
      const double x = all[random.below(all.size())];
      return sign(random) * (random.next() % 4 != 0 ? x : atRank(rank(x) - 4 + static_cast<int64_t>(random.below(9))));
    }
    case Kind::powerOfTwo: return std::exp2((d.low + (d.high - d.low) * random.unit()) / next);
    case Kind::nearUnitCircle: {
      const double distance = sign(random) * std::exp2(d.low + (d.high - d.low) * random.unit());
      return sign(random) * std::sqrt(std::fma(-next, next, 1.0)) * (1 + distance);
    }
  }
  return 0;
}

}  // namespace

std::span<const double> hardArguments;

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
      case Kind::nearUnitCircle: format = "%s beside the unit circle, by 2^(%s) to 2^(%s) of it"; break;
    }
    char out[200];
    std::snprintf(out, sizeof out, format, name, low.c_str(), high.c_str());
    return std::string(out);
  };
  constexpr const char* names[][mostReals] = {{"x"}, {"x", "y"}, {}, {"re x", "im x", "re y", "im y"}};
  std::string text;
  for (size_t i = 0; i < arguments.count; ++i)
    text.append(i > 0 ? "; " : "").append(one(arguments.reals[i], names[arguments.count - 1][i]));
  return text;
}

bool contains(const Distribution& d, double x, double next) {
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
      const double t = next * std::log2(x);
      return x > 0 && t >= d.low && t <= d.high;
    }
    case Kind::nearUnitCircle: {
      const double t = std::log2(std::fabs(std::fabs(x) / std::sqrt(std::fma(-next, next, 1.0)) - 1));
      return t <= d.high;
    }
  }
  return false;
}

uint64_t width(const Distribution& d) {
  switch (d.kind) {
    case Kind::none:
    case Kind::whole: return 0;
    case Kind::hardForReduction: return 16;
    case Kind::powerOfTwo:
    case Kind::nearUnitCircle: return uint64_t{1} << 52;
    default: return static_cast<uint64_t>(rank(d.high)) - static_cast<uint64_t>(rank(d.low)) + 1;
  }
}

std::span<const Range> rangesOf(std::string_view stem) {
  const auto first = std::find_if(std::begin(ranges), std::end(ranges), [&](const Range& r) { return r.stem == stem; });
  const auto last = std::find_if(first, std::end(ranges), [&](const Range& r) { return r.stem != stem; });
  return {first, last};
}

void drawArguments(const Range& range, const Signature& signature, Random& random, size_t count,
                   const std::array<double*, 2>& in, double* scalar) {
  const auto parts = static_cast<size_t>(signature.parts), own = static_cast<size_t>(signature.inputs) * parts,
             all = static_cast<size_t>(signature.realsIn());
  for (size_t i = 0; i < count; ++i) {
    double next = 0;
    for (size_t r = all; r-- > 0;) {
      double& place = r < own ? in[r / parts][i * parts + r % parts] : scalar[r - own];
      if (r < own || i == 0) place = draw(range.arguments.reals[r], next, random);
      next = place;
    }
  }
}

double neighbour(const Distribution& d, double x, uint64_t distance, double next, Random& random) {
  if (d.kind == Kind::none || distance == 0) return x;
  const double y =
      atRank(rank(x) - static_cast<int64_t>(distance) + static_cast<int64_t>(random.below(2 * distance + 1)));
  return contains(d, y, next) ? y : x;
}

}  // namespace accuracy
