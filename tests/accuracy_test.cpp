// The error bounds of every served function, in every named range and at every level that runs
// another program: on a seeded sample, and at the worst arguments that hunts have found.
#include <algorithm>
#include <cmath>

#include "tests/test_support.h"
#include "tools/accuracy_measure.h"

namespace qorvane::test {
namespace {

using namespace accuracy;

constexpr int64_t sample = 60000;

class Accuracy : public testing::TestWithParam<std::string_view> {};

void expectWithin(const Function& function, const Range& range, int level, const Finding& worst) {
  EXPECT_LE(std::fabs(worst.error), range.allowed(function.programAt(level)))
      << range.stem << ", " << range.name << ", level " << level << ": output " << worst.output << " at "
      << argumentText(function, worst.x) << " is " << std::hexfloat << worst.result;
}

TEST_P(Accuracy, KeepsItsBounds) {
  const Function& function = *findFunction(GetParam());
  const int64_t count = function.reference->quick == nullptr ? sample / 16 : sample;  // MPC takes its time
  for (const LevelGroup& group : levelGroups(function))
    for (const Range& range : rangesOf(function.stem))
      expectWithin(function, range, group.first, measure(function, group.first, range, count, 42, nullptr).worst);
}

// Alone and in a block, which may run different programs.
TEST_P(Accuracy, KeepsItsBoundsAtTheWorstArguments) {
  const Function& function = *findFunction(GetParam());
  for (const WorstArgument& worst : worstArguments()) {
    if (worst.stem != function.stem) continue;
    const Range* range = nullptr;
    for (const Range& one : rangesOf(function.stem))
      if (one.name == worst.range) range = &one;
    ASSERT_NE(range, nullptr) << function.stem << " has no range " << worst.range;
    for (const int level : supportedLevels())
      for (const int32_t count : {1, 16})
        expectWithin(function, *range, level, evaluateAt(function, level, worst.reals, count));
  }
}

std::vector<std::string_view> servedStems() {
  std::vector<std::string_view> stems;
  for (const Function& function : servedFunctions()) stems.push_back(function.stem);
  return stems;
}
INSTANTIATE_TEST_SUITE_P(Functions, Accuracy, testing::ValuesIn(servedStems()),
                         [](const auto& served) { return std::string(served.param); });

// A measurement that can't see an error proves nothing: one unit more in a result is one unit more
// of error.
TEST(AccuracyMeasurement, CountsUnitsInTheLastPlace) {
  const Function* exp = findFunction("exp");
  ASSERT_NE(exp, nullptr);
  struct Row {
    double x, correct;
  };
  for (const Row& row :
       {Row{1, 0x1.5bf0a8b145769p1}, Row{-740, 0x0.0000000000055p-1022}, Row{709.5, 0x1.81e9b4b52d0c9p1023}}) {
    Finding finding{{row.x}, 0, row.correct, 0};
    const Judgement right = judgeExactly(*exp, finding);
    EXPECT_TRUE(right.correct) << row.x;
    finding.result = std::nextafter(row.correct, HUGE_VAL);
    const Judgement wrong = judgeExactly(*exp, finding);
    EXPECT_FALSE(wrong.correct) << row.x;
    EXPECT_DOUBLE_EQ(wrong.error, right.error + 1) << row.x;
  }
  EXPECT_NEAR(evaluateAt(*exp, 1, {0x1.1e75f02d006e2p3}, 16).error, 0.5249, 0.0001);
}

// The classes of errors count as judging every result exactly does.
TEST(AccuracyMeasurement, CountsItsClassesOfErrors) {
  const Function* exp = findFunction("exp");
  ASSERT_NE(exp, nullptr);
  const auto ranges = rangesOf("exp");
  const auto range = std::find_if(ranges.begin(), ranges.end(), [](auto& r) { return r.name == "subnormal results"; });
  ASSERT_NE(range, ranges.end());
  Random random{5};
  static Block block;
  block.count = blockLengthOf(*exp);
  draw(*exp, *range, random, block);
  evaluate(*exp, 1, block);
  Measurement expected;
  for (size_t i = 0; i < static_cast<size_t>(block.count); ++i) {
    const double error = std::fabs(judgeExactly(*exp, findingAt(*exp, block, i, 0)).error);
    for (size_t k = 0; k < errorClasses.size(); ++k) expected.within[k] += error <= errorClasses[k];
  }
  const Measurement measured = measure(*exp, 1, *range, block.count, 5, nullptr);
  EXPECT_EQ(measured.within, expected.within);
  EXPECT_EQ(measured.results, block.count);
  EXPECT_LT(measured.within[0], measured.within[2]);
}

}  // namespace
}  // namespace qorvane::test
