// qorvane-certainty: the complex functions in lanes against their extended routines, element by element,
// and with which smaller bounds of the errors they would first differ (docs/certainty.md).
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

#include "complex/certified/strip.h"
#include "tools/options.h"

namespace qorvane {
#define KERNELS(stem) \
  nuvStatus stem##Sse3(const Complex64*, Complex64*, int32_t), stem##Avx(const Complex64*, Complex64*, int32_t)
KERNELS(complexSinh);
KERNELS(complexCosh);
KERNELS(complexSin);
KERNELS(complexCos);
KERNELS(complexTanh);
KERNELS(complexTan);

namespace {

constexpr double shares[] = {1, 0.85, 0.75, 0.65, 0.6, 0.55, 0.5, 0.4, 0.3, 0.2, 0.1};
constexpr int shareCount = sizeof shares / sizeof *shares;

struct Counts {
  int64_t elements = 0, differences = 0, unsure[shareCount] = {}, wrong[shareCount] = {};
};

using Kernel = nuvStatus(const Complex64*, Complex64*, int32_t);
struct Subject {
  const char* name;
  Function function;
  Complex64 (*element)(Complex64);
  Kernel *sse3, *avx;
};
constexpr Subject subjects[] = {
    {"sinh", Function::sinh, element<Function::sinh>, complexSinhSse3, complexSinhAvx},
    {"cosh", Function::cosh, element<Function::cosh>, complexCoshSse3, complexCoshAvx},
    {"sin", Function::sin, element<Function::sin>, complexSinSse3, complexSinAvx},
    {"cos", Function::cos, element<Function::cos>, complexCosSse3, complexCosAvx},
    {"tanh", Function::tanh, element<Function::tanh>, complexTanhSse3, complexTanhAvx},
    {"tan", Function::tan, element<Function::tan>, complexTanSse3, complexTanAvx},
};

bool same(Complex64 a, Complex64 b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// What the lanes make of |x| and |y| with that share of the bounds.
void takeShares(Function function, Complex64 z, Complex64 expected, Counts& counts) {
  const bool turned = isTurned(function);
  const Float64 x = std::abs(turned ? z.im : z.re), y = std::abs(turned ? z.re : z.im);
  if (x >= 256 || y >= 256) return;
  const auto h = hyperbolicPairs(x);
  const auto t = trigonometricPairs(y);
  const auto &besideSinh = hasSinhCos(function) ? t.cos : t.sin, &besideCosh = hasSinhCos(function) ? t.sin : t.cos;
  const auto q = quotients(h.sinh, h.cosh, t.sin, t.cos, t.cos);
  const bool sinhIsReal = function == Function::sinh || function == Function::tanh;
  for (int i = 0; i < shareCount; ++i) {
    const auto s = isQuotient(function) ? certainPair(q.ofSinhCosh, 0.0, q.boundOfSinhCosh() * shares[i])
                                        : certainProduct(h.sinh, besideSinh, 0.0, boundWithSinh * shares[i]);
    const auto c = isQuotient(function) ? certainPair(q.ofSinCos, 0.0, q.boundOfSinCos() * shares[i])
                                        : certainProduct(h.cosh, besideCosh, 0.0, boundWithCosh * shares[i]);
    const bool isSure = toBits(s.isCertain) != 0 && toBits(c.isCertain) != 0 && toBits(t.isUnsure) == 0;
    counts.unsure[i] += !isSure;
    counts.wrong[i] += isSure && (s.value != std::abs(sinhIsReal ? expected.re : expected.im) ||
                                  c.value != std::abs(sinhIsReal ? expected.im : expected.re));
  }
}

struct Distribution {
  const char* name;
  double (*part)(std::mt19937_64&);
  bool realAxis, imaginaryAxis;
};
double uniform(std::mt19937_64& random, double low, double high) {
  return low + (high - low) * static_cast<double>(random() >> 11) * 0x1p-53;
}
double withinTwenty(std::mt19937_64& random) { return uniform(random, -20, 20); }
double withinOne(std::mt19937_64& random) { return uniform(random, -1, 1); }
double within512(std::mt19937_64& random) { return uniform(random, -512, 512); }
double within256(std::mt19937_64& random) { return uniform(random, -256, 256); }
double anySize(std::mt19937_64& random) {
  const double magnitude = std::exp2(uniform(random, -30, 8));
  return (random() & 1) != 0 ? -magnitude : magnitude;
}
// Next to a multiple of pi/512, where a remainder is largest or smallest.
double nextToSteps(std::mt19937_64& random) {
  return std::round(uniform(random, -3000, 3000)) * 0.006135923151542565 * (1 + uniform(random, -0x1p-20, 0x1p-20));
}
constexpr Distribution distributions[] = {
    {"parts within 20", withinTwenty, false, false}, {"parts within 1", withinOne, false, false},
    {"parts within 256", within256, false, false},   {"parts within 512", within512, false, false},
    {"parts of any size", anySize, false, false},    {"next to steps", nextToSteps, false, false},
    {"real axis", withinTwenty, true, false},        {"imaginary axis", withinTwenty, false, true},
};

void measure(const Subject& subject, const Distribution& distribution, int64_t count, uint64_t seed) {
  std::mt19937_64 random(seed);
  Counts counts;
  constexpr int block = 1000;
  std::vector<Complex64> z(block), expected(block), results(block);
  const bool hasAvx = __builtin_cpu_supports("avx");
  auto shown = std::chrono::steady_clock::now();
  while (counts.elements < count) {
    for (Complex64& element : z) {
      element = {distribution.part(random), distribution.part(random)};
      if (distribution.realAxis) element.im = 0;
      if (distribution.imaginaryAxis) element.re = 0;
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
    for (int i = 0; i < block; ++i) takeShares(subject.function, z[i], expected[i], counts);
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
          "usage: qorvane-certainty [ELEMENTS [FUNCTION [SEED]]]\n"
          "Compares sinh, cosh, tanh, sin, cos and tan of complex numbers with their extended routines.\n");
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
