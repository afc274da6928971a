// The error functions: known values on both sides of every change of method, the special values and
// their flags, and what their tables promise.
#include <cfenv>
#include <cmath>
#include <vector>

#include "frame/kernel_frame.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr double infinity = HUGE_VAL;

// The result that is rounded correctly, and what may be off.
struct Row {
  uint64_t x, y;
  uint64_t units = 1;
  nuvStatus status = nuvStatusOk;
};

// Every row alone, and all of them in stretches in which each is beside every path of the function,
// with the sign that the function's symmetry gives: both must have the same bits.
template <class Rows>
void expectRows(Unary f, const Rows& rows, const char* name) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    std::vector<double> x, y;
    for (const Row& row : rows) x.push_back(number(row.x));
    y.resize(x.size());
    f(x.data(), y.data(), static_cast<int32_t>(x.size()));
    for (size_t i = 0; i < x.size(); ++i) {
      const Row& row = rows[i];
      const Element e = evaluate(f, x[i]);
      const uint64_t distance = bits(e.value) > row.y ? bits(e.value) - row.y : row.y - bits(e.value);
      EXPECT_TRUE(distance <= row.units && e.status == row.status)
          << name << ", level " << level << ", x = " << x[i] << ": " << e << " instead of " << number(row.y);
      EXPECT_EQ(bits(y[i]), bits(e.value)) << name << ", level " << level << ", x = " << x[i] << " among others";
    }
  }
}

TEST(Erf, KnownValues) {
  const std::vector<Row> rows = {
      {0x0000000000000000, 0x0000000000000000, 0}, {0x8000000000000000, 0x8000000000000000, 0},
      {0x0000000000000001, 0x0000000000000001, 0}, {0x8000000000000001, 0x8000000000000001, 0},
      {0x000000ffffffffff, 0x00000120dd750429, 0}, {0x0000010000000000, 0x00000120dd75042a, 0},
      {0x000e2dfc48da77b4, 0x000fffffffffffff, 0}, {0x000e2dfc48da77b5, 0x0010000000000000, 0},
      {0x8010000000000000, 0x80120dd750429b6d, 0}, {0x007fffffffffffff, 0x00820dd750429b6d, 0},
      {0x0080000000000000, 0x00820dd750429b6d, 0}, {0x1fefffffffffffff, 0x1ff20dd750429b6d},
      {0x9ff0000000000000, 0x9ff20dd750429b6d, 0}, {0x3e50000000000000, 0x3e520dd750429b6d, 0},
      {0x3fbfffffffffffff, 0x3fc1f5e1a35c3b89, 0}, {0x3fc0000000000000, 0x3fc1f5e1a35c3b89, 0},
      {0xbfc2000000000000, 0xbfc42d7fc2f64959, 0}, {0x3fe0000000000000, 0x3fe0a7ef5c18edd2, 0},
      {0xbff0000000000000, 0xbfeaf767a741088b, 0}, {0x3fffffffffffffff, 0x3fefd9ae142795e3, 0},
      {0x4000000000000000, 0x3fefd9ae142795e3, 0}, {0x4010d982a5b13d79, 0x3feffffffe9f724f},
      {0x4015ffffffffffff, 0x3fefffffffffffbe, 0}, {0x4016000000000000, 0x3fefffffffffffbe, 0},
      {0x4017afb48dc96626, 0x3fefffffffffffff, 0}, {0x4017afb48dc96627, 0x3ff0000000000000},
      {0x4018000000000000, 0x3ff0000000000000, 0}, {0xc018000000000000, 0xbff0000000000000, 0},
      {0x7fefffffffffffff, 0x3ff0000000000000, 0}, {0x7ff0000000000000, 0x3ff0000000000000, 0},
      {0xfff0000000000000, 0xbff0000000000000, 0},
  };
  expectRows(nuvsErf_64f_A53, rows, "erf");
}

TEST(Erfc, KnownValues) {
  constexpr nuvStatus under = nuvStatusUnderflow;
  const std::vector<Row> rows = {
      {0x0000000000000000, 0x3ff0000000000000, 0},
      {0x8000000000000000, 0x3ff0000000000000, 0},
      {0x0000000000000001, 0x3ff0000000000000, 0},
      {0xbc7fffffffffffff, 0x3ff0000000000000, 0},
      {0x3c80000000000000, 0x3ff0000000000000, 0},
      {0x3fcfffffffffffff, 0x3fe728558ee694fc, 0},
      {0x3fd0000000000000, 0x3fe728558ee694fc, 0},
      {0xbfd0000000000000, 0x3ff46bd5388cb582, 0},
      {0x3fd4000000000000, 0x3fe512b05f5006e1, 0},
      {0x3ff0000000000000, 0x3fc4226162fbddd5, 0},
      {0xbff0000000000000, 0x3ffd7bb3d3a08445, 0},
      {0x4000000000000000, 0x3f7328f5ec350e67, 0},
      {0x4010000000000000, 0x3e508ddd13bd35e7, 0},
      {0xc017b00000000000, 0x4000000000000000, 0},
      {0xc018000000000000, 0x4000000000000000, 0},
      {0x4037ffffffffffff, 0x0ba82de1daeba0d1, 0},
      {0x4038000000000000, 0x0ba82de1daeb9c47, 0},
      {0x403a8b11ffffffff, 0x0010034678682f9e, 0},
      {0x403a8b1200000000, 0x0010034678682c4b, 0},
      {0x403b000000000000, 0x0000000000019e0f, 0},
      {0x403b39dbffffffff, 0x0000000000000001, 0},
      {0x403b39dc00000000, 0x0000000000000001, 0},
      // The last result above 0 by rounding, and the first one that fails; where the high word
      // changes, 0.
      {0x403b39dc41e48bfc, 1, 0, 0},
      {0x403b39dc41e48bfd, 1, 1, under},
      {0x403b39dcffffffff, 0, 1, under},
      {0x403b39dd00000000, 0, 0, under},
      {0x7fefffffffffffff, 0, 0, under},
      {0x7ff0000000000000, 0, 0, 0},
      {0xc03a8b1200000000, 0x4000000000000000, 0, 0},
      {0xc03b39dc00000000, 0x4000000000000000, 0, 0},
      {0xffefffffffffffff, 0x4000000000000000, 0, 0},
      {0xfff0000000000000, 0x4000000000000000, 0, 0},
  };
  expectRows(nuvsErfc_64f_A53, rows, "erfc");
}

// One, three or four elements, short arrays and stretches find rows and flagged elements in ways of
// their own: the numbers on both sides of every row's lower end, and the last high words.
TEST(Erfc, EveryRowInEveryLoop) {
  std::vector<uint32_t> words = {0x00000000, 0x3fcb0000, 0x403a8b12, 0x403a8b13, 0x403b39dc, 0x7ff00000};
  for (uint32_t word = 0x3fcc0000; word <= 0x403c0000; word += 0x00040000) words.push_back(word);
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (uint32_t word : words)
      for (uint64_t x : {(uint64_t{word} << 32) - 1, uint64_t{word} << 32, uint64_t{word} << 32 | 1,
                         uint64_t{word} << 32 | 0xffffffff})
        for (double value : {number(x & ~(uint64_t{1} << 63)), number(x | uint64_t{1} << 63)}) {
          const Element alone = evaluate(nuvsErfc_64f_A53, value);
          for (size_t n : {3u, 4u, 6u, 45u})
            for (size_t place : {size_t{0}, size_t{1}, size_t{2}, n - 1}) {
              std::vector<double> xs(n, 0.75), ys(n);
              xs[place] = value;
              EXPECT_EQ(nuvsErfc_64f_A53(xs.data(), ys.data(), static_cast<int32_t>(n)), alone.status) << value;
              EXPECT_EQ(bits(ys[place]), bits(alone.value))
                  << "level " << level << ", x = " << value << ", " << place << " of " << n;
            }
        }
    // Ordinary arithmetic would round this one up, correctly.
    EXPECT_EQ(bits(evaluate(nuvsErfc_64f_A53, number(0x403a8b12ffffffff)).value), 0x000ffff4263df4e0u);
  }
}

TEST(ErfInv, KnownValues) {
  const std::vector<Row> rows = {
      {0x0000000000000000, 0x0000000000000000, 0},
      {0x8000000000000000, 0x8000000000000000, 0},
      {0x0000000000000001, 0x0000000000000001, 0},
      {0x8000000000000003, 0x8000000000000003, 0},
      {0x000fffffffffffff, 0x000e2dfc48da77b4, 0},
      {0x00120dd750429b6d, 0x0010000000000000, 0},
      {0x80120dd750429b6c, 0x800fffffffffffff, 0},
      {0x0010000000000000, 0x000e2dfc48da77b5, 0},
      {0x3c00000000000000, 0x3bfc5bf891b4ef6b, 0},
      {0x3ca00000ffffffff, 0x3c9c5bfa57747884, 0},
      {0x3ca0000100000000, 0x3c9c5bfa57747886, 0},
      {0xbca0000100000000, 0xbc9c5bfa57747886, 0},
      {0x3fb0000000000000, 0x3fac636951597e17, 0},
      {0x3fbfffffffffffff, 0x3fbc79ed33d00aaf, 0},
      {0x3fc0000000000000, 0x3fbc79ed33d00ab0, 0},
      {0xbfd0000000000000, 0xbfccd70681d5ff70, 0},
      {0x3fe0000000000000, 0x3fde861fbb24c00a, 0},
      {0x3fe8000000000000, 0x3fea07890f6b2ba1, 0},
      {0x3feccccccccccccd, 0x3ff29c0146770651, 0},
      {0x3fefffffffffff00, 0x401582d58eaccf1f, 0},
      {0xbfefffffffffffff, 0xc017744f8f74e94a, 0},
      {0x3fefffffffffffff, 0x4017744f8f74e94a, 0},
      {0x3ff0000000000000, 0x7ff0000000000000, 0, nuvStatusPole},
      {0xbff0000000000000, 0xfff0000000000000, 0, nuvStatusPole},
  };
  expectRows(nuvsErfInv_64f_A53, rows, "erfInv");
}

TEST(ErfInv, OutsideItsDomainGivesTheDefaultNaN) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (uint64_t x : {0x3ff0000000000001u, 0xbff0000000000001u, 0x4000000000000000u, 0x7fefffffffffffffu,
                       0x7ff0000000000000u, 0xfff0000000000000u}) {
      const Element e = evaluate(nuvsErfInv_64f_A53, number(x));
      EXPECT_TRUE(bits(e.value) == 0xfff8000000000000 && e.status == nuvStatusOutOfDomain)
          << "level " << level << ", x = " << number(x) << ": " << e;
    }
  }
}

// A NaN comes back as itself, quieted; erfc looks at high words alone, and takes one whose
// significand is clear in the high word for an infinity.
TEST(ErrorFunctions, NaNs) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (uint64_t nan : {0x7ff8000000000123u, 0xfff8000000000456u, 0x7ff4000000000001u, 0xfff0000100000000u}) {
      for (Unary f : {nuvsErf_64f_A53, nuvsErfInv_64f_A53, nuvsErfc_64f_A53}) {
        const Element e = evaluate(f, number(nan));
        EXPECT_EQ(bits(e.value), nan | 0x0008000000000000) << "level " << level;
        EXPECT_EQ(e.status, nuvStatusOk);
      }
    }
    EXPECT_EQ(evaluate(nuvsErfc_64f_A53, number(0x7ff00000ffffffff)), (Element{0.0, 0})) << "level " << level;
    EXPECT_EQ(evaluate(nuvsErfc_64f_A53, number(0xfff0000000000001)), (Element{2.0, 0})) << "level " << level;
    EXPECT_EQ(bits(evaluate(nuvsErf_64f_A53, number(0x7ff00000ffffffff)).value), 0x7ff80000ffffffff);
    EXPECT_EQ(bits(evaluate(nuvsErfInv_64f_A53, number(0xfff0000000000001)).value), 0xfff8000000000001);
  }
}

// What isn't ordinary leaves no flag but that of its status: quiet NaNs, infinities and zeros none
// at all but inexact, whatever stands beside them.
TEST(ErrorFunctions, Flags) {
  struct FlagRow {
    Unary f;
    double x;
    int flags;  // but inexact
  };
  const FlagRow rows[] = {
      {nuvsErf_64f_A53, std::nan(""), 0},
      {nuvsErf_64f_A53, infinity, 0},
      {nuvsErf_64f_A53, -0.0, 0},
      {nuvsErf_64f_A53, 1e300, 0},
      {nuvsErfInv_64f_A53, std::nan(""), 0},
      {nuvsErfInv_64f_A53, -0.0, 0},
      {nuvsErfInv_64f_A53, 1e-300, 0},
      {nuvsErfInv_64f_A53, 1, FE_DIVBYZERO},
      {nuvsErfInv_64f_A53, 1.5, FE_INVALID},
      {nuvsErfInv_64f_A53, infinity, FE_INVALID},
      {nuvsErfc_64f_A53, std::nan(""), 0},
      {nuvsErfc_64f_A53, infinity, 0},
      {nuvsErfc_64f_A53, -infinity, 0},
      {nuvsErfc_64f_A53, 0, 0},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const FlagRow& row : rows)
      for (int n : {1, 3, 8, 40}) {
        std::vector<double> x(static_cast<size_t>(n), 0.5), y(x);
        x[x.size() / 2] = row.x;
        std::feclearexcept(FE_ALL_EXCEPT);
        row.f(x.data(), y.data(), n);
        EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), row.flags)
            << "row " << &row - rows << ", level " << level << ", n = " << n;
      }
  }
}

// erf(erfinv(x)) = x to what the two slopes leave of the last bit: a walk through all the rows of
// the inverse, four places in each.
TEST(ErfInv, InvertsErfInAllItsRows) {
  for (int level : {supportedLevels().front(), supportedLevels().back()}) {
    AtLevel at(level);
    for (int exponent = -1; exponent >= -53; --exponent)
      for (int place = 0; place < 16; ++place) {
        const double w = std::ldexp(1 + place / 16.0 + 1 / 64.0, exponent), x = 1 - w;
        if (x >= 1) continue;
        const double y = evaluate(nuvsErfInv_64f_A53, x).value;
        // In the tail erfc(y) / erfc'(y) is about 1 / (2 y): an error of y shows 2 y^2 times
        // enlarged.
        const double back = evaluate(nuvsErfc_64f_A53, y).value, exact = 1 - x;
        EXPECT_NEAR(back, exact, (1 + 2 * y * y) * 0x1p-52 * exact) << "level " << level << ", x = 1 - " << w;
      }
  }
}

}  // namespace
}  // namespace qorvane::test
