// Tests over every served function at every level that this processor has.
#pragma once
#include <array>
#include <string>
#include <tuple>
#include <vector>

#include "tests/arguments.h"
#include "tests/test_support.h"

namespace qorvane::test {

inline constexpr int32_t count = 260;
inline constexpr double canary = -7.25e-77;
using Outputs = std::array<std::vector<double>, 2>;

// Arguments of one call, and what each element gives when it is computed alone.
struct Sample {
  Inputs inputs;
  Outputs alone;
  std::vector<nuvStatus> status;

  nuvStatus lastStatus(int32_t first, int32_t len) const {
    for (int32_t i = first + len - 1; i >= first; --i)
      if (status[static_cast<size_t>(i)] != nuvStatusOk) return status[static_cast<size_t>(i)];
    return nuvStatusOk;
  }
};

class AtEveryLevel : public testing::TestWithParam<std::tuple<size_t, int>> {
 protected:
  const Function& f = functions()[std::get<0>(GetParam())];
  const int level = std::get<1>(GetParam());
  const Contract& contract = f.at(level);
  AtLevel at{level};
  const size_t inputs = static_cast<size_t>(f.signature.inputs), outputs = static_cast<size_t>(f.signature.outputs);

  Outputs outputsFor(int32_t len) const {
    return {std::vector<double>(f.reals(len), canary), std::vector<double>(f.reals(len), canary)};
  }
  static Call callOf(const Inputs& x, Outputs& y, int32_t len) {
    return {{x.in[0].data(), x.in[1].data()}, {y[0].data(), y[1].data()}, {x.value[0], x.value[1]}, len, {}, {}};
  }
  // From an element on.
  Call from(Call c, int32_t first) const {
    for (auto& in : c.in) in += f.reals(first);
    return c;
  }

  Sample sampleOf(Inputs x) const {
    const auto n = static_cast<int32_t>(x.in[0].size() / f.reals(1));
    Sample s{std::move(x), outputsFor(n), {}};
    for (int32_t i = 0; i < n; ++i) {
      Call one = from(callOf(s.inputs, s.alone, 1), i);
      for (auto& out : one.out) out += f.reals(i);
      s.status.push_back(f(one));
    }
    return s;
  }
  Sample sampleOf(uint64_t seed, int32_t size = count) const { return sampleOf(mixedInputs(f, seed, size)); }
  // Arguments of all kinds, and ordinary ones, whose stretches run through the pipelines.
  std::array<Sample, 2> bothSamplesOf(uint64_t seed, int32_t size = count) const {
    return {sampleOf(seed, size), sampleOf(ordinaryInputs(f, seed, size))};
  }

  void expectResults(const Sample& s, int32_t first, double* const* out, int32_t len, const char* how) const {
    for (size_t k = 0; k < outputs; ++k)
      for (size_t i = 0; i < f.reals(len); ++i) {
        const size_t place = f.reals(first) + i;
        ASSERT_TRUE(sameResult(contract, out[k][i], s.alone[k][place]))
            << how << ", number " << i << " of output " << k << ", " << len
            << " elements, x = " << s.inputs.in[0][place] << ", y = " << s.inputs.in[1][place] << ": " << out[k][i]
            << ", alone " << s.alone[k][place];
      }
  }
  bool knowsStatusInPlace() const { return contract.neighbours != Neighbours::blocksReread; }
};

inline auto everyFunctionAndLevel() {
  return testing::Combine(testing::Range(size_t{0}, functions().size()), testing::ValuesIn(supportedLevels()));
}
inline std::string nameOf(const testing::TestParamInfo<std::tuple<size_t, int>>& instance) {
  return std::string(functions()[std::get<0>(instance.param)].name) + "_level" +
         std::to_string(std::get<1>(instance.param));
}

}  // namespace qorvane::test
