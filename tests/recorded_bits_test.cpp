// The bits of every function, digested over fixed arguments (tests/recorded_inputs.h), against what
// was recorded: other compilers, options and processors must give the same. Where a function uses the processor's
// reciprocal estimates, that holds for processors with the same ones; no record is asked for on
// others. To record anew: QORVANE_RECORD=tests/recorded_bits.inc qorvane_tests
// --gtest_filter=RecordedBitsOf*
#include <immintrin.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "frame/kernel_frame.h"
#include "tests/every_function.h"
#include "tests/recorded_inputs.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

struct Recorded {
  const char* name;
  int level;
  uint64_t digest, shortDigest, modes;  // of 100,000 arguments and more, and of some 6000, for emulated processors
  uint64_t estimates;                   // the digest of the processor's estimates, 0 where they don't enter
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

constexpr int32_t manyArguments = 100'000, fewArguments = 3000;

uint64_t digestOf(const Function& f, int level, int32_t count) {
  AtLevel at(level);
  Digest digest;
  const auto take = [&](double v) { digest(v != v ? 0x7ff8000000000000u : bits(v)); };
  for (const Inputs& x : recordedInputs(f, count)) {
    const size_t size = x.in[0].size();
    std::vector<double> a(size), b(size);
    digest(static_cast<uint64_t>(f({{x.in[0].data(), x.in[1].data()},
                                    {a.data(), b.data()},
                                    {x.value[0], x.value[1]},
                                    static_cast<int32_t>(size / f.reals(1)),
                                    {},
                                    {}})));
    for (double v : a) take(v);
    if (f.signature.outputs == 2)
      for (double v : b) take(v);
  }
  return digest.value;
}

// What a caller's modes make of the results of a real program that inherits them, and NaNs with their signs and payloads,
// one at a time: of two operands that are NaNs, compilers may choose either.
uint64_t digestOfModesAndNaNs(const Function& f, int level) {
  AtLevel at(level);
  Digest digest;
  constexpr int32_t length = 1001;
  const auto take = [&](const Inputs& x, bool nans) {
    Outputs y = {std::vector<double>(f.reals(length)), std::vector<double>(f.reals(length))};
    f({{x.in[0].data(), x.in[1].data()}, {y[0].data(), y[1].data()}, {x.value[0], x.value[1]}, length, {}, {}});
    writeMxcsr(0x1f80);
    for (const auto& out : y)
      for (const double v : out) digest(!nans && v != v ? 0x7ff8000000000000u : bits(v));
  };
  if (f.at(level).mxcsr == MxcsrClass::none && f.signature.parts == 1)
    for (const uint32_t mode : {0x2000u, 0x4000u, 0x6000u, 0x8000u, 0x40u, 0x8040u})
      for (const Inputs& x : {mixedInputs(f, 41, length), ordinaryInputs(f, 42, length)}) {
        writeMxcsr(0x1f80 | mode);
        take(x, false);
      }
  for (const uint64_t nan : {0x7ff8000000000000u, 0xfff8000000000123u, 0x7ff0000000000456u, 0xfff4000000000789u})
    for (size_t place = 0; place < f.reals(2) * static_cast<size_t>(f.signature.inputs); ++place) {
      Inputs x = ordinaryInputs(f, 43, length);
      x.in[place / f.reals(2)][f.reals(200) + place % f.reals(2)] = number(nan);
      // Where two NaNs made of one meet in a sum, compilers choose, too.
      take(x, f.signature.parts == 1 && ((f.stem != "asin" && f.stem != "acos") || level < 5));
    }
  return digest.value;
}

class RecordedBits : public testing::TestWithParam<std::tuple<size_t, int>> {};

TEST_P(RecordedBits, AreTheSameHere) {
  const Function& f = functions()[std::get<0>(GetParam())];
  const int level = std::get<1>(GetParam());
  const uint64_t estimates = estimatesIn(f, level);
  const auto* r = std::find_if(std::begin(recorded), std::end(recorded), [&](const Recorded& e) {
    return f.name == e.name && std::max(level, 1) == e.level && e.estimates == estimates;
  });
  if (estimates != 0 && r == std::end(recorded)) GTEST_SKIP() << "not recorded for this processor's estimates";
  ASSERT_NE(r, std::end(recorded)) << "not recorded";
  if (std::getenv("QORVANE_EXPECTED_LEVEL") == nullptr) {
    EXPECT_EQ(digestOf(f, level, manyArguments), r->digest);
    EXPECT_EQ(digestOfModesAndNaNs(f, level), r->modes) << "modes and NaNs";
  } else {
    EXPECT_EQ(digestOf(f, level, fewArguments), r->shortDigest);
  }
}
INSTANTIATE_TEST_SUITE_P(Properties, RecordedBits, everyFunctionAndLevel(), nameOf);

TEST(RecordedBitsOfThisProcessor, AreWrittenOnRequest) {
  const char* path = std::getenv("QORVANE_RECORD");
  if (path == nullptr) GTEST_SKIP() << "only on request";
  FILE* out = std::fopen(path, "w");
  ASSERT_NE(out, nullptr);
  std::fprintf(out, "// Written by recorded_bits_test.cpp.\n");
  for (const Function& f : functions())
    for (int level : supportedLevels())
      std::fprintf(out, "{\"%s\", %d, 0x%016" PRIx64 ", 0x%016" PRIx64 ", 0x%016" PRIx64 ", 0x%016" PRIx64 "},\n",
                   f.name.data(), level, digestOf(f, level, manyArguments), digestOf(f, level, fewArguments),
                   digestOfModesAndNaNs(f, level), estimatesIn(f, level));
  std::fclose(out);
}

}  // namespace
}  // namespace qorvane::test
