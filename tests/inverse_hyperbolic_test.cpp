// asinh, acosh and atanh: special values, the borders of their formulas and tables, arrays where
// formulas meet, and their bits, which lanes take from each other's evaluation only where it is sure to
// give those of the level's program.
#include <cfenv>
#include <cmath>
#include <random>

#include "frame/kernel_frame.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr uint64_t sign = uint64_t{1} << 63, infinity = 0x7ff0000000000000, largest = 0x7fefffffffffffff,
                   defaultNaN = 0xfff8000000000000, ones = 0x7fffffffffffffff, one = 0x3ff0000000000000;

// `byPairs`: the function works in pairs of numbers, not in extended precision.
bool byPairs(Unary f, int level) { return level > 1 && f != nuvsAtanh_64f_A53; }

TEST(InverseHyperbolic, SpecialValuesStatusesAndFlags) {
  struct Row {
    Unary f;
    uint64_t x, extended, pairs;
    nuvStatus status;
  };
  const Row rows[] = {
      {nuvsAsinh_64f_A53, 0, 0, 0, 0},
      {nuvsAsinh_64f_A53, sign, sign, sign, 0},
      {nuvsAsinh_64f_A53, 1, 1, 1, 0},
      {nuvsAsinh_64f_A53, sign | 0xfffffffffffff, sign | 0xfffffffffffff, sign | 0xfffffffffffff, 0},
      {nuvsAsinh_64f_A53, infinity, infinity, infinity, 0},
      {nuvsAsinh_64f_A53, sign | infinity, sign | infinity, sign | infinity, 0},
      {nuvsAsinh_64f_A53, largest, 0x408633ce8fb9f87e, 0x408633ce8fb9f87e, 0},
      {nuvsAsinh_64f_A53, 0x7ff8000000000123, 0x7ff8000000000123, 0x7ff8000000000123, 0},
      {nuvsAsinh_64f_A53, 0xfff8000000000123, 0xfff8000000000123, 0xfff8000000000123, 0},
      {nuvsAcosh_64f_A53, one, 0, 0, 0},
      {nuvsAcosh_64f_A53, infinity, infinity, infinity, 0},
      {nuvsAcosh_64f_A53, largest, 0x408633ce8fb9f87e, 0x408633ce8fb9f87e, 0},
      {nuvsAcosh_64f_A53, one - 1, ones, defaultNaN, nuvStatusOutOfDomain},
      {nuvsAcosh_64f_A53, 0, ones, defaultNaN, nuvStatusOutOfDomain},
      {nuvsAcosh_64f_A53, sign | one, ones, defaultNaN, nuvStatusOutOfDomain},
      {nuvsAcosh_64f_A53, sign | 1, ones, defaultNaN, nuvStatusOutOfDomain},
      {nuvsAcosh_64f_A53, sign | infinity, ones, defaultNaN, nuvStatusOutOfDomain},
      {nuvsAcosh_64f_A53, 0x7ff8000000000123, 0x7ff8000000000123, 0x7ff8000000000123, 0},
      {nuvsAcosh_64f_A53, 0xfff8000000000123, ones, 0xfff8000000000123, 0},
      {nuvsAtanh_64f_A53, 0, 0, 0, 0},
      {nuvsAtanh_64f_A53, sign, sign, 0, 0},
      {nuvsAtanh_64f_A53, sign | 1, sign | 1, 0, 0},
      {nuvsAtanh_64f_A53, 0x000fffffffffffff, 0x000fffffffffffff, 0, 0},
      {nuvsAtanh_64f_A53, one - 1, 0x4032b708872320e2, 0, 0},
      {nuvsAtanh_64f_A53, one, infinity, 0, nuvStatusPole},
      {nuvsAtanh_64f_A53, sign | one, sign | infinity, 0, nuvStatusPole},
      {nuvsAtanh_64f_A53, one + 1, ones, 0, nuvStatusOutOfDomain},
      {nuvsAtanh_64f_A53, infinity, ones, 0, nuvStatusOutOfDomain},
      {nuvsAtanh_64f_A53, sign | infinity, sign | ones, 0, nuvStatusOutOfDomain},
      {nuvsAtanh_64f_A53, 0x7ff8000000000123, ones, 0, 0},
      {nuvsAtanh_64f_A53, 0xfff8000000000123, sign | ones, 0, 0},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Row& row : rows) {
      const bool pairs = byPairs(row.f, level);
      const uint64_t expected = pairs ? row.pairs : row.extended;
      const int flags = pairs && row.status == nuvStatusOutOfDomain ? FE_INVALID : 0;
      // Alone, and at several places amid ordinary arguments, which keep their results.
      const double x = number(row.x), ordinary = row.f == nuvsAtanh_64f_A53 ? 0.3 : 3.0;
      const double ofOrdinary = evaluate(row.f, ordinary).value;
      for (size_t len : {1u, 3u, 8u, 90u}) {
        for (size_t place : {size_t{0}, len / 2, len - 1}) {
          std::vector<double> src(len, ordinary), dst(len);
          src[place] = x;
          std::feclearexcept(FE_ALL_EXCEPT);
          const nuvStatus status = row.f(src.data(), dst.data(), static_cast<int32_t>(len));
          const int raised = std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW);
          EXPECT_TRUE(bits(dst[place]) == expected && status == row.status && raised == flags)
              << "level " << level << std::hex << ", x = " << row.x << ": " << bits(dst[place]) << ", status "
              << std::dec << status << ", flags " << raised << ", " << place << " of " << len;
          for (size_t i = 0; i < len; ++i)
            EXPECT_TRUE(i == place || std::fabs(dst[i] - ofOrdinary) < 1e-15) << "level " << level << ", " << i;
        }
      }
    }
    for (double tiny : {0x1p-201, -0x1p-300, 0x1.8p-500, 0x1p-1022})
      for (size_t len : {1u, 3u, 8u, 90u}) {
        std::vector<double> src(len, tiny), dst(len);
        std::feclearexcept(FE_ALL_EXCEPT);
        nuvsAtanh_64f_A53(src.data(), dst.data(), static_cast<int32_t>(len));
        EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT & ~FE_INEXACT), 0) << "level " << level << ", x = " << tiny;
        EXPECT_EQ(dst, src) << "level " << level;
      }
    const double poleLast[] = {2, 0.5, -1, 0.25}, domainLast[] = {1, 0.5, -2, 0.25};
    double y[4];
    EXPECT_EQ(nuvsAtanh_64f_A53(poleLast, y, 4), nuvStatusPole);
    EXPECT_EQ(nuvsAtanh_64f_A53(domainLast, y, 4), nuvStatusOutOfDomain);
  }
}

struct Inverse {
  const char* name;
  Unary f;
  long double (*reference)(long double);
  double first, last;               // arguments, by magnitude
  double extendedBound, pairBound;  // of the error in ulp
};
const Inverse inverses[] = {{"asinh", nuvsAsinh_64f_A53, asinhl, 0x1p-1022, 0x1.fffffffffffffp1023, 0.88, 0.53},
                            {"acosh", nuvsAcosh_64f_A53, acoshl, 1, 0x1.fffffffffffffp1023, 0.78, 0.53},
                            {"atanh", nuvsAtanh_64f_A53, atanhl, 0x1p-1022, 1 - 0x1p-53, 0.72, 0.72}};

// A wrong row, a seed or a formula used too far shows as an error of more than the bound: both sides
// of all borders between formulas, and arguments whose sums stand at the borders between rows.
TEST(InverseHyperbolic, ErrorsAtTheBorders) {
  for (const Inverse& g : inverses) {
    std::vector<double> xs = {0x1p-9,    0x1p-8,  0x1p-7,   0.125,    1 + 0x1p-13, 1.0625, 0x1p26,
                              0x1p28,    0x1p29,  0x1p53,   0x1p1000, 0x1p1023,    0.5,    1 - 0x1p-8,
                              0x1p-1021, 0x1p-28, 0x1p-200, 3,        10};
    for (int i = 0; i < 256; ++i)
      for (int exponent : {0, 1, 2, 5, 26, 27, 52, 53}) {
        const long double u = std::ldexp(1 + i / 256.0L, exponent),
                          v = std::ldexp(1 + i / 256.0L + 1 / 512.0L, exponent);
        for (long double border : {u, v}) {  // of the logarithm's argument, and of the root's
          const long double half = border / 2, inverse = 1 / (2 * border);
          xs.push_back(static_cast<double>(g.f == nuvsAsinh_64f_A53   ? half - inverse
                                           : g.f == nuvsAcosh_64f_A53 ? half + inverse
                                                                      : (border - 1) / (border + 1)));
          xs.push_back(static_cast<double>(g.f == nuvsAsinh_64f_A53   ? std::sqrt(border - 1)
                                           : g.f == nuvsAcosh_64f_A53 ? std::sqrt(border + 1)
                                                                      : 1 - 1 / border));
        }
      }
    std::vector<double> src;
    for (double x : xs)
      for (double side : {std::nextafter(x, 0), x, std::nextafter(x, HUGE_VAL)})
        if (side >= g.first && side <= g.last) src.push_back(side);
    std::vector<double> dst(src.size());
    for (int level : supportedLevels()) {
      AtLevel at(level);
      const double bound = byPairs(g.f, level) ? g.pairBound : g.extendedBound;
      ASSERT_EQ(g.f(src.data(), dst.data(), static_cast<int32_t>(src.size())), nuvStatusOk);
      for (size_t i = 0; i < src.size(); ++i) {
        const long double exact = g.reference(src[i]);
        if (exact == 0) continue;
        const long double ulp = std::ldexp(1.0L, std::max(std::ilogb(exact), -1022) - 52);
        for (double y : {dst[i], evaluate(g.f, src[i]).value})
          ASSERT_LE(std::fabs((y - exact) / ulp), bound) << g.name << ", level " << level << ", x = " << src[i];
      }
    }
  }
}

// Results that aren't the nearest numbers: the error of their level's program decides. Lanes would
// take the nearest with half of their bound, or two fifths for acosh in pairs, and in the series' place.
struct Uncertain {
  Unary f;
  bool byPairs;
  uint64_t x, y;
};
constexpr Uncertain uncertain[] = {
    {nuvsAcosh_64f_A53, true, 0x40270ae1944cd706, 0x40091567c0e4ba80},   // 11.52 -> 3.135
    {nuvsAcosh_64f_A53, false, 0x3ffb360f6f581d5a, 0x3ff1fad581931722},  // 1.70 -> 1.124
    {nuvsAcosh_64f_A53, false, 0x403b986942a498bd, 0x40100ab7a865859e},  // 27.6 -> 4.010
    {nuvsAcosh_64f_A53, false, 0x415d4e805e05b8d1, 0x40308c3037ea5ee0},  // 7682561.5 -> 16.55
    {nuvsAcosh_64f_A53, true, 0x3ff0fb27caf71710, 0x3fd64ca07134eed2},   // 1.061 -> 0.348, by the series
    {nuvsAcosh_64f_A53, true, 0x3ff0ffff8bfef53e, 0x3fd682d87e5a9808},   // at the last high word of the series
    {nuvsAcosh_64f_A53, false, 0x403cc220bc54c17a, 0x401035039d3a9944},  // 28.76 -> 4.052, three quarters of the bound
    {nuvsAsinh_64f_A53, true, 0x3fc11562ef49539f, 0x3fc1088171015c00},   // 0.1335 -> 0.1331
    {nuvsAsinh_64f_A53, true, 0x3fc2e88d1f682aab, 0x3fc2d71df5dbd5c8},   // 0.1477 -> 0.1472
    {nuvsAsinh_64f_A53, false, 0x3fc82edbc74cada0, 0x3fc80a9b9b5161a6},  // 0.1889 -> 0.1878
    {nuvsAsinh_64f_A53, false, 0x3fd8a9810e9d6300, 0x3fd816db2a3d4104},  // 0.3853 -> 0.3764
    {nuvsAsinh_64f_A53, false, 0x40b73bd572a05f18, 0x4022c49269f4c5b2},  // 5947.8 -> 9.384
    {nuvsAsinh_64f_A53, false, 0x4153a4ce026c0fe0,
     0x403025c644cf95fe},  // 5149496.0 -> 16.15, three quarters of the bound
};

// Whatever stands beside an element, at any place, in place or not, it has its own result; odd
// functions stay odd; and the status is that of the elements that fail, wherever they are.
struct Kinds {
  std::vector<double> x;
  std::vector<Element> alone;
};
Kinds kindsOf(Unary f, int level) {
  Kinds kinds;
  kinds.x = f == nuvsAsinh_64f_A53 ? std::vector{1.0, 0.1,      0x1p30,    -2.0,   -0.0625, -0x1p1023,
                                                 0.0, HUGE_VAL, 0x1p-1074, 0x1p27, -700.0,  number(0xfff8000000000123)}
                                   : std::vector{2.0,
                                                 1.01,
                                                 0x1p30,
                                                 1.0,
                                                 1 + 0x1p-40,
                                                 0x1p1023,
                                                 1.0625,
                                                 HUGE_VAL,
                                                 0x1p27,
                                                 1.0626,
                                                 700.0,
                                                 0.5,
                                                 number(0x7ff8000000000123),
                                                 -3.0};
  for (const Uncertain& u : uncertain)
    if (u.f == f && u.byPairs == byPairs(f, level)) kinds.x.push_back(number(u.x));
  for (double x : kinds.x) kinds.alone.push_back(evaluate(f, x));
  return kinds;
}
void expectEachAsAlone(Unary f, const Kinds& kinds, const std::vector<size_t>& kind, int level) {
  std::vector<double> src, dst(kind.size() + 1, 7.0);
  nuvStatus status = nuvStatusOk;
  for (size_t k : kind) {
    src.push_back(kinds.x[k]);
    if (kinds.alone[k].status != nuvStatusOk) status = kinds.alone[k].status;
  }
  const auto len = static_cast<int32_t>(kind.size());
  ASSERT_EQ(f(src.data(), dst.data(), len), status);
  ASSERT_EQ(dst[kind.size()], 7.0) << "beyond " << len;
  std::vector<double> inPlace = src;
  inPlace.push_back(7.0);
  ASSERT_EQ(f(inPlace.data(), inPlace.data(), len), status);
  ASSERT_EQ(inPlace[kind.size()], 7.0) << "beyond " << len << " in place";
  for (size_t i = 0; i < kind.size(); ++i)
    for (double y : {dst[i], inPlace[i]})
      ASSERT_EQ(bits(y), bits(kinds.alone[kind[i]].value)) << level << ", x = " << src[i] << ", " << i << " of " << len;
}

TEST(InverseHyperbolic, ElementsAreApart) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Unary f : {nuvsAsinh_64f_A53, nuvsAcosh_64f_A53}) {
      const Kinds kinds = kindsOf(f, level);
      const size_t count = kinds.x.size();
      if (f == nuvsAsinh_64f_A53) {
        for (size_t k = 0; k < count; ++k) {
          ASSERT_EQ(bits(evaluate(f, -kinds.x[k]).value), sign ^ bits(kinds.alone[k].value));
        }
      }
      for (size_t len = 1; len <= 20; ++len)
        for (size_t place = 0; place < len; ++place)
          for (size_t k = 0; k < count; ++k) {
            std::vector<size_t> kind(len, 0);
            kind[(place * 5 + 2) % len] = 10;
            kind[place] = k;
            expectEachAsAlone(f, kinds, kind, level);
          }
      std::mt19937_64 random(1);
      for (int trial = 0; trial < 1000; ++trial) {
        const size_t len = 1 + random() % 150, some = random() % count, others = random() % count;
        const size_t share = 1 + random() % 40;
        std::vector<size_t> kind(len);
        for (size_t& k : kind) k = random() % share == 0 ? random() % (1 + others) : some;
        expectEachAsAlone(f, kinds, kind, level);
      }
    }
  }
}

// The bits of level 1 don't depend on the caller's precision of extended numbers.
TEST(InverseHyperbolic, UncertainResultsAreThePrograms) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Uncertain& u : uncertain)
      for (const uint16_t precision : {uint16_t{0x037f}, uint16_t{0x027f}}) {
        if (u.byPairs != byPairs(u.f, level)) continue;
        const double x = number(u.x);
        const std::vector<double> src(12, x);
        std::vector<double> dst(12);
        writeX87Control(precision);
        const double alone = evaluate(u.f, x).value;
        u.f(src.data(), dst.data(), 12);
        writeX87Control(0x037f);
        for (double y : dst) EXPECT_EQ(bits(y), u.y) << level << ", x = " << x;
        EXPECT_EQ(bits(alone), u.y) << level << ", x = " << x;
      }
  }
}

// Two neighbours from 2^-8 up to 1 share a division, so that rare elements have other last bits in a
// pair than alone. Pairs begin at the even places.
TEST(InverseHyperbolic, AtanhInPairs) {
  const struct {
    uint64_t x, partner, alone, paired;
  } pairs[] = {{0x3f7c478f490bc500, 0x3fe74bac9e20a984, 0x3f7c47acbbf1101e, 0x3f7c47acbbf1101d},
               {0x3f8f2864e0fefb80, 0x3fd3c5470b89f496, 0x3f8f29027190d8c3, 0x3f8f29027190d8c4},
               {0x3fc75323163c5e04, 0x3fc6f7ad018a0510, 0x3fc79693fca212fb, 0x3fc79693fca212fc},
               // beyond 0.6 of the bound that lanes allow for
               {0x3f8365c41fcfa30f, 0x3fdbf4fb20b2803b, 0x3f8365ea23c95098, 0x3f8365ea23c95099},
               {0x3f83ad5b5515f6fe, 0x3f9fb07699628a51, 0x3f83ad8304165eab, 0x3f83ad8304165eac},
               {0x3f86d6077452bf1e, 0x3f77d5e81a31fc88, 0x3f86d6457bb9d78b, 0x3f86d6457bb9d78a}};
  for (int level : supportedLevels())
    for (const auto& p : pairs)
      for (size_t len : {1u, 2u, 3u, 63u, 64u, 66u, 129u}) {
        AtLevel at(level);
        for (size_t place = 0; place < len; ++place) {
          const double x = number(p.x), partner = number(p.partner);
          std::vector<double> src(len, 0.3), dst(len);
          src[place] = -x;
          if ((place ^ 1) < len) src[place ^ 1] = partner;
          nuvsAtanh_64f_A53(src.data(), dst.data(), static_cast<int32_t>(len));
          EXPECT_EQ(bits(dst[place]), sign | ((place ^ 1) < len ? p.paired : p.alone))
              << level << ": " << place << ", " << len;
          if ((place ^ 1) >= len) continue;
          for (double outside : {0x1p-9, 0.0, std::nan(""), 1.0, -0x1p-300}) {
            src[place ^ 1] = outside;
            nuvsAtanh_64f_A53(src.data(), src.data(), static_cast<int32_t>(len));
            EXPECT_EQ(bits(src[place]), sign | p.alone) << level << ": " << place << ", beside " << outside;
            src[place] = -x;
          }
        }
      }
}

// What defines atanh's bits: the ratio with one division for a pair, and its logarithm by exact parts.
// Here with the functions of the C library, for the arguments where its logarithm's error can't matter.
long double ratioOf(double a, double partner) {
  const long double d = a - 1.0L, other = partner - 1.0L;
  return other * (1 / (d * other)) * -2 - 1;
}

// A result is taken from lanes only where it is sure to be that of extended precision. Within 2^-60 of
// the middle between two numbers, log1p of the ratio can't tell; elsewhere it must agree.
TEST(InverseHyperbolic, AtanhRoundsAsInExtendedPrecision) {
  std::mt19937_64 random(5);
  constexpr size_t n = 1 << 16;
  std::vector<double> src(n), dst(n);
  for (int kind = 0; kind < 4; ++kind) {
    for (double& x : src) {
      const double share = std::ldexp(static_cast<double>(random() >> 11), -53);
      x = kind == 0   ? share
          : kind == 1 ? std::exp2(-8 * share)
          : kind == 2 ? 1 - std::exp2(-50 * share)
                      : 0.4 + share / 5;
      x = std::min(std::max(x, 0x1p-8), 1 - 0x1p-53);
    }
    for (int level : supportedLevels()) {
      AtLevel at(level);
      ASSERT_EQ(nuvsAtanh_64f_A53(src.data(), dst.data(), n), nuvStatusOk);
      size_t judged = 0;
      for (size_t i = 0; i < n; ++i) {
        const long double u = ratioOf(src[i], src[i ^ 1]), y = std::log(u) / 2;
        const long double doubt = 0x1p-62L * (1 + y);
        const double low = static_cast<double>(y - doubt), high = static_cast<double>(y + doubt);
        if (low != high) continue;
        ++judged;
        ASSERT_EQ(dst[i], low) << "level " << level << ", x = " << src[i] << " beside " << src[i ^ 1];
      }
      ASSERT_GT(judged, n / 2);
    }
  }
}

// The programs of asinh and acosh are good to 16 units of 2^-64, or to 8 units and 4 more of the
// result: where neither that nor the C library's error can matter, theirs is the nearest number. Just
// below a power of two is where a root of few bits may be the greater one.
TEST(InverseHyperbolic, RoundsAsTheProgram) {
  std::mt19937_64 random(6);
  constexpr size_t n = 1 << 15;
  std::vector<double> src(n), dst(n);
  for (const Inverse& g : {inverses[0], inverses[1]})
    for (int kind = 0; kind < 4; ++kind) {
      const double first = g.f == nuvsAcosh_64f_A53 ? 1.0625 : 0.015625;
      for (double& x : src) {
        const double share = std::ldexp(static_cast<double>(random() >> 11), -53);
        x = kind == 0   ? first + share
            : kind == 1 ? first * std::pow(0x1p28 / first, share)
            : kind == 2 ? first + 20 * share
                        : std::ldexp(1 - std::exp2(-1 - 52 * share), 2 + static_cast<int>(random() % 25));
        if (g.f == nuvsAsinh_64f_A53 && random() % 2 == 0) x = -x;
      }
      for (int level : supportedLevels()) {
        AtLevel at(level);
        ASSERT_EQ(g.f(src.data(), dst.data(), n), nuvStatusOk);
        size_t judged = 0;
        for (size_t i = 0; i < n; ++i) {
          const double a = std::fabs(src[i]);  // in pairs, others have formulas that are less exact
          if (byPairs(g.f, level) && (a <= (g.f == nuvsAcosh_64f_A53 ? 1.0625 : 0.125) || a >= 0x1p26)) continue;
          const long double y = g.reference(src[i]), doubt = 0x1p-64L * (16 + 8 * std::fabs(y));
          const double low = static_cast<double>(y - doubt), high = static_cast<double>(y + doubt);
          if (low != high) continue;
          ++judged;
          ASSERT_EQ(dst[i], low) << g.name << ", level " << level << ", x = " << src[i];
        }
        ASSERT_GT(judged, n / 2);
      }
    }
}

// A digest of many results, of which lanes leave some thousands to the programs: a fault in one of a
// program's rows or seeds shows in those only.
TEST(InverseHyperbolic, BitsOfAMillion) {
  const struct {
    Unary f;
    double first;
    uint64_t extended, pairs;
  } functions[] = {{nuvsAsinh_64f_A53, 0.015625, 0xa96342a7e750f187, 0x34ef07bdbd44e4ab},
                   {nuvsAcosh_64f_A53, 1.0625, 0x2560a4900d8b68e0, 0xd421aedb7515d478}};
  constexpr size_t n = 1 << 20;
  std::vector<double> src(n), dst(n);
  for (const auto& row : functions) {
    std::mt19937_64 random(7);
    for (double& x : src) x = row.first + std::ldexp(static_cast<double>(random() >> 11), -51);
    for (int level : supportedLevels()) {
      AtLevel at(level);
      ASSERT_EQ(row.f(src.data(), dst.data(), n), nuvStatusOk);
      uint64_t digest = 0;
      for (double y : dst) digest = (digest ^ bits(y)) * 0x100000001b3;
      EXPECT_EQ(digest, byPairs(row.f, level) ? row.pairs : row.extended) << std::hex << level << ": " << digest;
    }
  }
}

}  // namespace
}  // namespace qorvane::test
