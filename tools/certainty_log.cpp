// qorvane-certainty's share of log10.
#include "complex/certified/log_strip.h"
#include "tools/certainty.h"

namespace qorvane {
#define KERNELS(stem) certainty::Kernel stem##Sse3, stem##AvxPlain, stem##AvxFma
KERNELS(complexLog10);

namespace certainty {
namespace {

void takeShares(Complex64 z, Complex64 expected, Counts& counts) {
  const auto parts = bySize(z.re, z.im);
  for (int i = 0; i < shareCount; ++i) {
    auto log = certainLog<Base::ten>(parts, shares[i]);
    if (toBits(log.isNearCircle) != 0) log.log = certainLogNearCircle<Base::ten>(parts, shares[i]);
    bool isSure = toBits(log.log.isCertain) != 0;
    Float64 re = log.log.value, im = 0;
    if (z.re == 0 || z.im == 0) {
      const auto both = certainOnAxis<Base::ten>(z.re, z.im, shares[i]);
      isSure = toBits(both.log.isCertain) != 0, re = both.log.value, im = both.angle;
    } else {
      const auto angle = certainAngle<Base::ten>(z.re, z.im, shares[i]);
      isSure = isSure && toBits(angle.isCertain) != 0, im = angle.value;
    }
    counts.add(i, isSure, re == expected.re && im == std::abs(expected.im));
  }
}

constexpr Distribution distributions[] = {
    {"parts within 20", [](Random& r) { return within(r, 20); }},
    {"parts within 1.5", [](Random& r) { return within(r, 1.5); }},
    {"parts of any size", [](Random& r) { return ofAnySize(r, 100); }},
    {"next to the circle", [](Random& r) { return onCircle(r, 1 + signedPower(r, -60, -2)); }},
    {"next to an axis there",
     [](Random& r) {
       const double y = signedPower(r, -60, -1), x = std::sqrt(1 - y * y) * (1 + signedPower(r, -60, -5));
       return (r() & 1) != 0 ? Complex64{x, y} : Complex64{y, -x};
     }},
    {"next to a row",
     [](Random& r) {
       const double x = uniform(r, -20, 20), c = static_cast<double>(r() % 257) * 0x1p-8;
       return Complex64{x, x * (c + signedPower(r, -60, -12))};
     }},
    {"real axis",
     [](Random& r) {
       return Complex64{(r() & 1) != 0 ? uniform(r, -20, 20) : 1 + signedPower(r, -52, -3), 0};
     }},
    {"imaginary axis",
     [](Random& r) {
       return Complex64{0, (r() & 1) != 0 ? uniform(r, -20, 20) : 1 + signedPower(r, -52, -3)};
     }},
};

constexpr Subject subjects[] = {
    {"log10", element<Function::log10>, takeShares, false, complexLog10Sse3, complexLog10AvxPlain, complexLog10AvxFma,
     distributions},
};

}  // namespace

std::span<const Subject> logSubjects() { return subjects; }

}  // namespace certainty
}  // namespace qorvane
