// asin, acos, atan, atan2: both sides of every change of method, the special values with their
// statuses and flags, and what stretches and groups have in common.
#include <algorithm>
#include <cfenv>
#include <cmath>
#include <random>

#include "frame/kernel_frame.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr double infinity = HUGE_VAL;
constexpr uint64_t defaultNaN = 0xfff8000000000000, signBit = uint64_t{1} << 63;
constexpr double pi = 0x1.921fb54442d18p+1, halfPi = pi / 2;

uint64_t distance(double a, double b) { return bits(a) > bits(b) ? bits(a) - bits(b) : bits(b) - bits(a); }

template <class Check>
void atEveryLevel(Check check) {
  for (int level : supportedLevels()) {
    AtLevel at(level);
    SCOPED_TRACE(testing::Message() << "level " << level);
    check(level);
  }
}

// The value alone, and at a place of an array that is long enough for every path.
template <class... X>
std::vector<double> aloneAndAmong(nuvStatus (*f)(X...), double x, double filler) {
  std::vector<double> results = {evaluate(f, x).value};
  for (size_t place : {0u, 42u, 66u}) {
    std::vector<double> xs(67, filler), ys(67);
    xs[place] = x;
    f(xs.data(), ys.data(), 67);
    results.push_back(ys[place]);
  }
  return results;
}

struct Known {
  double x, y;  // y is correctly rounded
};
void expectNear(Unary f, const Known& known, double filler) {
  const double alone = evaluate(f, known.x).value;
  for (double y : aloneAndAmong(f, known.x, filler)) {
    EXPECT_EQ(bits(y), bits(alone)) << "x = " << known.x;
    EXPECT_LE(distance(y, known.y), 1u) << "x = " << known.x << ": " << y << ", not " << known.y;
  }
}

TEST(InverseTrig, ArcSines) {
  const struct {
    double x, asin, acos, acosOfNegative;
  } rows[] = {
      {0x0.0000000000001p-1022, 0x0.0000000000001p-1022, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p+0},
      {0x1p-1022, 0x1p-1022, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p+0},
      {0x1p-600, 0x1p-600, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p+0},
      {0x1.b7cdfd9d7bdbbp-34, 0x1.b7cdfd9d7bdbbp-34, 0x1.921fb543d4dep+0, 0x1.921fb544b0c5p+0},
      {0x1.999999999999ap-4, 0x1.9a49276037884p-4, 0x1.787b22ce3f59p+0, 0x1.abc447ba464a1p+0},
      {0x1p-2, 0x1.02be9ce0b87cdp-2, 0x1.51700e0c14b25p+0, 0x1.d2cf5c7c70f0cp+0},
      {0x1.fffffffffffffp-2, 0x1.0c152382d7365p-1, 0x1.0c152382d7366p+0, 0x1.0c152382d7365p+1},
      {0x1p-1, 0x1.0c152382d7366p-1, 0x1.0c152382d7366p+0, 0x1.0c152382d7366p+1},
      {0x1.0000000000001p-1, 0x1.0c152382d7367p-1, 0x1.0c152382d7365p+0, 0x1.0c152382d7366p+1},
      {0x1.3333333333333p-1, 0x1.4978fa3269ee1p-1, 0x1.dac670561bb5p-1, 0x1.1b6e192ebbe44p+1},
      {0x1.8p-1, 0x1.b235315c680dcp-1, 0x1.720a392c1d955p-1, 0x1.359d26f93b6c3p+1},
      {0x1.ccccccccccccdp-1, 0x1.1ea93705fa172p+0, 0x1.cdd9f8f922e98p-2, 0x1.586476251e745p+1},
      {0x1.fae147ae147aep-1, 0x1.6de3c6f33d51dp+0, 0x1.21df72882bfd8p-3, 0x1.8001be1bc011bp+1},
      {0x1.fff2e48e8a71ep-1, 0x1.8e80e1a01556ap+0, 0x1.cf69d216bd74bp-7, 0x1.90504b722c141p+1},
      {0x1.fffffff8p-1, 0x1.921ce1307600bp+0, 0x1.6a09e6686c6acp-15, 0x1.921e4b3a5c691p+1},
      {0x1.fffffffffffffp-1, 0x1.921fb50442d18p+0, 0x1p-26, 0x1.921fb52442d18p+1},
  };
  atEveryLevel([&](int) {
    for (const auto& row : rows) {
      expectNear(nuvsAsin_64f_A53, {row.x, row.asin}, 0.3);
      expectNear(nuvsAsin_64f_A53, {-row.x, -row.asin}, 0.7);
      expectNear(nuvsAcos_64f_A53, {row.x, row.acos}, -0.7);
      expectNear(nuvsAcos_64f_A53, {-row.x, row.acosOfNegative}, 0.3);
    }
  });
}

// Both sides of the intervals' bounds: the high word of a bound still belongs to the interval below.
TEST(InverseTrig, ArcTangents) {
  const Known rows[] = {
      {0x0.0000000000001p-1022, 0x0.0000000000001p-1022},
      {0x1p-1022, 0x1p-1022},
      {0x1.fffffffffffffp-1021, 0x1.fffffffffffffp-1021},
      {0x1p-1020, 0x1p-1020},
      {0x1.8p-513, 0x1.8p-513},
      {0x1.fffffffffffffp-496, 0x1.fffffffffffffp-496},
      {0x1p-495, 0x1p-495},
      {0x1p-53, 0x1p-53},
      {0x1p-27, 0x1p-27},
      {0x1.47ae147ae147bp-7, 0x1.47ab48b1efb5dp-7},
      {0x1.999999999999ap-4, 0x1.983e282e2cc4dp-4},
      {0x1.bffffffffffffp-2, 0x1.a64eec3cc23fcp-2},
      {0x1.cp-2, 0x1.a64eec3cc23fdp-2},
      {0x1.c0000ffffffffp-2, 0x1.a64ef9aab66bdp-2},
      {0x1.c0001p-2, 0x1.a64ef9aab66bep-2},
      {0x1p-1, 0x1.dac670561bb4fp-2},
      {0x1.6p-1, 0x1.345f01cce37bbp-1},
      {0x1.60000ffffffffp-1, 0x1.345f0caa41b64p-1},
      {0x1.60001p-1, 0x1.345f0caa41b64p-1},
      {0x1p+0, 0x1.921fb54442d18p-1},
      {0x1.3p+0, 0x1.bde70ed439fe7p-1},
      {0x1.30000ffffffffp+0, 0x1.bde71c1b2cb9p-1},
      {0x1.30001p+0, 0x1.bde71c1b2cb9p-1},
      {0x1.8p+0, 0x1.f730bd281f69bp-1},
      {0x1.38p+1, 0x1.2e75728833a54p+0},
      {0x1.38000ffffffffp+1, 0x1.2e7577245d827p+0},
      {0x1.38001p+1, 0x1.2e7577245d827p+0},
      {0x1.8p+1, 0x1.3fc176b7a856p+0},
      {0x1.4p+3, 0x1.789bd2c160054p+0},
      {0x1.86ap+16, 0x1.921f0d7e968a8p+0},
      {0x1p+53, 0x1.921fb54442d18p+0},
      {0x1p+54, 0x1.921fb54442d18p+0},
      {0x1p+100, 0x1.921fb54442d18p+0},
      {0x1.fffffffffffffp+112, 0x1.921fb54442d18p+0},
      {0x1p+113, 0x1.921fb54442d18p+0},
      {0x1p+140, 0x1.921fb54442d18p+0},
      {0x1.fffffffffffffp+992, 0x1.921fb54442d18p+0},
      {0x1p+993, 0x1.921fb54442d18p+0},
      {0x1.fffffffffffffp+1023, 0x1.921fb54442d18p+0},
  };
  atEveryLevel([&](int) {
    for (const Known& row : rows)
      for (double sign : {1.0, -1.0}) expectNear(nuvsAtan_64f_A53, {sign * row.x, sign * row.y}, 0.3);
  });
}

TEST(InverseTrig, AnglesInEveryQuadrant) {
  const struct {
    double y, x, angle, angleOfNegativeX;
  } rows[] = {
      {0x1p+0, 0x1p+0, 0x1.921fb54442d18p-1, 0x1.2d97c7f3321d2p+1},
      {0x1p+0, 0x1.8p+1, 0x1.4978fa3269ee1p-2, 0x1.68f095fdf593cp+1},
      {0x1.8p+1, 0x1p+0, 0x1.3fc176b7a856p+0, 0x1.e47df3d0dd4d1p+0},
      {0x1.cp-2, 0x1p+0, 0x1.a64eec3cc23fdp-2, 0x1.5d55d7bcaa899p+1},
      {0x1.08p+1, 0x1.8p+1, 0x1.345f01cce37bbp-1, 0x1.4507f4d109f29p+1},
      {0x1.c8p+1, 0x1.8p+1, 0x1.bde70ed439fe7p-1, 0x1.22a5f18f3451fp+1},
      {0x1.d4p+2, 0x1.8p+1, 0x1.2e75728833a54p+0, 0x1.f5c9f80051fdcp+0},
      {0x1.d40000001b7cep+2, 0x1.8p+1, 0x1.2e75728838ecfp+0, 0x1.f5c9f8004cb62p+0},
      {0x1p-1, 0x1p+0, 0x1.dac670561bb4fp-2, 0x1.56c6e7397f5aep+1},
      {0x1.8p+0, 0x1p+0, 0x1.f730bd281f69bp-1, 0x1.145385fa3af71p+1},
      {0x1.79ca10c924223p-67, 0x1p+0, 0x1.79ca10c924223p-67, 0x1.921fb54442d18p+1},
      {0x1p+0, 0x1.79ca10c924223p-67, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p+0},
      {0x1.87e92154ef7acp-665, 0x1.c83e7ad4e6efep-632, 0x1.b7cdfd9d7bdbap-34, 0x1.921fb5440bd7cp+1},
      {0x1.4e718d7d7625ap+664, 0x1.a20df0dcd3af1p+667, 0x1.983e282e2cc4cp-4, 0x1.855dc402d16b6p+1},
      {0x1p-111, 0x1p-110, 0x1.dac670561bb4fp-2, 0x1.56c6e7397f5aep+1},
      {0x1.fffffffffffffp+112, 0x1p+112, 0x1.1b6e192ebbe44p+0, 0x1.0468a8ace4df6p+1},
      {0x1p+113, 0x1p+112, 0x1.1b6e192ebbe44p+0, 0x1.0468a8ace4df6p+1},
      {0x1p+128, 0x1p+127, 0x1.1b6e192ebbe44p+0, 0x1.0468a8ace4df6p+1},
      {0x1p-1021, 0x1p-1020, 0x1.dac670561bb4fp-2, 0x1.56c6e7397f5aep+1},
      {0x1p+992, 0x1.8p+993, 0x1.4978fa3269ee1p-2, 0x1.68f095fdf593cp+1},
      {0x1.56e1fc2f8f359p-997, 0x1.c6bf52634p+49, 0x0.000000c1069cdp-1022, 0x1.921fb54442d18p+1},
      {0x0.03739a252b281p-1022, 0x0.080dbd0164b2dp-1022, 0x1.9e9bf3d20dc71p-2, 0x1.5e4c36ca0118ap+1},
      {0x1.1ccf385ebc8ap+1023, 0x1.ab36d48e1acfp+1023, 0x1.2d0ead6066395p-1, 0x1.46dc09ec29433p+1},
      {0x1.1ccf385ebc8ap+1023, 0x1.116ac579aac1fp+1018, 0x1.8a7237b339feap+0, 0x1.99cd32d54ba46p+0},
      {0x1.116ac579aac1fp+1018, 0x1.1ccf385ebc8ap+1023, 0x1.eb5f644234b83p-6, 0x1.8e48f67bbe681p+1},
      {0x1p-1000, 0x1p-947, 0x1p-53, 0x1.921fb54442d18p+1},
      {0x1p-1000, 0x1p-946, 0x1p-54, 0x1.921fb54442d18p+1},
      {0x1p-969, 0x1p-1022, 0x1.921fb54442d18p+0, 0x1.921fb54442d19p+0},
      {0x1p-968, 0x1p-1022, 0x1.921fb54442d18p+0, 0x1.921fb54442d19p+0},
      {0x1p-949, 0x1p-1022, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p+0},
      {0x1p-948, 0x1p-1022, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p+0},
      {0x1p+0, 0x0.0000000000001p-1022, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p+0},
      {0x0.0000000000001p-1022, 0x1p+0, 0x0.0000000000001p-1022, 0x1.921fb54442d18p+1},
      {0x0.0000000000001p-1022, 0x0.0000000000003p-1022, 0x1.4978fa3269ee1p-2, 0x1.68f095fdf593cp+1},
      {0x1p+996, 0x1p+1000, 0x1.ff55bb72cfdeap-5, 0x1.8a225e5677921p+1},
      {0x1.fffffffffffffp+995, 0x1p+1000, 0x1.ff55bb72cfde9p-5, 0x1.8a225e5677921p+1},
      {0x1.ffff2e48e8a72p+1003, 0x1p+1000, 0x1.822500e1781f7p+0, 0x1.a21a69a70d839p+0},
      {0x1p+1004, 0x1p+1000, 0x1.82250768ac529p+0, 0x1.a21a631fd9508p+0},
  };
  atEveryLevel([&](int) {
    for (const auto& row : rows)
      for (double sign : {1.0, -1.0})
        for (bool isNegative : {false, true}) {
          const double y = sign * row.y, x = isNegative ? -row.x : row.x;
          const double angle = sign * (isNegative ? row.angleOfNegativeX : row.angle);
          std::vector<double> ys(67, 0.5), xs(67, -3.0), among(67);
          ys[41] = y, xs[41] = x;
          nuvsAtan2_64f_A53(ys.data(), xs.data(), among.data(), 67);
          for (double result : {evaluate(nuvsAtan2_64f_A53, y, x).value, among[41]})
            EXPECT_LE(distance(result, angle), std::fabs(angle) < 0x1p-1022 ? 2u : 1u)
                << "y = " << y << ", x = " << x << ": " << result << ", not " << angle;
        }
  });
}

// Long arrays have loops of their own: where the rows change, where the polynomials' last coefficients
// count most and in between they must give the bits of short ones.
void expectBitsOfShortArrays(Unary f, const std::vector<double>& xs) {
  const size_t n = xs.size();
  std::vector<double> ys(n), apart(n);
  f(xs.data(), ys.data(), static_cast<int32_t>(n));
  for (size_t i = 0; i < n; i += 4) f(&xs[i], &apart[i], static_cast<int32_t>(std::min<size_t>(4, n - i)));
  for (size_t i = 0; i < n; ++i) ASSERT_EQ(bits(ys[i]), bits(apart[i])) << "x = " << xs[i];
}
void expectBitsOfShortArrays(const std::vector<double>& ys, const std::vector<double>& xs) {
  const auto atan2 = nuvsAtan2_64f_A53;
  const size_t n = xs.size();
  std::vector<double> angles(n), apart(n);
  atan2(ys.data(), xs.data(), angles.data(), static_cast<int32_t>(n));
  for (size_t i = 0; i < n; i += 4) atan2(&ys[i], &xs[i], &apart[i], static_cast<int32_t>(std::min<size_t>(4, n - i)));
  for (size_t i = 0; i < n; ++i) ASSERT_EQ(bits(angles[i]), bits(apart[i])) << "y = " << ys[i] << ", x = " << xs[i];
}

TEST(InverseTrig, LongArraysGiveTheBitsOfShortOnes) {
  std::mt19937_64 random(8);
  const auto signedShare = [&] { return std::ldexp(static_cast<double>(static_cast<int64_t>(random()) >> 10), -53); };
  std::vector<double> sines, ts, ys, xs;
  for (int i = 0; i < 1 << 18; ++i) {
    sines.push_back(signedShare());
    sines.push_back(std::copysign(0.5 + signedShare() / 20, signedShare()));
  }
  // The high words of the bounds belong below them, the next ones above.
  for (double bound : {0.4375, 0.6875, 1.1875, 2.4375})
    for (uint64_t step : {0u, 1u})
      for (int i = 0; i < 1 << 13; ++i) {
        const auto near = [&](double x) { return number((((bits(x) >> 32) + step) << 32) + (random() >> 32)); };
        xs.push_back(i % 64 == 0 ? 1 + signedShare() / 2 : 1 + i % 64 / 64.0);
        ys.push_back(near(xs.back() * bound)), ts.push_back(near(bound));
        if (i % 2 == 0) ys.back() = -ys.back(), ts.back() = -ts.back();
        if (i % 4 < 2) xs.back() = -xs.back();
      }
  atEveryLevel([&](int) {
    expectBitsOfShortArrays(nuvsAsin_64f_A53, sines);
    expectBitsOfShortArrays(nuvsAcos_64f_A53, sines);
    expectBitsOfShortArrays(nuvsAtan_64f_A53, ts);
    expectBitsOfShortArrays(ys, xs);
  });
}

// Stretches take reciprocals in single precision, and compare high words as numbers of it: neither may
// show beyond its range, in bits or in flags.
TEST(InverseTrig, LongArraysOfAnyScale) {
  constexpr int32_t n = 37;
  atEveryLevel([&](int) {
    std::vector<double> ys(n), xs(n), angles(n), ordinary(n), tangents(n);
    for (size_t i = 0; i < n; ++i) {
      const auto share = static_cast<double>(i) / n;
      ys[i] = 1 + share, xs[i] = (i % 2 == 0 ? 1.97 : -1.97) - share;
    }
    ys[5] = 1, xs[5] = 1.46;  // the least denominator for such numbers
    nuvsAtan2_64f_A53(ys.data(), xs.data(), ordinary.data(), n);
    for (int e : {-1019, -600, -500, -480, -150, -130, -129, -128, -127, -126, -125, -113, -112, -111, 0,
                  111,   112,  113,  125,  126,  127,  128,  129,  130,  150,  500,  600,  980,  991}) {
      std::vector<double> scaledY, scaledX;
      for (double y : ys) scaledY.push_back(std::ldexp(y, e));
      for (double x : xs) scaledX.push_back(std::ldexp(x, e));
      std::feclearexcept(FE_ALL_EXCEPT);
      nuvsAtan2_64f_A53(scaledY.data(), scaledX.data(), angles.data(), n);
      EXPECT_EQ(std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW), 0) << "2^" << e;
      for (size_t i = 0; i < n; ++i) EXPECT_EQ(bits(angles[i]), bits(ordinary[i])) << "2^" << e << ", " << i;
    }
    for (int e : {-400, -300, -150, -128, -126, 112, 113, 126, 127, 128, 129, 150, 1017, 1018, 1019, 1023}) {
      std::vector<double> scaledX = ys;
      for (size_t i = 0; i < n; i += 2) scaledX[i] = std::ldexp(xs[i], e);
      std::feclearexcept(FE_ALL_EXCEPT);
      nuvsAtan_64f_A53(scaledX.data(), tangents.data(), n);
      EXPECT_EQ(std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW), 0) << "2^" << e;
      for (size_t i = 0; i < n; ++i)
        EXPECT_EQ(bits(tangents[i]), bits(evaluate(nuvsAtan_64f_A53, scaledX[i]).value)) << scaledX[i];
    }
  });
}

TEST(InverseTrig, ArcSinesOutsideTheDomain) {
  atEveryLevel([](int level) {
    for (Unary f : {nuvsAsin_64f_A53, nuvsAcos_64f_A53}) {
      for (double x : {0x1.0000000000001p+0, 2.0, 0x1.fffffffffffffp+1023, infinity})
        for (double outside : {x, -x}) {
          double xs[67], ys[67];
          for (double& v : xs) v = 0.25;
          xs[5] = outside, xs[64] = 1.0;
          std::feclearexcept(FE_ALL_EXCEPT);
          EXPECT_EQ(f(xs, ys, 67), nuvStatusOutOfDomain);
          EXPECT_EQ(std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW), level == 5 ? FE_INVALID : 0);
          EXPECT_EQ(bits(ys[5]), defaultNaN) << "x = " << outside;
          EXPECT_EQ(evaluate(f, outside), (Element{number(defaultNaN), nuvStatusOutOfDomain}));
          EXPECT_EQ(bits(ys[4]), bits(evaluate(f, 0.25).value)) << "beside " << outside;
          EXPECT_EQ(ys[64], f == nuvsAsin_64f_A53 ? halfPi : 0.0);
        }
    }
  });
}

TEST(InverseTrig, EndsAndZeros) {
  atEveryLevel([](int) {
    std::feclearexcept(FE_ALL_EXCEPT);
    EXPECT_EQ(evaluate(nuvsAsin_64f_A53, 1.0), (Element{halfPi, nuvStatusOk}));
    EXPECT_EQ(evaluate(nuvsAsin_64f_A53, -1.0), (Element{-halfPi, nuvStatusOk}));
    EXPECT_EQ(evaluate(nuvsAcos_64f_A53, 1.0), (Element{0.0, nuvStatusOk}));
    EXPECT_EQ(evaluate(nuvsAcos_64f_A53, -1.0), (Element{pi, nuvStatusOk}));
    EXPECT_EQ(evaluate(nuvsAtan_64f_A53, infinity), (Element{halfPi, nuvStatusOk}));
    EXPECT_EQ(evaluate(nuvsAtan_64f_A53, -infinity), (Element{-halfPi, nuvStatusOk}));
    for (double zero : {0.0, -0.0}) {
      EXPECT_EQ(evaluate(nuvsAsin_64f_A53, zero), (Element{zero, nuvStatusOk}));
      EXPECT_EQ(evaluate(nuvsAcos_64f_A53, zero), (Element{halfPi, nuvStatusOk}));
      EXPECT_EQ(evaluate(nuvsAtan_64f_A53, zero), (Element{zero, nuvStatusOk}));
    }
    EXPECT_EQ(std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW), 0);
  });
}

// The sign that a NaN comes out with, and its payload where it is kept.
TEST(InverseTrig, NaNs) {
  atEveryLevel([](int level) {
    for (uint64_t sign : {uint64_t{0}, signBit}) {
      const uint64_t quiet = 0x7ff8000000000123 | sign;
      for (uint64_t pattern : {quiet, 0x7ff0000000000123 | sign}) {
        for (double y : aloneAndAmong(nuvsAtan_64f_A53, number(pattern), 1.0)) EXPECT_EQ(bits(y), quiet);
        for (double y : aloneAndAmong(nuvsAsin_64f_A53, number(pattern), 0.5))
          EXPECT_TRUE(level == 5 ? std::isnan(y) && bits(y) & 0x0008000000000000 : bits(y) == quiet);
        for (double y : aloneAndAmong(nuvsAcos_64f_A53, number(pattern), 0.5))
          EXPECT_TRUE(level == 5 ? std::isnan(y) && bits(y) & 0x0008000000000000 : bits(y) == (quiet ^ signBit));
      }
      std::feclearexcept(FE_ALL_EXCEPT);
      for (Unary f : {nuvsAsin_64f_A53, nuvsAcos_64f_A53, nuvsAtan_64f_A53}) aloneAndAmong(f, number(quiet), 0.5);
      for (double other : {0.0, 1.0, -infinity}) {
        EXPECT_TRUE(std::isnan(evaluate(nuvsAtan2_64f_A53, number(quiet), other).value));
        EXPECT_TRUE(std::isnan(evaluate(nuvsAtan2_64f_A53, other, number(quiet)).value));
      }
      EXPECT_EQ(std::fetestexcept(FE_INVALID), 0);
    }
  });
}

// Every pair of special and extreme numbers, alone and where all four of a group are special: as the
// C library has it, but for a last bit of ordinary angles.
TEST(InverseTrig, AnglesOfSpecialPoints) {
  const double numbers[] = {0.0,
                            0x1p-1074,
                            0x0.fffffffffffffp-1022,
                            0x1p-1022,
                            0x1.fffffffffffffp-1021,
                            0x1p-1020,
                            1e-300,
                            0x1p-60,
                            0.1,
                            1.0,
                            3.0,
                            0x1p53,
                            0x1p74,
                            1e300,
                            0x1.fffffffffffffp+992,
                            0x1p993,
                            0x1.fffffffffffffp+1023,
                            infinity};
  atEveryLevel([&](int) {
    for (double a : numbers)
      for (double b : numbers)
        for (double y : {a, -a})
          for (double x : {b, -b}) {
            const double ys[4] = {y, y, y, y}, xs[4] = {x, x, x, x}, expected = std::atan2(y, x);
            double results[5];
            std::feclearexcept(FE_ALL_EXCEPT);
            EXPECT_EQ(nuvsAtan2_64f_A53(ys, xs, results, 4), nuvStatusOk);
            EXPECT_EQ(std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW), 0) << "y = " << y << ", x = " << x;
            results[4] = evaluate(nuvsAtan2_64f_A53, y, x).value;
            for (double result : results) {
              EXPECT_LE(distance(result, expected), std::fabs(expected) < 0x1p-1022 ? 2u : 1u)
                  << "y = " << y << ", x = " << x << ": " << result << ", not " << expected;
              if (expected == 0 || a == 0 || b == 0 || a == infinity || b == infinity) {
                EXPECT_EQ(bits(result), bits(expected)) << "y = " << y << ", x = " << x;
              }
            }
          }
  });
}

// At levels 1 to 4 a zero in a group of four sends the others another way, too. A point for which
// the ways differ in the last bit tells which one was taken: whole groups from the beginning of the
// array, single elements after them; at level 5 the element alone.
TEST(InverseTrig, GroupsOfFourGoOneWay) {
  atEveryLevel([](int level) {
    double y = 0, fast = 0, slow = 0;
    for (int tries = 0; tries < 1000 && bits(fast) == bits(slow); ++tries) {
      y += 0x1.23456789abcdfp-8;
      const double ys[4] = {y, 0.0, y, y}, xs[4] = {-1.5, 1.0, -1.5, -1.5};
      double results[4];
      fast = evaluate(nuvsAtan2_64f_A53, y, -1.5).value;
      nuvsAtan2_64f_A53(ys, xs, results, 4);
      slow = results[0];
    }
    if (level == 5) {
      EXPECT_EQ(bits(fast), bits(slow));
      return;
    }
    ASSERT_EQ(distance(fast, slow), 1u) << "no point tells the ways apart";
    constexpr int32_t len = 39;
    for (int32_t flagged = 0; flagged < len; ++flagged) {
      double ys[len], xs[len], apart[len];
      for (int32_t i = 0; i < len; ++i) ys[i] = y, xs[i] = -1.5;
      ys[flagged] = 0;
      nuvsAtan2_64f_A53(ys, xs, apart, len);
      nuvsAtan2_64f_A53(ys, xs, xs, len);
      for (int32_t i = 0; i < len; ++i) {
        if (i == flagged) continue;
        EXPECT_EQ(apart[i], flagged < 36 && i / 4 == flagged / 4 ? slow : fast)
            << "element " << i << ", zero at " << flagged;
        EXPECT_EQ(apart[i], xs[i]) << "in place";
      }
    }
  });
}

// In a directed mode results move by a few units only, and neither FTZ nor DAZ makes anything else
// of ordinary numbers; levels 1 to 4 keep their bits.
TEST(InverseTrig, OtherModes) {
  std::vector<double> xs;
  for (int i = -640; i <= 640; ++i) xs.push_back(i == 0 ? 0x1p-900 : i / 641.0 + 0x1p-30);
  const auto n = static_cast<int32_t>(xs.size());
  std::vector<double> nearest(xs.size()), other(xs.size()), ratio(xs.size(), 0.75);
  atEveryLevel([&](int level) {
    const uint32_t csr = readMxcsr();
    for (int k = 0; k < 4; ++k)
      for (uint32_t mode : {0x2000u, 0x4000u, 0x6000u, 0x8040u}) {
        const auto run = [&](double* out) {
          if (k == 3) return nuvsAtan2_64f_A53(xs.data(), ratio.data(), out, n);
          return (k == 0 ? nuvsAsin_64f_A53 : k == 1 ? nuvsAcos_64f_A53 : nuvsAtan_64f_A53)(xs.data(), out, n);
        };
        run(nearest.data());
        writeMxcsr((csr & ~modeBits) | mode);
        run(other.data());
        writeMxcsr(csr);
        for (size_t i = 0; i < xs.size(); ++i)
          EXPECT_LE(distance(other[i], nearest[i]), level == 5 && mode != 0x8040u ? 2u : 0u) << k << ", x = " << xs[i];
      }
  });
}

}  // namespace
}  // namespace qorvane::test
