// What the tests of the complex functions in lanes share: a subject's results against those of its
// extended routine, at every level.
#pragma once
#include <immintrin.h>

#include <cfenv>
#include <cmath>
#include <cstring>
#include <random>

#include "complex/certified/elements.h"
#include "tests/test_support.h"

namespace qorvane::test {

using ComplexUnary = nuvStatus (*)(const Complex64*, Complex64*, int32_t);
using Random = std::mt19937_64;

struct Certified {
  const char* name;
  ComplexUnary served;
  Complex64 (*element)(Complex64);
};

inline double uniform(Random& random, double low, double high) {
  return low + (high - low) * static_cast<double>(random() >> 11) * 0x1p-53;
}
inline double signedPower(Random& random, double from, double to) {
  const double sign = (random() & 1) != 0 ? 1.0 : -1.0;  // drawn first, by every compiler
  return std::copysign(std::exp2(uniform(random, from, to)), sign);
}

inline bool same(double a, double b) { return bits(a) == bits(b) || (a != a && b != b); }
inline bool same(Complex64 a, Complex64 b) { return same(a.re, b.re) && same(a.im, b.im); }

inline void expectElements(const Certified& subject, const std::vector<Complex64>& z) {
  std::vector<Complex64> expected(z.size());
  for (size_t i = 0; i < z.size(); ++i) expected[i] = subject.element(z[i]);
  for (int level : supportedLevels()) {
    AtLevel at(level);
    std::vector<Complex64> results = z;
    ASSERT_EQ(subject.served(results.data(), results.data(), static_cast<int32_t>(z.size())), nuvStatusOk);
    int shown = 0;
    for (size_t i = 0; i < z.size() && shown < 5; ++i) {
      if (same(results[i], expected[i])) continue;
      ++shown;
      ADD_FAILURE() << std::hexfloat << subject.name << "(" << z[i].re << ", " << z[i].im << ") at level " << level
                    << ", place " << i << " of " << z.size() << ": " << results[i].re << ", " << results[i].im
                    << ", extended " << expected[i].re << ", " << expected[i].im;
    }
  }
}

// Arrays of 1 to 75 elements, none to most of them with parts that `special` draws.
inline void expectEveryLength(const Certified& subject, double size, double (*special)(Random&)) {
  Random random(3);
  for (size_t round = 0; round < 300; ++round) {
    std::vector<Complex64> z(1 + round % 75);
    const uint64_t rare = random() % 4;
    for (Complex64& element : z) {
      element = {uniform(random, -size, size), uniform(random, -size, size)};
      if (random() % 4 < rare) element.re = special(random);
      if (random() % 4 < rare) element.im = special(random);
    }
    expectElements(subject, z);
  }
}

// The caller's rounding holds where it isn't to nearest.
inline void expectCallersRounding(const Certified& subject) {
  Random random(4);
  std::vector<Complex64> z(100), results(100), expected(100);
  for (Complex64& element : z) element = {uniform(random, -20, 20), uniform(random, -20, 20)};
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const uint32_t rounding : {0x2000u, 0x4000u, 0x6000u, 0x8040u}) {
      const uint32_t saved = _mm_getcsr();
      _mm_setcsr(saved | rounding);
      subject.served(z.data(), results.data(), 100);
      for (size_t i = 0; i < 100; ++i) expected[i] = subject.element(z[i]);
      _mm_setcsr(saved);
      EXPECT_EQ(std::memcmp(results.data(), expected.data(), sizeof results[0] * 100), 0)
          << subject.name << " at level " << level << ", mode " << std::hex << rounding;
    }
  }
}

inline void expectFlags(const Certified& subject, const std::vector<Complex64>& z, int flags) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    std::vector<Complex64> results(z.size());
    std::feclearexcept(FE_ALL_EXCEPT);
    subject.served(z.data(), results.data(), static_cast<int32_t>(z.size()));
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), flags) << subject.name << " at level " << level;
  }
}

}  // namespace qorvane::test
