// The kernels of level 5 that have a form with fused multiply-adds beside the plain one: both give
// the same, and the one that fits is chosen.
#include <cfenv>
#include <cmath>
#include <random>

#include "frame/fused_choice.h"
#include "tests/test_support.h"

namespace qorvane {
shapes::realUnary tanAvxX87, tanAvxFma, atanhAvxPlain, atanhAvxFma;
shapes::complexUnary complexSinhAvxPlain, complexSinhAvxFma, complexCoshAvxPlain, complexCoshAvxFma;
shapes::complexUnary complexTanhAvxPlain, complexTanhAvxFma, complexSinAvxPlain, complexSinAvxFma;
shapes::complexUnary complexCosAvxPlain, complexCosAvxFma, complexTanAvxPlain, complexTanAvxFma;
shapes::complexUnary complexLog10AvxPlain, complexLog10AvxFma;
shapes::complexBinary complexPowAvxPlain, complexPowAvxFma;
shapes::complexScalar complexPowxAvxPlain, complexPowxAvxFma;
}  // namespace qorvane
extern "C" {
qorvane::shapes::realUnary *qorvaneChooseTan(), *qorvaneChooseAtanh();
qorvane::shapes::complexUnary *qorvaneChooseComplexSinh(), *qorvaneChooseComplexCosh(), *qorvaneChooseComplexTanh();
qorvane::shapes::complexUnary *qorvaneChooseComplexSin(), *qorvaneChooseComplexCos(), *qorvaneChooseComplexTan();
qorvane::shapes::complexUnary* qorvaneChooseComplexLog10();
qorvane::shapes::complexBinary* qorvaneChooseComplexPow();
qorvane::shapes::complexScalar* qorvaneChooseComplexPowx();
}

namespace qorvane::test {
namespace {

bool processorFuses() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}

// Arguments of some kinds, numbered from 0.
struct Arguments {
  std::mt19937_64 random{47};
  double unit() { return std::ldexp(static_cast<double>(random() >> 11), -53); }
  double sign() { return random() % 2 == 0 ? 1 : -1; }
  template <size_t n>
  double oneOf(const double (&values)[n]) {
    return values[random() % n];
  }

  static constexpr int tanKinds = 7;
  double ofTan(int kind) {
    const double multiple = static_cast<double>(random() % 81487);
    switch (kind) {
      case 0: return sign() * unit() * 20;
      case 1: return sign() * unit() * 127999;
      case 2: return sign() * std::exp2(unit() * 60 - 43);
      case 3: return sign() * (multiple * 1.5707963267948966 + (unit() - 0.5) * std::exp2(-50 * unit()));
      case 4: return sign() * ((multiple + 0.5) * 1.5707963267948966 + (unit() - 0.5) * std::exp2(-30 * unit()));
      case 5: return number(random() % 0x40ff400000000000);
      default:
        return random() % 40 != 0 ? sign() * unit() * 100
                                  : oneOf({0.0, -0.0, 5e-324, -1e-310, 1e-150, 0x1p-100, -0x1.fffffffffffffp-101,
                                           127999.99, -128000.0, 2e5, NAN, HUGE_VAL});
    }
  }

  static constexpr int atanhKinds = 6;
  double ofAtanh(int kind) {
    switch (kind) {
      case 0: return sign() * unit();
      case 1: return sign() * std::exp2(-10 * unit());
      case 2: return sign() * (1 - std::exp2(-53 * unit()));
      case 3: return sign() * 0x1p-8 * (1 + std::ldexp(unit() - 0.5, -static_cast<int>(random() % 53)));
      case 4: return number(random() % toBits(1.0));
      default:
        return random() % 40 != 0 ? sign() * unit()
                                  : oneOf({0.0, -0.0, 5e-324, 0x1p-200, -0x1.fffffffffffffp-201, 1.0, -1.0, 1 - 0x1p-53,
                                           1.5, -HUGE_VAL, NAN, 0x1p-9, 0x1p-10});
    }
  }
};

struct Forms {
  const char* name;
  shapes::realUnary *plain, *fusing, *(*choose)();
  double (Arguments::*draw)(int kind);
  int kinds;
};
const Forms all[] = {
    {"tan", tanAvxX87, tanAvxFma, qorvaneChooseTan, &Arguments::ofTan, Arguments::tanKinds},
    {"atanh", atanhAvxPlain, atanhAvxFma, qorvaneChooseAtanh, &Arguments::ofAtanh, Arguments::atanhKinds},
};

// The same bits, statuses and flags, of arguments of all kinds, at all lengths, in place.
TEST(FusedForms, AgreeWithThePlainOnes) {
  if (!processorFuses()) GTEST_SKIP() << "no fused multiply-adds";
  for (const Forms& forms : all) {
    Arguments arguments;
    for (int round = 0; round < 4000; ++round) {
      std::vector<double> src(round < 260 ? static_cast<size_t>(round) + 1 : 1 + arguments.random() % 600);
      for (double& x : src) x = (arguments.*forms.draw)(round % forms.kinds);
      std::vector<double> expected(src.size()), copy = src, other(src.size());
      const auto len = static_cast<int32_t>(src.size());
      std::feclearexcept(FE_ALL_EXCEPT);
      const nuvStatus status = forms.plain(src.data(), expected.data(), len);
      const int flags = std::fetestexcept(FE_ALL_EXCEPT);
      double* dst = round % 2 == 0 ? copy.data() : other.data();
      std::feclearexcept(FE_ALL_EXCEPT);
      EXPECT_EQ(forms.fusing(copy.data(), dst, len), status) << forms.name << ", round " << round;
      EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), flags) << forms.name << ", round " << round;
      for (size_t i = 0; i < src.size(); ++i)
        ASSERT_EQ(bits(dst[i]), bits(expected[i]))
            << forms.name << ", round " << round << ", element " << i << ", x = " << src[i];
    }
  }
}

// The complex functions with one argument.
struct ComplexForms {
  const char* name;
  shapes::complexUnary *plain, *fusing, *(*choose)();
};
const ComplexForms complexForms[] = {
    {"sinh", complexSinhAvxPlain, complexSinhAvxFma, qorvaneChooseComplexSinh},
    {"cosh", complexCoshAvxPlain, complexCoshAvxFma, qorvaneChooseComplexCosh},
    {"tanh", complexTanhAvxPlain, complexTanhAvxFma, qorvaneChooseComplexTanh},
    {"sin", complexSinAvxPlain, complexSinAvxFma, qorvaneChooseComplexSin},
    {"cos", complexCosAvxPlain, complexCosAvxFma, qorvaneChooseComplexCos},
    {"tan", complexTanAvxPlain, complexTanAvxFma, qorvaneChooseComplexTan},
    {"log10", complexLog10AvxPlain, complexLog10AvxFma, qorvaneChooseComplexLog10},
};

Complex64 ofComplex(Arguments& arguments, int kind) {
  const auto part = [&](double size) { return (2 * arguments.unit() - 1) * size; };
  const auto power = [&](double from, double to) {
    return arguments.sign() * std::exp2(from + (to - from) * arguments.unit());
  };
  const auto special = [&] {
    return arguments.oneOf({0.0, -0.0, 1.0, 5e-324, -1e-310, 0x1p-100, -0x1.fffffffffffffp-101, 0x1p100, 256.0, -511.0,
                            600.0, 1024.0, 1e9, NAN, HUGE_VAL, -HUGE_VAL});
  };
  switch (kind) {
    case 0: return {part(20), part(20)};
    case 1: return {power(-100, 9), power(-100, 9)};
    case 2: return {power(-30, 10), power(-30, 27)};
    case 3: {  // next to steps of the reductions
      const double x = std::round(part(300)) * 0.010830424696249145, y = std::round(part(300)) * 0.012271846303085129;
      return {x * (1 + power(-53, -20)), y * (1 + power(-53, -20))};
    }
    case 4: {  // next to the unit circle, half of them where the logarithm's last terms weigh most
      const double angle = part(3.2), r = 1 + (arguments.random() % 2 == 0 ? power(-60, -4) : power(-11, -6));
      return {r * std::cos(angle), r * std::sin(angle)};
    }
    case 5: return {part(20), arguments.sign() * 0.0};
    case 6: return {arguments.unit() * 20, 0};
    case 7: return {arguments.sign() * 0.0, part(20)};
    default: {
      Complex64 z = {part(20), part(20)};
      if (arguments.random() % 20 == 0) z.re = special();
      if (arguments.random() % 20 == 0) z.im = special();
      return z;
    }
  }
}

// Results and flags of both forms, the second time in place.
template <class Call>
void expectSame(const char* name, const std::vector<Complex64>& src, Call call) {
  std::vector<Complex64> expected = src, results = src;
  std::feclearexcept(FE_ALL_EXCEPT);
  call(false, expected);
  const int flags = std::fetestexcept(FE_ALL_EXCEPT);
  std::feclearexcept(FE_ALL_EXCEPT);
  call(true, results);
  EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), flags) << name << ", " << src.size() << " elements";
  for (size_t i = 0; i < src.size(); ++i)
    ASSERT_TRUE(bits(results[i].re) == bits(expected[i].re) && bits(results[i].im) == bits(expected[i].im))
        << std::hexfloat << name << ", element " << i << " of " << src.size() << ": " << src[i].re << ", " << src[i].im;
}
TEST(FusedForms, OfComplexFunctionsAgreeWithThePlainOnes) {
  if (!processorFuses()) GTEST_SKIP() << "no fused multiply-adds";
  Arguments arguments;
  for (int round = 0; round < 1800; ++round) {
    std::vector<Complex64> src(round < 90 ? static_cast<size_t>(round) + 1 : 1 + arguments.random() % 600);
    for (Complex64& z : src) z = ofComplex(arguments, round % 9);
    const auto len = static_cast<int32_t>(src.size());
    for (const ComplexForms& forms : complexForms)
      expectSame(forms.name, src, [&](bool isFused, std::vector<Complex64>& z) {
        (isFused ? forms.fusing : forms.plain)(z.data(), z.data(), len);
      });

    std::vector<Complex64> exponents(src.size());
    const int kind = round % 7 == 0 ? 8 : round % 7 < 3 ? 5 : 0;
    for (Complex64& b : exponents) b = ofComplex(arguments, kind), b.re /= 8, b.im /= 8;
    expectSame("pow", src, [&](bool isFused, std::vector<Complex64>& z) {
      (isFused ? complexPowAvxFma : complexPowAvxPlain)(z.data(), exponents.data(), z.data(), len);
    });
    expectSame("powx", src, [&](bool isFused, std::vector<Complex64>& z) {
      (isFused ? complexPowxAvxFma : complexPowxAvxPlain)(z.data(), exponents[0], z.data(), len);
    });
  }
}

TEST(FusedForms, AreChosenWhereTheyFit) {
  const auto expectChosen = [](const auto& forms) {
    EXPECT_EQ(forms.choose(), processorFuses() ? forms.fusing : forms.plain) << forms.name;
  };
  for (const Forms& forms : all) expectChosen(forms);
  for (const ComplexForms& forms : complexForms) expectChosen(forms);
  EXPECT_EQ(qorvaneChooseComplexPow(), processorFuses() ? complexPowAvxFma : complexPowAvxPlain);
  EXPECT_EQ(qorvaneChooseComplexPowx(), processorFuses() ? complexPowxAvxFma : complexPowxAvxPlain);

  constexpr uint32_t fma = 1u << 12, osxsave = 1u << 27, avx = 1u << 28, avx2 = 1u << 5;
  EXPECT_TRUE(fusedFormFits(fma | osxsave | avx, 6, avx2));
  EXPECT_TRUE(fusedFormFits(~0u, 0xe7, ~0u));
  for (const uint32_t missing : {fma, osxsave, avx}) EXPECT_FALSE(fusedFormFits(~missing, 7, ~0u)) << missing;
  for (const uint32_t saved : {0u, 3u, 5u}) EXPECT_FALSE(fusedFormFits(~0u, saved, ~0u)) << saved;
  EXPECT_FALSE(fusedFormFits(~0u, 7, ~avx2));
}

}  // namespace
}  // namespace qorvane::test
