// The bits of every function, digested over fixed arguments, against what was recorded: other
// compilers, options and processors must give the same. Where a function uses the processor's
// reciprocal estimates, that holds for processors with the same ones; no record is asked for on
// others. To record anew: QORVANE_RECORD=tests/recorded_bits.inc qorvane_tests
// --gtest_filter=RecordedBits*
#include <immintrin.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/arguments.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

struct Recorded {
  const char* name;
  int level;
  uint64_t digest, estimates;  // the digest of the processor's estimates, 0 where they don't enter
};
const Recorded recorded[] = {
#include "tests/recorded_bits.inc"
};

struct Digest {
  uint64_t value = 1469598103934665603u;
  void operator()(uint64_t v) {
    value = (value ^ v) * 1099511628211u;
    value ^= value >> 29;
  }
};

// Makers' estimates of reciprocals and square roots differ; those of numbers from 1 to 4 tell them
// apart.
uint64_t estimatesHere() {
  static const uint64_t all = [] {
    Digest digest;
    for (float x = 1; x < 4; x += 0x1p-12f)
      digest(bits(_mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(x))) + 4.0 * _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(x)))));
    return digest.value;
  }();
  return all;
}
uint64_t estimatesIn(const Function& f, int level) { return f.at(level).usesEstimates ? estimatesHere() : 0; }

uint64_t digestOf(const Function& f, int level) {
  AtLevel at(level);
  Digest digest;
  const auto take = [&](double v) { digest(v != v ? 0x7ff8000000000000u : bits(v)); };
  const auto takeResults = [&](const Inputs& x) {
    const size_t size = x.in[0].size();
    std::vector<double> a(size), b(size);
    take(f({{x.in[0].data(), x.in[1].data()},
            {a.data(), b.data()},
            {x.value[0], x.value[1]},
            static_cast<int32_t>(size / f.reals(1)),
            {},
            {}}));
    for (double v : a) take(v);
    if (f.signature.outputs == 2)
      for (double v : b) take(v);
  };
  takeResults(mixedInputs(f, 21, 3000));
  // A coefficient's last bit moves one result in thousands.
  takeResults(ordinaryInputs(f, 23, f.at(level).usesEstimates ? 100'000 : 3000));
  return digest.value;
}

TEST(RecordedBits, AreTheSameHere) {
  for (const Function& f : functions())
    for (int level : supportedLevels()) {
      const uint64_t estimates = estimatesIn(f, level);
      const auto* r = std::find_if(std::begin(recorded), std::end(recorded), [&](const Recorded& e) {
        return f.name == e.name && std::max(level, 1) == e.level && e.estimates == estimates;
      });
      if (estimates != 0 && r == std::end(recorded)) continue;
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
      std::fprintf(out, "{\"%s\", %d, 0x%016llx, 0x%016llx},\n", f.name.data(), level,
                   static_cast<unsigned long long>(digestOf(f, level)),
                   static_cast<unsigned long long>(estimatesIn(f, level)));
  std::fclose(out);
}

}  // namespace
}  // namespace qorvane::test
