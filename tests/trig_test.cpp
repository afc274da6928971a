// sin and cos: known values on both sides of every change of method, the special values, and what
// the elements of a block have in common.
#include <cfenv>
#include <cmath>
#include <random>
#include <utility>

#include "frame/kernel_frame.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr double infinity = HUGE_VAL;

// The four results as functions of one shape.
struct Output {
  const char* name;
  Unary f;
  bool isSine;
};
const Output outputs[] = {
    {"sin", nuvsSin_64f_A53, true},
    {"cos", nuvsCos_64f_A53, false},
    {"sine of SinCos",
     [](const double* x, double* y, int32_t n) {
       return nuvsSinCos_64f_A53(x, y, std::vector<double>(static_cast<size_t>(n)).data(), n);
     },
     true},
    {"cosine of SinCos",
     [](const double* x, double* y, int32_t n) {
       return nuvsSinCos_64f_A53(x, std::vector<double>(static_cast<size_t>(n)).data(), y, n);
     },
     false},
};

template <class Check>
void atEveryLevel(Check check) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Output& f : outputs) {
      SCOPED_TRACE(testing::Message() << f.name << ", level " << level);
      check(f, level);
    }
  }
}

// Alone and in a block with an argument that needs the longest reduction.
TEST(Trig, KnownValues) {
  const struct {
    double x, sine, cosine;  // correctly rounded
  } rows[] = {
      {0x1p-1074, 0x1p-1074, 1},
      {0x1.fffffffffffffp-253, 0x1.fffffffffffffp-253, 1},
      {0x1p-252, 0x1p-252, 1},
      {0x1p-20, 0x1.ffffffffffaabp-21, 0x1.ffffffffffp-1},
      {0x1.0000000000001p-20, 0x1.ffffffffffaadp-21, 0x1.ffffffffffp-1},
      {0x1.921fb54442d18p+0, 0x1p+0, 0x1.1a62633145c07p-54},
      {0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53, -0x1p+0},
      {0x1.6c6cbc45dc8dep+5, 0x1p+0, -0x1.6d61b58c99c43p-61},  // next to 29 pi/2
      {100, -0x1.03425b78c4db8p-1, 0x1.b981dbf665fdfp-1},
      {0x1p+16, 0x1.62566735b8513p-1, -0x1.719453109288bp-1},
      {0x1.0000000000001p+16, 0x1.62566735a137fp-1, -0x1.71945310a8ae2p-1},
      {0x1.5ffffffffffffp+16, -0x1.fbde6256f48cep-1, 0x1.03a487efec87fp-3},  // below 90112
      {0x1.6p+16, -0x1.fbde6256f07e5p-1, 0x1.03a487f06b7f8p-3},
      {0x1.fffffffffffffp+16, -0x1.ff8bd7b10ec3dp-1, 0x1.58ced65cc9293p-5},
      {0x1p+17, -0x1.ff8bd7b10d6bp-1, 0x1.58ced65ec8b5p-5},
      {0x1.fffffffffffffp+22, 0x1.ba9f45e03812ap-2, -0x1.cdb2c9de28f97p-1},
      {0x1p+23, 0x1.ba9f45d1ca7c5p-2, -0x1.cdb2c9e19e37fp-1},
      {0x1.b951f1572eba5p+23, -0x1p+0, -0x1.f54f5227a4e84p-60},
      {0x1.6c8a2679652e4p+28, -0x1.05af4d71d08a1p-10, -0x1.ffffef4810fadp-1},
      {0x1.fffffffffffffp+29, -0x1.3c12385cbf55dp-1, 0x1.92cb4430fba6ap-1},
      {0x1p+30, -0x1.3c12353728cafp-1, 0x1.92cb46a920144p-1},
      {0x1.fffffffffffffp+53, 0x1.c90c07d7c5802p-6,
       0x1.ffccfdb63c94p-1},  // the exponent moves on to other 25 bits of 4/pi
      {0x1p+54, 0x1.cb6f75f360b74p-1, -0x1.c3f1688d1144p-2},
      {0x1.504cac51f1eafp+131, -0x1p+0, -0x1.0cb604d34f341p-59},
      {0x1.e009c53148be1p+991, 0x1p+0, 0x1.295a3b0a64b1dp-59},
      {1e22, -0x1.b453ab76bf397p-1, 0x1.0be2cef01c8f4p-1},
      {0x1.0ff7308006e31p+380, 0x1.7954327990fd3p-5, -0x1.ff74e2d3bcd95p-1},  // the count of octants is a small number
      {0x1.6ac5b262ca1ffp+849, 0x1p+0,
       -0x1.14ae72e6ba22fp-61},  // 6381956970095103 * 2^797, the nearest to a multiple of pi/2
      {0x1.fffffffffffffp+1023, 0x1.452fc98b34e97p-8, -0x1.fffe62ecfab75p-1},
  };
  atEveryLevel([&](const Output& f, int) {
    for (const auto& row : rows)
      for (double sign : {1.0, -1.0}) {
        const double expected = f.isSine ? sign * row.sine : row.cosine;
        const double x[8] = {sign * row.x, 1, 2, 3, 4, 5, 6, 0x1.fffffffffffffp+1023};
        double together[8];
        f.f(x, together, 8);
        for (double y : {evaluate(f.f, x[0]).value, together[0]})
          EXPECT_LE(std::max(bits(y), bits(expected)) - std::min(bits(y), bits(expected)), 1u)
              << "x = " << x[0] << ": " << y << ", not " << expected;
      }
  });
}

TEST(Trig, SpecialValues) {
  atEveryLevel([](const Output& f, int level) {
    EXPECT_EQ(evaluate(f.f, 0.0), (Element{f.isSine ? 0.0 : 1.0, nuvStatusOk}));
    const bool keepsSign = level == 5 && f.f == nuvsSin_64f_A53;
    EXPECT_EQ(evaluate(f.f, -0.0), (Element{f.isSine ? (keepsSign ? -0.0 : 0.0) : 1.0, nuvStatusOk}));
    for (double x : {infinity, -infinity}) {
      const Element e = evaluate(f.f, x);
      EXPECT_EQ(bits(e.value), 0xfff8000000000000) << "x = " << x;
      EXPECT_EQ(e.status, nuvStatusOutOfDomain);
    }
    const double xs[8] = {1, number(0x7ff8000000000123), 1e300, number(0xfff8000000000456), -infinity,
                          2, number(0x7ff0000000000001), 3};
    for (int32_t first : {1, 3, 6}) {
      const uint64_t quiet = bits(xs[first]) | 0x0008000000000000;
      double ys[8];
      EXPECT_EQ(f.f(xs, ys, 8), nuvStatusOutOfDomain);
      EXPECT_EQ(bits(ys[first]), quiet) << "with others";
      EXPECT_EQ(f.f(xs + first, ys, 1), nuvStatusOk);
      EXPECT_EQ(bits(ys[0]), quiet) << "alone";
    }
  });
}

// A large argument, or an infinity, sends its whole block another way: blocks of 4 and of 8 from
// the beginning of the array, then single elements. An argument for which the ways differ in the
// last bit tells which one was taken; in place it must be the same one.
TEST(Trig, ABlockGoesOneWay) {
  constexpr int32_t longest = 295;  // level 5 takes from 32 elements on another way to the same results
  std::mt19937_64 random(5);
  atEveryLevel([&](const Output& f, int level) {
    const int32_t block = level == 5 ? 8 : 4;
    // At levels 1 to 4 one in 10^7 arguments of Sin and Cos differs: these two do.
    double x = f.isSine ? 0x1.d39c6aad7675ep+13 : 0x1.c19a930913b7fp+10, fast = 0, slow = 0;
    for (int tries = 0; tries < 100000 && bits(fast) == bits(slow); ++tries) {
      if (tries > 0) x = std::ldexp(static_cast<double>(random() >> 11), -37);
      const double alone[8] = {x, x, x, x, x, x, x, x}, beside[8] = {x, 1e6, x, x, 1e6, x, x, x};
      double y[8];
      f.f(alone, y, 8), fast = y[0];
      f.f(beside, y, 8), slow = y[0];
    }
    ASSERT_NE(bits(fast), bits(slow)) << "no argument tells the ways apart";
    ASSERT_LE(std::fabs(fast - slow), 0x1p-52);
    for (double large : {1e6, -1e300, level == 5 ? std::nextafter(65536.0, infinity) : 90112.0, -infinity})
      for (const auto& [len, stride] : {std::pair{23, 1}, std::pair{longest, 42}})
        for (int32_t at = 0; at < len; at += stride) {
          const int32_t inBlocks = len / block * block;
          double xs[longest + 1], apart[longest + 1];
          for (double& v : xs) v = x;
          xs[at + 1] = large;
          double* const shared = xs + 1;
          EXPECT_EQ(f.f(shared, apart, len), std::isinf(large) ? nuvStatusOutOfDomain : nuvStatusOk);
          f.f(shared, shared, len);
          for (int32_t i = 0; i < len; ++i) {
            if (i == at) continue;
            const double expected = i / block == at / block && at < inBlocks && i < inBlocks ? slow : fast;
            // The tail of SinCos at level 5 adds up the sine in an order of its own.
            if (i >= inBlocks && level == 5 && f.isSine && f.f != nuvsSin_64f_A53)
              EXPECT_LE(std::fabs(apart[i] - fast), 0x1p-52);
            else
              EXPECT_EQ(apart[i], expected) << "element " << i << " beside " << large << " at " << at;
            EXPECT_EQ(bits(shared[i]), bits(apart[i])) << "in place";
          }
        }
    // Neither the largest fast argument nor, at level 5, a NaN counts as large.
    for (double notLarge : {level == 5 ? 65536.0 : std::nextafter(90112.0, 0), level == 5 ? double{NAN} : 0.0}) {
      const double xs[8] = {x, notLarge, x, x, notLarge, x, x, x};
      double ys[8];
      f.f(xs, ys, 8);
      EXPECT_EQ(ys[0], fast);
    }
  });
}

// At levels 1 to 4 the fast path loses the sign of -0, the special lane keeps it.
TEST(Trig, NegativeZeroInABlock) {
  atEveryLevel([](const Output& f, int level) {
    const double xs[8] = {-0.0, 1, 1e6, 2, 3, -0.0, 4, 5};
    double ys[8];
    f.f(xs, ys, 8);
    if (!f.isSine) {
      EXPECT_TRUE(ys[0] == 1 && ys[5] == 1);
      return;
    }
    const bool isSin = f.f == nuvsSin_64f_A53;
    EXPECT_EQ(std::signbit(ys[0]), level == 5 ? isSin : true);
    EXPECT_EQ(std::signbit(ys[5]), level == 5 && isSin);
  });
}

// In a directed mode the table point of an argument may be another one, but it must still go with
// the remainder: also that of a tiny argument beside a large one, which stands for its own
// remainder.
TEST(Trig, DirectedRoundingMovesResultsByAUnitOnly) {
  const double sizes[] = {1e-300,  0x1p-60, 0x1p-30, 0x1.921fb54442d18p-21, 0x1p-20, 0x1.8p-20, 0.01, 0.6, 3, 1000,
                          0x1p+16, 1e6,     1e300,   0x1.6ac5b262ca1ffp+849};
  std::vector<double> xs;
  for (double last : {0.5, 1e6})
    for (double size : sizes) xs.insert(xs.end(), {size, 1, -size, 2, -1, -size, size, last});
  const int32_t len = static_cast<int32_t>(xs.size()), odd = len - 3;  // the second one ends in a tail
  std::vector<double> nearest(xs.size()), directed(xs.size());
  atEveryLevel([&](const Output& f, int level) {
    const uint32_t csr = readMxcsr();
    for (int32_t n : {len, odd})
      for (uint32_t mode : {0x2000u, 0x4000u, 0x6000u}) {
        f.f(xs.data(), nearest.data(), n);
        writeMxcsr((csr & ~modeBits) | mode);
        f.f(xs.data(), directed.data(), n);
        writeMxcsr(csr);
        for (size_t i = 0; i < static_cast<size_t>(n); ++i)
          EXPECT_LE(std::fabs(directed[i] - nearest[i]), level == 5 ? 0x1p-52 : 0.0)
              << "x = " << xs[i] << ", mode " << mode;
      }
  });
}

TEST(Trig, FiniteArgumentsRaiseNeitherInvalidNorDivideByZero) {
  std::vector<double> xs;
  for (int exponent = -1074; exponent < 1024; ++exponent)
    xs.push_back(std::ldexp(exponent % 2 == 0 ? 1.0 : -1.9, exponent));
  std::vector<double> ys(xs.size());
  atEveryLevel([&](const Output& f, int) {
    std::feclearexcept(FE_ALL_EXCEPT);
    EXPECT_EQ(f.f(xs.data(), ys.data(), static_cast<int32_t>(xs.size())), nuvStatusOk);
    EXPECT_EQ(std::fetestexcept(FE_INVALID | FE_DIVBYZERO), 0);
  });
}

}  // namespace
}  // namespace qorvane::test
