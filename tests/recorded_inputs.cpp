#include "tests/recorded_inputs.h"

#include <algorithm>
#include <iterator>

#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr int32_t copies = 13;

// Thousands of rows: plain numbers are compiled quickly.
struct WitnessRow {
  const char* stem;
  uint64_t patterns[4];
};
constexpr WitnessRow witnessRows[] = {
#define WITNESS(stem, ...) {#stem, {__VA_ARGS__}},
#include "tests/witnesses.inc"
#undef WITNESS
};

// Not those that are drawn by functions of the C library, whose last bits may differ from one processor to another.
bool isPortable(const accuracy::Range& range) {
  using enum accuracy::Kind;
  return std::all_of(range.arguments.reals.begin(), range.arguments.reals.end(), [](const accuracy::Distribution& d) {
    return d.kind == none || d.kind == uniform || d.kind == magnitudes || d.kind == signedMagnitudes ||
           d.kind == whole || d.kind == halves;
  });
}

}  // namespace

const std::vector<Witness>& witnesses() {
  static const std::vector<Witness> all = [] {
    std::vector<Witness> list;
    for (const WitnessRow& row : witnessRows) {
      list.push_back({row.stem, {}});
      std::transform(std::begin(row.patterns), std::end(row.patterns), list.back().reals.begin(), number);
    }
    return list;
  }();
  return all;
}

Inputs copiesOf(const Function& f, const accuracy::Point& reals) {
  const auto parts = static_cast<size_t>(f.signature.parts), inputs = static_cast<size_t>(f.signature.inputs);
  Inputs x{{std::vector<double>(f.reals(copies)), std::vector<double>(f.reals(copies))}, {}};
  for (size_t i = 0; i < f.reals(copies); ++i)
    for (size_t k = 0; k < inputs; ++k) x.in[k][i] = reals[k * parts + i % parts];
  if (f.signature.scalar)
    for (size_t k = 0; k < parts; ++k) x.value[k] = reals[inputs * parts + k];
  return x;
}

std::vector<Inputs> recordedInputs(const Function& f, int32_t count) {
  std::vector<Inputs> all = {mixedInputs(f, 21, 2999)};
  std::vector<const accuracy::Range*> ranges;
  for (const accuracy::Range& range : accuracy::rangesOf(f.stem))
    if (isPortable(range)) ranges.push_back(&range);
  // The scalar is one for a call, so there are many calls; elsewhere one for a range.
  const int32_t calls = f.signature.scalar ? 200 : static_cast<int32_t>(ranges.size());
  accuracy::Random random{23};
  for (int32_t i = 0; i < calls; ++i) {
    const int32_t length = count / calls + i % 7;
    Inputs x{{std::vector<double>(f.reals(length)), std::vector<double>(f.reals(length))}, {}};
    accuracy::drawArguments(*ranges[static_cast<size_t>(i) % ranges.size()], f.signature, random,
                            static_cast<size_t>(length), {x.in[0].data(), x.in[1].data()}, x.value.data());
    all.push_back(std::move(x));
  }
  for (const accuracy::WorstArgument& worst : accuracy::worstArguments())
    if (worst.stem == f.stem) all.push_back(copiesOf(f, worst.reals));
  for (const Witness& one : witnesses())
    if (one.stem == f.stem) all.push_back(copiesOf(f, one.reals));
  return all;
}

}  // namespace qorvane::test
