// The kernels of level 5 that have a form with fused multiply-adds beside the plain one: both give
// the same, and the one that fits is chosen.
#include <cfenv>
#include <cmath>
#include <random>

#include "frame/fused_choice.h"
#include "tests/test_support.h"

namespace qorvane {
shapes::realUnary tanAvxX87, tanAvxFma, atanhAvxPlain, atanhAvxFma;
}
extern "C" qorvane::shapes::realUnary *qorvaneChooseTan(), *qorvaneChooseAtanh();

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

TEST(FusedForms, AreChosenWhereTheyFit) {
  for (const Forms& forms : all) EXPECT_EQ(forms.choose(), processorFuses() ? forms.fusing : forms.plain) << forms.name;

  constexpr uint32_t fma = 1u << 12, osxsave = 1u << 27, avx = 1u << 28, avx2 = 1u << 5;
  EXPECT_TRUE(fusedFormFits(fma | osxsave | avx, 6, avx2));
  EXPECT_TRUE(fusedFormFits(~0u, 0xe7, ~0u));
  for (const uint32_t missing : {fma, osxsave, avx}) EXPECT_FALSE(fusedFormFits(~missing, 7, ~0u)) << missing;
  for (const uint32_t saved : {0u, 3u, 5u}) EXPECT_FALSE(fusedFormFits(~0u, saved, ~0u)) << saved;
  EXPECT_FALSE(fusedFormFits(~0u, 7, ~avx2));
}

}  // namespace
}  // namespace qorvane::test
