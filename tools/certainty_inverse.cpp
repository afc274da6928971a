// qorvane-certainty's share of the inverse functions.
#include "complex/certified/inverse_strip.h"
#include "tools/certainty.h"

namespace qorvane {
#define KERNELS(stem) certainty::Kernel stem##Sse3, stem##Avx
KERNELS(complexAsinh);
KERNELS(complexAsin);
KERNELS(complexAcosh);
KERNELS(complexAcos);
KERNELS(complexAtan);

namespace certainty {
namespace {

// Of points on an axis: one part is 0.
template <Function function, bool aIsZero>
void takeSharesOfAxis(Float64 a, Float64 b, Float64 expectedAngle, Float64 expectedLog, Counts& counts) {
  for (int i = 0; i < shareCount; ++i) {
    const auto p = axisParts<function, aIsZero>(a, b, shares[i]);
    counts.add(i, toBits(p.isCertain) != 0, p.log == expectedLog && p.angle == expectedAngle);
  }
}
// Of points in the lanes' range.
template <Function function>
void takeShares(Complex64 z, Complex64 expected, Counts& counts) {
  const Float64 signedA = imaginaryIsA(function) ? z.im : z.re;
  const Float64 a = std::abs(signedA), b = std::abs(imaginaryIsA(function) ? z.re : z.im);
  const auto isServed = [](Float64 x) { return x >= 0x1p-100 && x < 0x1p60; };
  const Float64 expectedAngle = std::abs(angleIsReal(function) ? expected.re : expected.im);
  const Float64 expectedLog = std::abs(angleIsReal(function) ? expected.im : expected.re);
  if (a == 0 && isServed(b)) return takeSharesOfAxis<function, true>(a, b, expectedAngle, expectedLog, counts);
  if (b == 0 && isServed(a) && a != 1)
    return takeSharesOfAxis<function, false>(signedA, b, expectedAngle, expectedLog, counts);
  if (!isServed(a) || !isServed(b)) return;
  for (int i = 0; i < shareCount; ++i) {
    const auto parts = certainParts<function>(signedA, b, shares[i], shares[i]);
    counts.add(i, toBits(parts.log.isCertain) != 0 && toBits(parts.angle.isCertain) != 0,
               parts.log.value == expectedLog && parts.angle.value == expectedAngle);
  }
}

// A along the cuts, B across them.
constexpr Distribution distributions[] = {
    {"parts within 20", [](Random& r) { return within(r, 20); }},
    {"parts within 1", [](Random& r) { return within(r, 1); }},
    {"parts of any size", [](Random& r) { return ofAnySize(r, 30); }},
    {"|z| next to 1", [](Random& r) { return onCircle(r, 1 + signedPower(r, -50, -2)); }},
    {"next to 1",
     [](Random& r) {
       return Complex64{1 + signedPower(r, -50, -2), signedPower(r, -50, -2)};
     }},
    {"next to the cuts",
     [](Random& r) {
       return Complex64{uniform(r, -20, 20), signedPower(r, -50, -2)};
     }},
    {"axis of the cuts",
     [](Random& r) {
       return Complex64{uniform(r, -20, 20), 0};
     }},
    {"axis of the cuts, any size",
     [](Random& r) {
       return Complex64{signedPower(r, -60, 58), -0.0};
     }},
    {"axis of the cuts, next to 1",
     [](Random& r) {
       return Complex64{1 + signedPower(r, -52, -2), 0};
     }},
    {"the other axis",
     [](Random& r) {
       return Complex64{0, uniform(r, -20, 20)};
     }},
    {"the other axis, any size",
     [](Random& r) {
       return Complex64{-0.0, signedPower(r, -60, 58)};
     }},
};

template <Function function>
constexpr Subject subject(const char* name, Kernel* sse3, Kernel* avx) {
  return {name, element<function>, takeShares<function>, imaginaryIsA(function), sse3, avx, nullptr, distributions};
}
constexpr Subject subjects[] = {
    subject<Function::asinh>("asinh", complexAsinhSse3, complexAsinhAvx),
    subject<Function::asin>("asin", complexAsinSse3, complexAsinAvx),
    subject<Function::acosh>("acosh", complexAcoshSse3, complexAcoshAvx),
    subject<Function::acos>("acos", complexAcosSse3, complexAcosAvx),
    subject<Function::atan>("atan", complexAtanSse3, complexAtanAvx),
};

}  // namespace

std::span<const Subject> inverseSubjects() { return subjects; }

}  // namespace certainty
}  // namespace qorvane
