// Processor detection, the choice of the level, and the thread count.
#include <cpuid.h>
#include <omp.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "frame/detection.h"
#include "tests/arguments.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr uint32_t ecxBit(int bit) { return 1u << bit; }

TEST(Dispatch, FeatureWord) {
  const ProcessorWords nothing = {0, 0, false, 0};
  EXPECT_EQ(featuresOf(nothing), 0u);
  EXPECT_EQ(featuresOf({~0u, ~0u, true, ~0u}), 0x7fffu);
  EXPECT_EQ(featuresOf({0, ecxBit(23), false, 0}), 0x1u);
  EXPECT_EQ(featuresOf({0, ecxBit(25) | ecxBit(26), false, 0}), 0x6u);
  const std::pair<int, uint64_t> ecx[] = {{0, 0x8},    {9, 0x10},   {22, 0x20}, {19, 0x40},   {20, 0x80},
                                          {28, 0x100}, {25, 0x400}, {1, 0x800}, {30, 0x2000}, {29, 0x4000}};
  for (auto [bit, feature] : ecx) EXPECT_EQ(featuresOf({ecxBit(bit), 0, false, 0}), feature) << "ECX bit " << bit;
  EXPECT_EQ(featuresOf({0, 0, true, 0}), savesAvxState);
  EXPECT_EQ(featuresOf({0, 0, false, 2}), 0x1000u);
}

TEST(Dispatch, TheFirstLevelThatFits) {
  struct Row {
    uint64_t features;
    int32_t level;
    uint64_t kept;
  };
  const Row rows[] = {
      {0x7fff, 5, 0x6fdf},
      {hasAvx | savesAvxState, 5, 0x300},
      {0x7fff & ~savesAvxState, 4, 0xcdf},  // AVX that the system doesn't save
      {hasSse41, 4, 0x40},
      {0x3f, 3, 0x3f},
      {0x1f, 2, 0x1f},
      {0x2f, 1, 0xf},  // MOVBE without SSSE3
      {0xf, 1, 0xf},
      {0x7, 0, 0x7},
      {hasMovbe | 0x7, 0, 0x7},
  };
  for (const Row& row : rows) {
    const LevelChoice choice = chooseLevel(row.features);
    EXPECT_EQ(choice.level, row.level) << std::hex << row.features;
    EXPECT_EQ(choice.kept, row.kept) << std::hex << row.features;
  }
}

// The tests that run under an emulated processor say which level it must get.
TEST(Dispatch, TheLoadHookHasChosen) {
  uint64_t features = 0;
  ASSERT_EQ(queryProcessorFeatures(&features, nullptr), nuvStatusOk);
  const LevelChoice choice = chooseLevel(features);
  EXPECT_EQ(ProcessorFeatures, choice.kept);
  __builtin_cpu_init();
  const int byCompiler = __builtin_cpu_supports("avx")      ? 5
                         : __builtin_cpu_supports("sse4.1") ? 4
                         : __builtin_cpu_supports("ssse3")  ? 2
                         : __builtin_cpu_supports("sse3")   ? 1
                                                            : 0;
  uint32_t a, b, ecx, d;
  __cpuid(1, a, b, ecx, d);
  const int level = byCompiler == 2 && (ecx & ecxBit(22)) != 0 ? 3 : byCompiler;  // it doesn't tell MOVBE
  const char* expected = std::getenv("QORVANE_EXPECTED_LEVEL");
  EXPECT_EQ(DispatchLevel, expected != nullptr ? std::atoi(expected) : level);
}

// XMM and YMM state must both be saved; without OSXSAVE there is no XGETBV to ask.
TEST(Dispatch, SavedStateOfXcr0) {
  constexpr uint32_t both = ecxBit(27) | ecxBit(28);
  EXPECT_TRUE(avxStateIsSaved(both, [] { return 6u; }));
  EXPECT_TRUE(avxStateIsSaved(~0u, [] { return 0xe7u; }));
  EXPECT_FALSE(avxStateIsSaved(both, [] { return 3u; }));
  EXPECT_FALSE(avxStateIsSaved(both, [] { return 5u; }));
  for (const uint32_t ecx : {0u, ecxBit(27), ecxBit(28), ~ecxBit(27), ~ecxBit(28)})
    EXPECT_FALSE(avxStateIsSaved(ecx, []() -> uint32_t { std::abort(); })) << ecx;
}

// What goes through level 0 is what goes through level 1.
TEST(Dispatch, Level0HasTheKernelsOfLevel1) {
  for (const Function& f : functions()) {
    const Inputs x = mixedInputs(f, 31, 500);
    std::vector<double> results[2][2];
    nuvStatus status[2];
    for (const int level : {0, 1}) {
      AtLevel at(level);
      for (auto& out : results[level]) out.assign(f.reals(500), 0.0);
      status[level] = f({{x.in[0].data(), x.in[1].data()},
                         {results[level][0].data(), results[level][1].data()},
                         {x.value[0], x.value[1]},
                         500,
                         {},
                         {}});
    }
    EXPECT_EQ(status[0], status[1]) << f.name;
    for (int k = 0; k < 2; ++k)
      EXPECT_EQ(std::memcmp(results[0][k].data(), results[1][k].data(), f.reals(500) * 8), 0) << f.name;
  }
}

// Callers compare with the numbers, too.
TEST(Dispatch, StatusesAreTheNumbersOfTheHeader) {
  const int numbers[] = {nuvStatusOk,        nuvStatusBadLength, nuvStatusNullPointer, nuvStatusOverflow,
                         nuvStatusUnderflow, nuvStatusPole,      nuvStatusOutOfDomain};
  const int expected[] = {0, -6, -8, 12, 17, 18, 19};
  EXPECT_TRUE(std::equal(std::begin(numbers), std::end(numbers), std::begin(expected)));
}

TEST(Dispatch, ProcessorInformation) {
  EXPECT_EQ(queryProcessorFeatures(nullptr, nullptr), nuvStatusNullPointer);
  uint64_t features = getInfoMagic;
  uint32_t vendor[4] = {0, 99, 0, 99}, leaf1[4] = {0, 0, 0, 0};
  EXPECT_EQ(queryProcessorFeatures(&features, vendor), nuvStatusOk);
  EXPECT_GE(vendor[0], 1u);  // the highest leaf; then the vendor's name in letters
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(((vendor[1] >> 8 * i) & 0xff) >= 'A' && ((vendor[1] >> 8 * i) & 0xff) <= 'z');
  features = 0;
  EXPECT_EQ(queryProcessorFeatures(&features, leaf1), nuvStatusOk);
  EXPECT_EQ(features >> 2 & 1, leaf1[3] >> 26 & 1);
  EXPECT_NE(leaf1[0], vendor[0]);
  // A leaf whose sub-leaves differ: the sizes of saved state.
  uint32_t highest, b, c, d;
  __cpuid(0, highest, b, c, d);
  if (highest < 0xd) return;
  for (const uint32_t subleaf : {0u, 1u, 2u}) {
    uint32_t info[4] = {0xd, 99, subleaf, 99}, expected[4];
    features = getInfoMagic;
    queryProcessorFeatures(&features, info);
    __cpuid_count(0xd, subleaf, expected[0], expected[1], expected[2], expected[3]);
    EXPECT_EQ(std::memcmp(info, expected, sizeof info), 0) << "sub-leaf " << subleaf;
  }
}

TEST(Threads, CountIsStored) {
  int32_t before = 0, now = 0;
  ASSERT_EQ(nuvGetNumThreads(&before), nuvStatusOk);
  EXPECT_EQ(before, std::min(omp_get_num_procs(), omp_get_max_threads())) << "the count at load";
  EXPECT_EQ(nuvGetNumThreads(nullptr), nuvStatusNullPointer);
  const auto countAfter = [&](nuvStatus expected, nuvStatus got) {
    EXPECT_EQ(got, expected);
    EXPECT_EQ(nuvGetNumThreads(&now), nuvStatusOk);
    return now;
  };
  EXPECT_EQ(countAfter(nuvStatusOk, nuvSetNumThreads(1000000)), 1000000);
  EXPECT_EQ(countAfter(nuvStatusBadLength, nuvSetNumThreads(0)), 1000000);
  EXPECT_EQ(countAfter(nuvStatusBadLength, nuvSetNumThreads(-5)), 1000000);
  const int defaults[][3] = {
      {8, 4, 4}, {4, 8, 4}, {3, 3, 3}, {0, 8, 3}, {8, -1, 3}};  // processors, most threads, the count then
  for (const auto& row : defaults) {
    setDefaultThreads(row[0], row[1]);
    nuvGetNumThreads(&now);
    EXPECT_EQ(now, row[2]);
  }
  nuvSetNumThreads(before);
}

}  // namespace
}  // namespace qorvane::test
