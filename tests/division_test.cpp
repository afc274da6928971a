// Inv and Div against the processor's division in every mode, and what they call a pole.
#include <cfenv>
#include <cmath>
#include <random>

#include "frame/kernel_frame.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr uint32_t ordinary = 0x1f80, denormalsAreZero = 0x40, flushToZero = 0x8000;
constexpr double infinity = HUGE_VAL, subnormal = 0x1p-1070, largest = 0x1.fffffffffffffp1023;
const double quietNaN = number(0x7ff8000000000001);

TEST(Division, GivesTheProcessorsQuotientsInTheModeInForce) {
  std::mt19937_64 random(3);
  std::vector<double> a = {1.0, 0.0, -0.0, infinity, quietNaN, subnormal, -3.0}, b;
  while (a.size() < 500) a.push_back(number(random()));
  for (double x : a) b.push_back(random() % 3 ? number(random()) : random() % 4 ? x * (1 + 0x1p-20) : 0.0);
  const std::vector<double> ones(a.size(), 1.0);
  std::vector<double> y(a.size()), quotient(a.size());
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (uint32_t mode : {0u, 0x2000u, 0x4000u, 0x6000u, flushToZero, denormalsAreZero})
      for (const auto* numerators : {std::as_const(a).data(), ones.data()}) {
        writeMxcsr(ordinary | (level == 5 ? mode : mode & denormalsAreZero));
        for (size_t i = 0; i < y.size(); ++i) quotient[i] = opaque(numerators[i]) / opaque(b[i]);
        writeMxcsr(ordinary | mode);
        numerators == ones.data() ? nuvsInv_64f_A53(b.data(), y.data(), 500)
                                  : nuvsDiv_64f_A53(a.data(), b.data(), y.data(), 500);
        writeMxcsr(ordinary);
        for (size_t i = 0; i < y.size(); ++i)
          ASSERT_EQ(bits(y[i]), bits(quotient[i]))
              << "level " << level << std::hex << ", mode " << mode << ", " << numerators[i] << " / " << b[i];
      }
  }
}

// Alone an element is a tail; in copies it fills blocks, too.
TEST(Division, StatusesAndFlags) {
  constexpr nuvStatus pole = nuvStatusPole;
  constexpr uint64_t inf = 0x7ff0000000000000, minusInf = 0xfff0000000000000, defaultNaN = 0xfff8000000000000;
  const struct {
    double a, b;
    uint32_t mode;
    uint64_t result;
    nuvStatus block, tail, level5;  // block, tail: of levels 1 to 4
    int flags, flags5;
  } rows[] = {
      {1.0, 0.0, 0, inf, pole, pole, pole, FE_DIVBYZERO, FE_DIVBYZERO},
      {1.0, -0.0, 0, minusInf, pole, pole, pole, FE_DIVBYZERO, FE_DIVBYZERO},
      {1.0, subnormal, 0, inf, 0, 0, 0, FE_OVERFLOW | FE_INEXACT, FE_OVERFLOW | FE_INEXACT},
      {1.0, infinity, 0, 0, 0, 0, 0, 0, 0},
      {1.0, quietNaN, 0, bits(quietNaN), 0, 0, 0, 0, 0},
      {1.0, subnormal, denormalsAreZero, inf, 0, pole, pole, FE_DIVBYZERO, FE_DIVBYZERO},
      {0.0, 0.0, 0, defaultNaN, pole, pole, pole, FE_INVALID | FE_DIVBYZERO, FE_INVALID | FE_DIVBYZERO},
      {largest, -0.0, 0, minusInf, pole, pole, pole, FE_DIVBYZERO, FE_DIVBYZERO},
      {-infinity, 0.0, 0, minusInf, 0, 0, pole, 0, FE_DIVBYZERO},
      {quietNaN, 0.0, 0, bits(quietNaN), 0, 0, pole, 0, FE_DIVBYZERO},
      {infinity, -infinity, 0, defaultNaN, 0, 0, 0, FE_INVALID, FE_INVALID},
      {0.0, quietNaN, 0, bits(quietNaN), 0, 0, 0, 0, 0},
      {0x1p-1022, largest, 0, 0, 0, 0, 0, FE_UNDERFLOW | FE_INEXACT, FE_UNDERFLOW | FE_INEXACT},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const auto& row : rows)
      for (bool inverse : {false, true})
        for (int len : {1, 22}) {
          if (inverse && row.a != 1.0) continue;
          const std::vector<double> a(22, row.a), b(22, row.b);
          std::vector<double> y(22);
          std::feclearexcept(FE_ALL_EXCEPT);
          writeMxcsr(ordinary | row.mode);
          const nuvStatus status =
              inverse ? nuvsInv_64f_A53(b.data(), y.data(), len) : nuvsDiv_64f_A53(a.data(), b.data(), y.data(), len);
          const int raised = std::fetestexcept(FE_ALL_EXCEPT);
          writeMxcsr(ordinary);
          // Inv looks at the bits in its tail, too.
          const nuvStatus expected = level == 5 ? row.level5 : len == 1 && !inverse ? row.tail : row.block;
          const auto say = [&] {
            return testing::Message() << (inverse ? "Inv" : "Div") << ", level " << level << ", " << len << " times "
                                      << row.a << " / " << row.b;
          };
          EXPECT_EQ(status, expected) << say();
          EXPECT_EQ(raised, level == 5 ? row.flags5 : row.flags) << say();
          for (int i = 0; i < len; ++i) EXPECT_EQ(bits(y[static_cast<size_t>(i)]), row.result) << say();
        }
  }
}

// At levels 1 to 4 pairs are tested when their quotients are stored already; quotients are right
// all the same.
TEST(Division, StatusesInPlace) {
  constexpr nuvStatus pole = nuvStatusPole;
  enum Over { overDivisors, overNumerators, overBoth };
  const struct {
    double a, b;  // a = 1 also stands for Inv
    Over over;
    nuvStatus pair, tail, level5;
  } rows[] = {
      {1.0, 0.0, overDivisors, 0, pole, pole},   {1.0, -infinity, overDivisors, pole, 0, 0},
      {0.0, 3.0, overDivisors, pole, 0, 0},      {0.0, 0.0, overDivisors, 0, pole, pole},
      {quietNaN, 0.0, overDivisors, 0, 0, pole}, {0x1p-1000, 0x1p1000, overDivisors, pole, 0, 0},
      {5.0, 0.0, overNumerators, 0, pole, pole}, {0.0, 5.0, overNumerators, 0, 0, 0},
      {0.0, 0.0, overBoth, 0, pole, pole},       {infinity, infinity, overBoth, 0, 0, 0},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const auto& row : rows)
      for (size_t position : {0u, 1u, 16u, 17u, 18u})
        for (bool inverse : {false, true}) {
          if (inverse && row.a != 1.0) continue;
          std::vector<double> a(19, 1.0), b(19, 1.0);
          a[position] = row.a;
          b[position] = row.b;
          const double* numerators = row.over == overBoth ? b.data() : a.data();
          double* dst = row.over == overNumerators ? a.data() : b.data();
          const nuvStatus status =
              inverse ? nuvsInv_64f_A53(dst, dst, 19) : nuvsDiv_64f_A53(numerators, b.data(), dst, 19);
          EXPECT_EQ(status, level == 5       ? row.level5
                            : position == 18 ? row.tail
                                             : row.pair)
              << (inverse ? "Inv" : "Div") << ", level " << level << ", " << row.a << " / " << row.b << " at "
              << position;
          EXPECT_TRUE(Element({dst[position], 0}) == Element({row.a / row.b, 0}))
              << "level " << level << ", " << row.a << " / " << row.b;
        }
  }
}

}  // namespace
}  // namespace qorvane::test
