// qorvane-certainty-inverse: the complex inverse functions in lanes against their extended routines,
// element by element, and with which smaller bounds of the errors they would first differ
// (docs/certainty_inverse.md).
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

#include "complex/certified/inverse_strip.h"
#include "tools/options.h"

namespace qorvane {
#define KERNELS(stem) \
  nuvStatus stem##Sse3(const Complex64*, Complex64*, int32_t), stem##Avx(const Complex64*, Complex64*, int32_t)
KERNELS(complexAsinh);
KERNELS(complexAsin);
KERNELS(complexAcosh);
KERNELS(complexAcos);
KERNELS(complexAtan);

namespace {

constexpr double shares[] = {1, 0.75, 0.6, 0.5, 0.4, 0.3, 0.2, 0.1};
constexpr int shareCount = sizeof shares / sizeof *shares;

struct Counts {
  int64_t elements = 0, differences = 0, unsure[shareCount] = {}, wrong[shareCount] = {};
};

// What the lanes make of a point in their range with each share of the bounds.
template <Function function>
void takeShares(Complex64 z, Complex64 expected, Counts& counts) {
  const Float64 signedA = imaginaryIsA(function) ? z.im : z.re;
  const Float64 a = std::abs(signedA), b = std::abs(imaginaryIsA(function) ? z.re : z.im);
  const auto isServed = [](Float64 x) { return x >= 0x1p-100 && x < 0x1p60; };
  if (!isServed(a) || !isServed(b)) return;
  Point<Float64> point;
  Float64 share = 0;
  if constexpr (function == Function::atan) {
    const auto p = inverseTangentPoint(a, b);
    point = p.point, share = p.shareOfRho;
  } else {
    point = inverseSinePoint(a, b, sinhAndCosSquared(excessOf(a, b)));
  }
  const Float64 expectedAngle = std::abs(angleIsReal(function) ? expected.re : expected.im);
  const Float64 expectedLog = std::abs(angleIsReal(function) ? expected.im : expected.re);
  for (int i = 0; i < shareCount; ++i) {
    const auto log = certainLog<function>(point.e, signedA, shares[i]);
    const auto angle = certainAngle<function>(point.cos, point.sin, signedA, share, shares[i]);
    const bool isSure = toBits(log.isCertain) != 0 && toBits(angle.isCertain) != 0;
    counts.unsure[i] += !isSure;
    counts.wrong[i] += isSure && (log.value != expectedLog || angle.value != expectedAngle);
  }
}

using Kernel = nuvStatus(const Complex64*, Complex64*, int32_t);
struct Subject {
  const char* name;
  Complex64 (*element)(Complex64);
  void (*takeShares)(Complex64, Complex64, Counts&);
  bool imaginaryIsA;
  Kernel *sse3, *avx;
};
template <Function function>
constexpr Subject subject(const char* name, Kernel* sse3, Kernel* avx) {
  return {name, element<function>, takeShares<function>, imaginaryIsA(function), sse3, avx};
}
constexpr Subject subjects[] = {
    subject<Function::asinh>("asinh", complexAsinhSse3, complexAsinhAvx),
    subject<Function::asin>("asin", complexAsinSse3, complexAsinAvx),
    subject<Function::acosh>("acosh", complexAcoshSse3, complexAcoshAvx),
    subject<Function::acos>("acos", complexAcosSse3, complexAcosAvx),
    subject<Function::atan>("atan", complexAtanSse3, complexAtanAvx),
};

double uniform(std::mt19937_64& random, double low, double high) {
  return low + (high - low) * static_cast<double>(random() >> 11) * 0x1p-53;
}
double power(std::mt19937_64& random, double from, double to) {
  const double magnitude = std::exp2(uniform(random, from, to));
  return (random() & 1) != 0 ? -magnitude : magnitude;
}

// A along the cuts, B across them.
struct Place {
  double a, b;
};
struct Distribution {
  const char* name;
  Place (*draw)(std::mt19937_64&);
};
using Random = std::mt19937_64;
Place onCircle(Random& random, double radius) {
  const double angle = uniform(random, 0, 6.283185307179586);
  return {radius * std::cos(angle), radius * std::sin(angle)};
}
constexpr Distribution distributions[] = {
    {"parts within 20",
     [](Random& r) {
       return Place{uniform(r, -20, 20), uniform(r, -20, 20)};
     }},
    {"parts within 1",
     [](Random& r) {
       return Place{uniform(r, -1, 1), uniform(r, -1, 1)};
     }},
    {"parts of any size",
     [](Random& r) {
       return Place{power(r, -30, 30), power(r, -30, 30)};
     }},
    {"|z| next to 1", [](Random& r) { return onCircle(r, 1 + power(r, -50, -2)); }},
    {"next to 1",
     [](Random& r) {
       return Place{1 + power(r, -50, -2), power(r, -50, -2)};
     }},
    {"next to the cuts",
     [](Random& r) {
       return Place{uniform(r, -20, 20), power(r, -50, -2)};
     }},
    {"axis of the cuts",
     [](Random& r) {
       return Place{uniform(r, -20, 20), 0};
     }},
    {"the other axis",
     [](Random& r) {
       return Place{0, uniform(r, -20, 20)};
     }},
};

bool same(Complex64 a, Complex64 b) { return std::memcmp(&a, &b, sizeof a) == 0; }

void measure(const Subject& subject, const Distribution& distribution, int64_t count, uint64_t seed) {
  Random random(seed);
  Counts counts;
  constexpr int block = 1000;
  std::vector<Complex64> z(block), expected(block), results(block);
  const bool hasAvx = __builtin_cpu_supports("avx");
  auto shown = std::chrono::steady_clock::now();
  while (counts.elements < count) {
    for (Complex64& element : z) {
      const Place p = distribution.draw(random);
      element = subject.imaginaryIsA ? Complex64{p.b, p.a} : Complex64{p.a, p.b};
    }
    for (int i = 0; i < block; ++i) expected[i] = subject.element(z[i]);
    for (Kernel* kernel : {subject.sse3, hasAvx ? subject.avx : subject.sse3}) {
      kernel(z.data(), results.data(), block);
      for (int i = 0; i < block; ++i) {
        if (same(results[i], expected[i])) continue;
        if (counts.differences++ < 5)
          std::printf("  %s(%a, %a) = %a, %a, extended %a, %a\n", subject.name, z[i].re, z[i].im, results[i].re,
                      results[i].im, expected[i].re, expected[i].im);
      }
    }
    for (int i = 0; i < block; ++i) subject.takeShares(z[i], expected[i], counts);
    counts.elements += block;
    if (const auto now = std::chrono::steady_clock::now(); now - shown > std::chrono::seconds(10)) {
      shown = now;
      std::fprintf(stderr, "%s, %s: %.0f %%\n", subject.name, distribution.name,
                   100.0 * static_cast<double>(counts.elements) / static_cast<double>(count));
    }
  }
  std::printf("%-5s %-18s %10lld elements, %lld differences\n", subject.name, distribution.name,
              static_cast<long long>(counts.elements), static_cast<long long>(counts.differences));
  for (int i = 0; i < shareCount; ++i)
    std::printf("        bound times %.2f: %8lld wrong, %.3f %% unsure\n", shares[i],
                static_cast<long long>(counts.wrong[i]),
                100.0 * static_cast<double>(counts.unsure[i]) / static_cast<double>(counts.elements));
}

}  // namespace
}  // namespace qorvane

int main(int argumentCount, char** arguments) {
  using namespace qorvane;
  int64_t count = 1000000;
  uint64_t seed = 1;
  const char* only = "";
  if (argumentCount > 1) {
    const auto number = options::wholeNumber(arguments[1], 1000, 1000000000000);
    if (!number) {
      std::printf(
          "usage: qorvane-certainty-inverse [ELEMENTS [FUNCTION [SEED]]]\n"
          "Compares asinh, asin, acosh, acos and atan of complex numbers with their extended routines.\n");
      return std::strcmp(arguments[1], "--help") == 0 ? 0 : 2;
    }
    count = *number;
  }
  if (argumentCount > 2) only = arguments[2];
  if (argumentCount > 3) seed = static_cast<uint64_t>(std::atoll(arguments[3]));
  for (const auto& subject : subjects)
    for (const auto& distribution : distributions)
      if (*only == 0 || std::strcmp(only, subject.name) == 0) measure(subject, distribution, count, seed);
}
