// The bits of every function, digested over fixed arguments, against what was recorded: other compilers, options and processors must give the same. Functions
// that use the processor's reciprocal estimates are recorded for the levels that don't. To record anew: QORVANE_RECORD=tests/recorded_bits.inc qorvane_tests
// --gtest_filter=RecordedBits*
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/function_table.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

struct Recorded {
  const char* name;
  int level;
  uint64_t digest;
};
const Recorded recorded[] = {
#include "tests/recorded_bits.inc"
};

uint64_t digestOf(const Function& f, int level) {
  AtLevel at(level);
  uint64_t digest = 1469598103934665603u;
  const auto take = [&](double v) {
    digest = (digest ^ (v != v ? 0x7ff8000000000000u : bits(v))) * 1099511628211u;
    digest ^= digest >> 29;
  };
  constexpr int32_t count = 3000;
  const std::vector<double> x = mixedArguments(21, count), y = mixedArguments(22, count);
  std::vector<double> a(count), b(count);
  take(f(x.data(), y.data(), 1.75, a.data(), b.data(), count));
  for (double v : a) take(v);
  if (f.hasSecondOutput())
    for (double v : b) take(v);
  return digest;
}

// Where a result depends on the processor: the estimates of reciprocals and square roots differ between makers.
bool usesEstimates(const Function& f, int level) {
  if (f.name == "nuvsLn_64f_A53" || f.name == "nuvsLog10_64f_A53") return level == 5;
  return f.name == "nuvsSqrt_64f_A53" || f.name == "nuvsInvSqrt_64f_A53";
}

TEST(RecordedBits, AreTheSameHere) {
  for (const Function& f : functions())
    for (int level : supportedLevels()) {
      if (usesEstimates(f, level)) continue;
      const auto* r =
          std::find_if(std::begin(recorded), std::end(recorded), [&](const Recorded& e) { return f.name == e.name && std::max(level, 1) == e.level; });
      ASSERT_NE(r, std::end(recorded)) << f.name << ", level " << level << " isn't recorded";
      EXPECT_EQ(digestOf(f, level), r->digest) << f.name << ", level " << level;
    }
}

TEST(RecordedBits, Recorder) {
  const char* path = std::getenv("QORVANE_RECORD");
  if (path == nullptr) GTEST_SKIP() << "only on request";
  FILE* out = std::fopen(path, "w");
  ASSERT_NE(out, nullptr);
  std::fprintf(out, "// Written by recorded_bits_test.cpp.\n");
  for (const Function& f : functions())
    for (int level : supportedLevels())
      if (!usesEstimates(f, level)) std::fprintf(out, "{\"%s\", %d, 0x%016llx},\n", f.name.c_str(), level, static_cast<unsigned long long>(digestOf(f, level)));
  std::fclose(out);
}

}  // namespace
}  // namespace qorvane::test
