// qorvane-certainty's share of the powers, the exponent of each base being made of its bits, and of the exponential.
#include "complex/certified/pow_strip.h"
#include "tools/certainty.h"

namespace qorvane {
nuvStatus complexPowSse3(const Complex64*, const Complex64*, Complex64*, int32_t);
nuvStatus complexPowAvxPlain(const Complex64*, const Complex64*, Complex64*, int32_t);
nuvStatus complexPowAvxFma(const Complex64*, const Complex64*, Complex64*, int32_t);

nuvStatus complexExpSse3(const Complex64*, Complex64*, int32_t);
nuvStatus complexExpAvx(const Complex64*, Complex64*, int32_t);

namespace certainty {
namespace {

// 53 bits from a counter, scrambled.
double fraction(uint64_t& counter) {
  uint64_t bits = counter += 0x9e3779b97f4a7c15;
  bits = (bits ^ bits >> 30) * 0xbf58476d1ce4e5b9;
  bits = (bits ^ bits >> 27) * 0x94d049bb133111eb;
  return static_cast<double>((bits ^ bits >> 31) >> 11) * 0x1p-53;
}
Complex64 exponentOf(Complex64 z) {
  uint64_t counter = toBits(z.re) ^ toBits(z.im) << 7;
  const bool isPositive = z.im == 0 && z.re > 0;  // these have real powers
  const double kind = isPositive ? 0.7 + 0.3 * fraction(counter) : fraction(counter), size = kind < 0.2 ? 50 : 2;
  const Complex64 b = {(2 * fraction(counter) - 1) * size, (2 * fraction(counter) - 1) * size};
  if (kind > 0.85) return {std::round(4 * b.re), 0};
  return {b.re, kind > 0.7 ? 0 : b.im};
}
Complex64 power(Complex64 z) { return complexPow(z, exponentOf(z)); }
template <nuvStatus kernel(const Complex64*, const Complex64*, Complex64*, int32_t)>
nuvStatus powers(const Complex64* z, Complex64* results, int32_t count) {
  for (int32_t i = 0; i < count; ++i) results[i] = exponentOf(z[i]);
  return kernel(z, results, results, count);
}

// The logarithm and the exponential are certain, each with that share of its bounds; the product between
// them is the routine's if the logarithm is.
void takeShares(Complex64 z, Complex64 expected, Counts& counts) {
  const auto parts = bySize(z.re, z.im);
  const Complex64 b = exponentOf(z);
  for (int i = 0; i < shareCount; ++i) {
    const double share = shares[i];
    auto log = certainLog<Base::e>(parts, share);
    if (toBits(log.isNearCircle) != 0) log.log = certainLogNearCircle<Base::e>(parts, share);
    const auto angle = certainAngle<Base::e>(z.re, z.im, share);
    const double re = log.log.value, im = std::copysign(angle.value, z.im);
    const double x = b.re * re - b.im * im, y = b.re * im + b.im * re;
    const auto isServed = [](double part) { return std::abs(part) >= 0x1p-80 && std::abs(part) < 512; };
    if (!isServed(x) || (!isServed(y) && y != 0)) return;
    const auto e = exponentialPair(x);
    const auto t = trigonometricPairs(std::abs(y), nearestToSteps);
    const double bound = std::abs(x) >= 0x1p-11 ? boundFromEleventh : boundOfExponential;
    auto cos = certainProduct(e, t.cos, 0.0, bound * share);
    const auto sin = certainProduct(e, t.sin, 0.0, bound * share);
    if (y == 0) {
      const auto sum = fastSum(e.head, e.rest);
      cos = certainSum(sum, sum.high * (boundOfReal * share));
    }
    const bool isSure = toBits(log.log.isCertain) != 0 && toBits(angle.isCertain) != 0 && toBits(cos.isCertain) != 0 &&
                        toBits(sin.isCertain) != 0 && (toBits(t.isUnsure) == 0 || y == 0);
    counts.add(i, isSure, cos.value == std::abs(expected.re) && sin.value == std::abs(expected.im));
  }
}

constexpr Distribution distributions[] = {
    {"parts within 20", [](Random& r) { return within(r, 20); }},
    {"parts within 1.5", [](Random& r) { return within(r, 1.5); }},
    {"parts of any size", [](Random& r) { return ofAnySize(r, 100); }},
    {"next to the circle", [](Random& r) { return onCircle(r, 1 + signedPower(r, -60, -2)); }},
    {"real axis",
     [](Random& r) {
       return Complex64{uniform(r, -20, 20), 0};
     }},
    {"positive numbers",
     [](Random& r) {
       return Complex64{uniform(r, 0, 20), 0};
     }},
    {"imaginary axis",
     [](Random& r) {
       return Complex64{0, uniform(r, -20, 20)};
     }},
};

// What the kernel's vectors leave out, and all else one by one.
template <Kernel kernel>
nuvStatus exponentials(const Complex64* z, Complex64* results, int32_t count) {
  kernel(z, results, count);
  for (int32_t i = 0; i < count; ++i)
    if (std::abs(z[i].re) < 512 && std::abs(z[i].im) < 512) results[i] = complexExp(z[i]);
  return nuvStatusOk;
}
void takeSharesOfExp(Complex64 z, Complex64 expected, Counts& counts) {
  if (!servesExponential(z.re, z.im)) return;
  const auto t = trigonometricPairs<true>(std::abs(z.im));
  const double x = withinLanes(z).re;
  const auto e = exponentialPair(x, x < -512 ? 0x1p512 : 1);
  for (int i = 0; i < shareCount; ++i) {
    const auto cos = certainProduct(e, t.cos, 0.0, boundOfExponential * shares[i]);
    const auto sin = certainProduct(e, t.sin, 0.0, boundOfExponential * shares[i]);
    Complex64 result = {cos.value, sin.value};
    const bool isSure =
        leaveLanes(result, z.re) && toBits(cos.isCertain) != 0 && toBits(sin.isCertain) != 0 && toBits(t.isUnsure) == 0;
    counts.add(i, isSure, result.re == std::abs(expected.re) && result.im == std::abs(expected.im));
  }
}
constexpr Distribution exponents[] = {
    {"parts within 20", [](Random& r) { return within(r, 20); }},
    {"parts of any size",
     [](Random& r) {
       return Complex64{signedPower(r, -60, 9), signedPower(r, -60, 27)};
     }},
    {"angle large",
     [](Random& r) {
       return Complex64{uniform(r, -20, 20), signedPower(r, 8, 27)};
     }},
    {"real part large",
     [](Random& r) {
       return Complex64{std::copysign(uniform(r, 512, 720), uniform(r, -1, 1)), uniform(r, -20, 20)};
     }},
    {"imaginary axis",
     [](Random& r) {
       return Complex64{0, uniform(r, -20, 20)};
     }},
};

constexpr Subject subjects[] = {
    {"exp", complexExpExtended, takeSharesOfExp, false, exponentials<complexExpSse3>, exponentials<complexExpAvx>,
     nullptr, exponents},
    {"pow", power, takeShares, false, powers<complexPowSse3>, powers<complexPowAvxPlain>, powers<complexPowAvxFma>,
     distributions},
};

}  // namespace

std::span<const Subject> powSubjects() { return subjects; }

}  // namespace certainty
}  // namespace qorvane
