// qorvane-certainty's share of sinh, cosh, tanh, sin, cos and tan.
#include "complex/certified/strip.h"
#include "tools/certainty.h"

namespace qorvane {
#define KERNELS(stem) certainty::Kernel stem##Sse3, stem##AvxPlain, stem##AvxFma
KERNELS(complexSinh);
KERNELS(complexCosh);
KERNELS(complexSin);
KERNELS(complexCos);
KERNELS(complexTanh);
KERNELS(complexTan);

namespace certainty {
namespace {

template <Function function>
void takeShares(Complex64 z, Complex64 expected, Counts& counts) {
  const bool turned = isTurned(function);
  const Float64 x = std::abs(turned ? z.im : z.re), y = std::abs(turned ? z.re : z.im);
  if (x >= (isQuotient(function) ? 512 : 1024) || y >= 1e8) return;
  const bool isLarge = x >= 256;
  const auto h = isLarge ? hyperbolicPairs<true>(x) : hyperbolicPairs(x);
  const auto t = y >= 256 ? trigonometricPairs<true>(y) : trigonometricPairs(y);
  const auto &besideS = hasSinhCos(function) ? t.cos : t.sin, &besideC = hasSinhCos(function) ? t.sin : t.cos;
  const auto q = quotients(h.sinh, h.cosh, t.sin, t.cos, besideSinh(isLargeX(x), t.cos));
  const bool sinhIsReal = function == Function::sinh || function == Function::tanh;
  for (int i = 0; i < shareCount; ++i) {
    auto s = isQuotient(function) ? certainPair(q.ofSinhCosh, 0.0, q.boundOfSinhCosh() * shares[i])
                                  : certainProduct(h.sinh, besideS, 0.0, boundWithSinh * shares[i]);
    auto c = isQuotient(function) ? certainScaled(isLargeX(x), q.ofSinCos, 0.0, q.boundOfSinCos() * shares[i])
                                  : certainProduct(h.cosh, besideC, 0.0, boundWithCosh * shares[i]);
    bool isSure = toBits(s.isCertain) != 0 && toBits(c.isCertain) != 0 && toBits(t.isUnsure) == 0;
    if (isLarge && isQuotient(function)) isSure &= scaleBack(c.value, y == 0);
    if (isLarge && !isQuotient(function)) s.value *= 0x1p512, c.value *= 0x1p512;
    counts.add(i, isSure,
               s.value == std::abs(sinhIsReal ? expected.re : expected.im) &&
                   c.value == std::abs(sinhIsReal ? expected.im : expected.re));
  }
}

// The hyperbolic functions' part is the first one.
template <double part(Random&)>
Complex64 bothParts(Random& random) {
  const double re = part(random);
  return {re, part(random)};
}
double upTo256(Random& random) { return signedPower(random, -30, 8); }
// Next to a multiple of pi/512, where a remainder is largest or smallest.
double nextToSteps(Random& random) {
  return std::round(uniform(random, -3000, 3000)) * 0.006135923151542565 * (1 + uniform(random, -0x1p-20, 0x1p-20));
}
constexpr Distribution distributions[] = {
    {"parts within 20", [](Random& r) { return within(r, 20); }},
    {"parts within 1", [](Random& r) { return within(r, 1); }},
    {"parts within 256", [](Random& r) { return within(r, 256); }},
    {"parts within 512", [](Random& r) { return within(r, 512); }},
    {"parts of any size", bothParts<upTo256>},
    {"next to steps", bothParts<nextToSteps>},
    {"trigonometric part 0",
     [](Random& random) {
       return Complex64{uniform(random, -20, 20), 0};
     }},
    {"hyperbolic part 0",
     [](Random& random) {
       return Complex64{0, uniform(random, -20, 20)};
     }},
    {"hyperbolic part large",
     [](Random& random) {
       return Complex64{uniform(random, 256, 712), uniform(random, -20, 20)};
     }},
    {"hyperbolic part from 354 to 373",
     [](Random& random) {
       return Complex64{uniform(random, -373, -354), uniform(random, -20, 20)};
     }},
    {"trigonometric part large",
     [](Random& random) {
       return Complex64{uniform(random, -20, 20), signedPower(random, 8, 27)};
     }},
};

template <Function function>
constexpr Subject subject(const char* name, Kernel* sse3, Kernel* avx, Kernel* fused) {
  return {name, element<function>, takeShares<function>, isTurned(function), sse3, avx, fused, distributions};
}
constexpr Subject subjects[] = {
    subject<Function::sinh>("sinh", complexSinhSse3, complexSinhAvxPlain, complexSinhAvxFma),
    subject<Function::cosh>("cosh", complexCoshSse3, complexCoshAvxPlain, complexCoshAvxFma),
    subject<Function::sin>("sin", complexSinSse3, complexSinAvxPlain, complexSinAvxFma),
    subject<Function::cos>("cos", complexCosSse3, complexCosAvxPlain, complexCosAvxFma),
    subject<Function::tanh>("tanh", complexTanhSse3, complexTanhAvxPlain, complexTanhAvxFma),
    subject<Function::tan>("tan", complexTanSse3, complexTanAvxPlain, complexTanAvxFma),
};

}  // namespace

std::span<const Subject> exponentialSubjects() { return subjects; }

}  // namespace certainty
}  // namespace qorvane
