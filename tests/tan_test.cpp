// tan: the boundaries between its cases, its hardest arguments, the rule of pairs and chunks, and
// the x87 unit.
#include <cfenv>
#include <cmath>
#include <random>

#include "frame/kernel_frame.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

TEST(Tan, ResultsAndStatuses) {
  struct Row {
    uint64_t x, y;  // y is the correctly rounded tangent
    uint64_t ulps;  // what the result may differ from y
    nuvStatus status;
  };
  constexpr uint64_t defaultNaN = 0xfff8000000000000;
  const Row rows[] = {
      {0x0000000000000000, 0x0000000000000000, 0, 0},
      {0x0000000000000001, 0x0000000000000001, 0, 0},
      {0x0010000000000000, 0x0010000000000000, 0, 0},
      {0x3e4fffffffffffff, 0x3e50000000000000, 0, 0},
      {0x3fe921fb54442d18, 0x3fefffffffffffff, 1, 0},
      {0x3ff921fb54442d18, 0x434d02967c31cdb5, 0, 0},  // nearest to pi/2
      {0x400921fb54442d18, 0xbca1a62633145c07, 0, 0},
      {0x40c8ffffffffffff, 0x4001f31577f0d5f5, 1, 0},  // below 12800
      {0x40c9000000000000, 0x4001f31577f13681, 1, 0},
      {0x40ff3fffffffffff, 0xbffbf67c51e6a618, 1, 0},  // below 128000: the last on the rational path
      {0x40ff400000000000, 0xbffbf67c51e2982d, 0, 0},
      {0x415fffffffffffff, 0xbfdead86e11c6ddd, 1, 0},  // the ranges of the reduction
      {0x4160000000000000, 0xbfdead86dfe19bca, 1, 0},
      {0x416b951f1572eba5, 0x43a057584c429b3a, 1, 0},  // next to poles
      {0x7506ac5b262ca1ff, 0xc3bd9ba9a7975636, 1, 0},
      {0x41cfffffffffffff, 0xbfe91c3c79d80b42, 1, 0},
      {0x41d0000000000000, 0xbfe91c3c126f9d13, 1, 0},
      {0x74f6ac5b262ca1ff, 0x3ff0000000000000, 0, 0},
      {0x57b0ff7308006e31, 0xbfa79bad437eac95, 0, 0},  // a sum of the reduction below 4
      {0x7fefffffffffffff, 0xbf74530cfe729484, 1, 0},
      {0x7ff0000000000000, defaultNaN, 0, nuvStatusOutOfDomain},
      {0x7ff8000000000123, 0x7ff8000000000123, 0, 0},
      {0x7ff0000000000456, 0x7ff8000000000456, 0, 0},
  };
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (const Row& row : rows)
      for (const uint64_t sign : {uint64_t{0}, uint64_t{1} << 63}) {
        const Element e = evaluate(nuvsTan_64f_A53, number(row.x ^ sign));
        const uint64_t expected = row.y == defaultNaN ? defaultNaN : row.y ^ sign;
        EXPECT_TRUE(bits(e.value) - expected + row.ulps <= 2 * row.ulps && e.status == row.status)
            << "level " << level << ", x = " << number(row.x ^ sign) << ": " << e << " instead of " << number(expected);
      }
  }
}

// Two neighbours share a division, so that rare elements have other last bits in a pair than alone.
// Pairs begin at the even places of each chunk of 64; from the first pair with an element for the
// special lane to the end of the chunk elements go singly, the first of that pair through the
// special lane itself.
TEST(Tan, PairsAndChunks) {
  const double x = number(0x4058368b05350626), y = number(0xc054d8dafd0eaddf);  // 96.852, -83.388: x with y
  const uint64_t alone = 0xbfe30eb3d71e3fd6, paired = 0xbfe30eb3d71e3fd5;
  const double z = number(0x40381cc0aeefed24);  // 24.112: in the special lane
  const uint64_t outside = 0xbffa1332d63292fb, inLane = 0xbffa1332d63292fa;
  struct Place {
    size_t index;
    double value;
    uint64_t result;  // 0: not looked at
  };
  const Place places[] = {
      {10, x, paired}, {11, y, 0},       {13, x, paired}, {12, y, 0},      {16, z, outside},
      {20, z, inLane}, {21, -2e5, 0},    {24, x, alone},  {25, y, 0},      {26, z, outside},
      {63, x, alone},  {62, y, 0},       {64, x, paired}, {65, y, 0},      {126, z, inLane},
      {127, 3e300, 0}, {129, x, paired}, {128, y, 0},     {130, x, alone},
  };
  std::vector<double> src(131, 1.0);
  for (const Place& p : places) src[p.index] = p.value;
  for (int level : supportedLevels())
    for (bool inPlace : {false, true}) {
      AtLevel at(level);
      std::vector<double> copy = src, other(src.size());
      double* dst = inPlace ? copy.data() : other.data();
      EXPECT_EQ(nuvsTan_64f_A53(copy.data(), dst, static_cast<int32_t>(src.size())), nuvStatusOk);
      for (const Place& p : places)
        EXPECT_TRUE(p.result == 0 || bits(dst[p.index]) == p.result)
            << "level " << level << ", element " << p.index << (inPlace ? ", in place" : "");
    }
}

// Ordinary arguments of all octants, and near zeros and poles, next to 2e5: as the first of its pair each goes through
// the special lane; behind it, or in a later pair of its chunk, through the x87 stage, singly.
TEST(Tan, SmallNeighboursOfLargeArguments) {
  constexpr int octants = 64, draws = 12;
  constexpr double piOver4 = 0.7853981633974483;
  std::vector<double> arguments;
  std::mt19937_64 random(31);
  for (int octant = 0; octant < octants; ++octant)
    for (int i = 0; i < 4 * draws; ++i) {
      const double unit = std::ldexp(static_cast<double>(random() >> 11), -53), sign = i % 2 == 0 ? 1 : -1;
      const int far = i / draws % 2 * 1000 * octant;                                        // to 64063 octants from 0
      const double distance = i / draws < 2 ? unit : std::ldexp(unit, -8 - i % draws * 2);  // from the octant's end
      arguments.push_back(sign * piOver4 * (octant + far + distance));
    }
  for (const int level : supportedLevels()) {
    AtLevel at(level);
    double worst[3] = {}, where[3] = {};
    for (const double x : arguments) {
      double first[2] = {x, 2e5}, second[2] = {2e5, x}, later[5] = {2e5, 1, 2, x, 3};
      EXPECT_EQ(nuvsTan_64f_A53(first, first, 2), nuvStatusOk);
      EXPECT_EQ(nuvsTan_64f_A53(second, second, 2), nuvStatusOk);
      EXPECT_EQ(nuvsTan_64f_A53(later, later, 5), nuvStatusOk);
      const long double exact = std::tan(static_cast<long double>(x));
      const long double ulp = std::ldexp(1.0L, std::ilogb(exact) - 52);
      const double results[] = {first[0], second[1], later[3]};
      for (int place = 0; place < 3; ++place) {
        const auto error = static_cast<double>(std::fabs(results[place] - exact) / ulp);
        if (!(error <= worst[place])) worst[place] = error, where[place] = x;
      }
    }
    EXPECT_LE(worst[0], 0.61) << "level " << level << ", before 2e5: " << where[0];
    EXPECT_LE(worst[1], 1.007) << "level " << level << ", behind 2e5: " << where[1];
    EXPECT_LE(worst[2], 1.007) << "level " << level << ", further behind 2e5: " << where[2];
  }
}

// Exceptions that the caller has unmasked in the x87 unit stay so, and the control word comes back;
// a reset of the unit would show in both.
TEST(Tan, KeepsTheX87UnitsMasks) {
  const std::vector<double> src = {0.5, 1e6, 3.0, NAN, 1e300, -HUGE_VAL, 2.0, 1e-300, 100.0};
  std::vector<double> expected(src.size()), dst(src.size());
  for (int level : supportedLevels()) {
    AtLevel at(level);
    nuvsTan_64f_A53(src.data(), expected.data(), static_cast<int32_t>(src.size()));
    for (const uint16_t word :
         {uint16_t{0x0372}, uint16_t{0x0072}, uint16_t{0x0e72}}) {  // invalid, zero divide and overflow unmasked
      std::feclearexcept(FE_ALL_EXCEPT);
      writeX87Control(word);
      const nuvStatus status = nuvsTan_64f_A53(src.data(), dst.data(), static_cast<int32_t>(src.size()));
      const uint16_t after = readX87Control();
      writeX87Control(0x037f);
      EXPECT_EQ(after, word) << "level " << level;
      EXPECT_EQ(status, nuvStatusOutOfDomain);
      for (size_t i = 0; i < src.size(); ++i)
        EXPECT_TRUE(Element({dst[i], 0}) == Element({expected[i], 0})) << "level " << level << ", x = " << src[i];
    }
  }
}

// Not even from the fast path's work on elements that the special lane then takes.
TEST(Tan, FiniteArgumentsRaiseNeitherInvalidNorDivideByZero) {
  std::vector<double> src, dst(64);
  for (int e = -1074; e <= 1023; ++e)
    src.insert(src.end(), {std::ldexp(1.0, e), -std::ldexp(1.9999999999999998, e), std::ldexp(1.5707963267948966, e)});
  src.resize(src.size() / 64 * 64 + 1, 0x1.fffffffffffffp1023);
  for (int level : supportedLevels()) {
    AtLevel at(level);
    for (size_t i = 0; i < src.size(); i += 64) {
      std::feclearexcept(FE_ALL_EXCEPT);
      EXPECT_EQ(nuvsTan_64f_A53(&src[i], dst.data(), static_cast<int32_t>(std::min<size_t>(64, src.size() - i))),
                nuvStatusOk);
      EXPECT_EQ(std::fetestexcept(FE_INVALID | FE_DIVBYZERO), 0) << "level " << level << ", from " << src[i];
    }
  }
}

}  // namespace
}  // namespace qorvane::test
