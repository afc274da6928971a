// qorvane-certainty: the complex functions in lanes against their extended routines, element by element,
// and with which smaller bounds of the errors they would first differ (docs/certainty.md).
#include "tools/certainty.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "tools/options.h"

namespace qorvane::certainty {
namespace {

void report(const Subject& subject, const Distribution& distribution, const Counts& counts) {
  std::printf("%-5s %-18s %10lld elements, %lld differences\n", subject.name, distribution.name,
              static_cast<long long>(counts.elements), static_cast<long long>(counts.differences));
  for (int i = 0; i < shareCount; ++i)
    std::printf("        bound times %.2f: %8lld wrong, %.3f %% unsure\n", shares[i],
                static_cast<long long>(counts.wrong[i]),
                100.0 * static_cast<double>(counts.unsure[i]) / static_cast<double>(counts.elements));
}

void measure(const Subject& subject, const Distribution& distribution, int64_t count, uint64_t seed) {
  Random random(seed);
  Counts counts;
  constexpr int block = 1000;
  std::vector<Complex64> z(block), expected(block), results(block);
  const bool hasAvx = __builtin_cpu_supports("avx");
  const bool fuses = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  auto shown = std::chrono::steady_clock::now();
  while (counts.elements < count) {
    for (Complex64& element : z) {
      element = distribution.draw(random);
      if (subject.isTurned) std::swap(element.re, element.im);
    }
    for (int i = 0; i < block; ++i) expected[i] = subject.element(z[i]);
    for (Kernel* kernel : {subject.sse3, hasAvx ? subject.avx : nullptr, fuses ? subject.fused : nullptr}) {
      if (kernel == nullptr) continue;
      kernel(z.data(), results.data(), block);
      for (int i = 0; i < block; ++i) {
        if (std::memcmp(&results[i], &expected[i], sizeof results[i]) == 0) continue;
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
  report(subject, distribution, counts);
}

}  // namespace
}  // namespace qorvane::certainty

int main(int argumentCount, char** arguments) {
  using namespace qorvane::certainty;
  int64_t count = 1000000;
  uint64_t seed = 1;
  const char* only = "";
  if (argumentCount > 1) {
    const auto number = options::wholeNumber(arguments[1], 1000, 1000000000000);
    if (!number) {
      std::printf(
          "usage: qorvane-certainty [ELEMENTS [FUNCTION [SEED]]]\n"
          "Compares complex functions in lanes (sinh, asin ...) with their extended routines.\n");
      return std::strcmp(arguments[1], "--help") == 0 ? 0 : 2;
    }
    count = *number;
  }
  if (argumentCount > 2) only = arguments[2];
  if (argumentCount > 3) seed = static_cast<uint64_t>(std::atoll(arguments[3]));
  bool isKnown = false;
  for (const auto& subjects : {exponentialSubjects(), inverseSubjects(), logSubjects(), powSubjects()})
    for (const auto& subject : subjects) {
      if (*only != 0 && std::strcmp(only, subject.name) != 0) continue;
      isKnown = true;
      for (const auto& distribution : subject.distributions) measure(subject, distribution, count, seed);
    }
  if (!isKnown) std::fprintf(stderr, "qorvane-certainty: no function %s in lanes\n", only);
  return isKnown ? 0 : 2;
}
