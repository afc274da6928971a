#include "tools/accuracy_measure.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/dispatch.h"

namespace qorvane {
#define FUNCTION(name, stem, shape, ...) extern const DispatchTable<shapes::shape> stem##Kernels;
#include "frame/functions.inc"
#undef FUNCTION
}  // namespace qorvane

namespace accuracy {
namespace {

using namespace qorvane;

[[maybe_unused]] void run(shapes::realUnary* kernel, const double* a, const double*, double* const* outputs,
                          int32_t len) {
  kernel(a, outputs[0], len);
}
[[maybe_unused]] void run(shapes::realBinary* kernel, const double* a, const double* b, double* const* outputs,
                          int32_t len) {
  kernel(a, b, outputs[0], len);
}
[[maybe_unused]] void run(shapes::realSplit* kernel, const double* a, const double*, double* const* outputs,
                          int32_t len) {
  kernel(a, outputs[0], outputs[1], len);
}
[[maybe_unused]] void run(shapes::realScalar* kernel, const double* a, const double* b, double* const* outputs,
                          int32_t len) {
  kernel(a, b[0], outputs[0], len);
}

template <class Kernel, const DispatchTable<Kernel>* table>
Function describe(const char* name, const char* stem) {
  constexpr bool scalar = std::is_same_v<Kernel, shapes::realScalar>,
                 binary = std::is_same_v<Kernel, shapes::realBinary>;
  Function f{name,
             stem,
             scalar,
             scalar || binary,
             std::is_same_v<Kernel, shapes::realSplit> ? 2 : 1,
             {},
             nullptr,
             findReference(stem)};
  for (int level = 0; level < 6; ++level) f.kernels[level] = reinterpret_cast<const void*>(table->level[level]);
  f.call = [](int level, const double* a, const double* b, double* const* outputs, int32_t len) {
    run(table->level[level], a, b, outputs, len);
  };
  if (f.reference == nullptr || rangesOf(stem).empty()) {
    std::fprintf(stderr, "nuvs%s is served, but tools/references.cpp or tools/ranges.inc has no row for it\n", name);
    std::exit(1);
  }
  return f;
}

struct ExactResults {
  mpfr_t a, b, values[2];
  ExactResults(const Function& f, double first, double second) {
    mpfr_inits2(53, a, b, nullptr);
    mpfr_inits2(exactBits, values[0], values[1], nullptr);
    mpfr_set_d(a, first, MPFR_RNDN);
    mpfr_set_d(b, second, MPFR_RNDN);
    f.reference->exact(values, a, b);
  }
  ExactResults(const ExactResults&) = delete;
  ExactResults& operator=(const ExactResults&) = delete;
  ~ExactResults() { mpfr_clears(a, b, values[0], values[1], nullptr); }
};

}  // namespace

const std::vector<Function>& servedFunctions() {
  static const std::vector<Function> all = {
#define FUNCTION(name, stem, shape, ...) describe<shapes::shape, &stem##Kernels>(#name, #stem),
#include "frame/functions.inc"
#undef FUNCTION
  };
  return all;
}

const Function* findFunction(std::string_view name) {
  for (const Function& f : servedFunctions())
    if (f.stem == name || f.name == name || f.name.substr(0, f.name.find('_')) == name) return &f;
  return nullptr;
}

std::vector<LevelGroup> levelGroups(const Function& function) {
  static const int highest = DispatchLevel;
  std::vector<LevelGroup> groups;
  for (int level = 1; level <= highest; ++level) {
    if (level > 1 && function.kernels[level] == function.kernels[level - 1])
      groups.back().last = level;
    else
      groups.push_back({level, level});
  }
  return groups;
}

std::string text(const LevelGroup& group) {
  return group.first == group.last ? std::to_string(group.first)
                                   : std::to_string(group.first) + "-" + std::to_string(group.last);
}

Judgement judgeExactly(const Function& function, const Finding& finding) {
  const ExactResults exact(function, finding.a, finding.b);
  const mpfr_t& value = exact.values[finding.output];
  const double rounded = mpfr_get_d(value, MPFR_RNDN), y = finding.result;
  if (rounded == y || (std::isnan(rounded) && std::isnan(y))) {
    if (!std::isfinite(y)) return {0, true};
  } else if (std::isnan(rounded) || std::isnan(y) || mpfr_inf_p(value)) {
    return {HUGE_VAL, false};
  }
  // An infinite result counts as 2^1024 here.
  mpfr_t difference;
  mpfr_init2(difference, exactBits);
  mpfr_set_d(difference, std::isinf(y) ? std::copysign(0x1p1023, y) : y, MPFR_RNDN);
  if (std::isinf(y)) mpfr_mul_2ui(difference, difference, 1, MPFR_RNDN);
  mpfr_sub(difference, difference, value, MPFR_RNDN);
  const long exponent =
      mpfr_zero_p(value) ? -1022 : std::clamp(static_cast<long>(mpfr_get_exp(value)) - 1, -1022L, 1023L);
  mpfr_mul_2si(difference, difference, 52 - exponent, MPFR_RNDN);
  const double error = mpfr_get_d(difference, MPFR_RNDN);
  mpfr_clear(difference);
  return {error, rounded == y};
}

double quickError(double result, long double quick, bool& sure) {
  uint64_t significand;
  uint16_t field;
  std::memcpy(&significand, &quick, 8);
  std::memcpy(&field, reinterpret_cast<const char*>(&quick) + 8, 2);
  const int exponent = std::max((field & 0x7fff) - 16383, -1022);
  // A power of two may stand for a number of the binade below.
  sure = exponent < 1023 && std::isfinite(result) && (significand != uint64_t{1} << 63 || result == quick) &&
         (quick != 0 || result == 0);
  if (!sure) return HUGE_VAL;
  long double unitsIn1 = 1;
  field = static_cast<uint16_t>(16383 + 52 - exponent);
  std::memcpy(reinterpret_cast<char*>(&unitsIn1) + 8, &field, 2);
  return static_cast<double>((result - quick) * unitsIn1);
}

std::string exactValue(const Function& function, const Finding& finding, int digits) {
  const ExactResults exact(function, finding.a, finding.b);
  char out[100];
  mpfr_snprintf(out, sizeof out, "%.*Rg", digits, exact.values[finding.output]);
  return out;
}

Finding evaluateAt(const Function& function, int level, double a, double b, int32_t count) {
  const auto n = static_cast<size_t>(count);
  const std::vector<double> as(n, a), bs(n, b);
  std::vector<double> results[2] = {std::vector<double>(n), std::vector<double>(n)};
  double* const outputs[] = {results[0].data(), results[1].data()};
  function.call(level, as.data(), bs.data(), outputs, count);
  Finding worst;
  worst.error = -1;
  for (int k = 0; k < function.outputs; ++k) {
    for (size_t i = 0; i < n; ++i) {
      Finding one{a, b, k, results[k][i], 0};
      if (i > 0 && one.result == results[k][0]) continue;
      one.error = std::fabs(judgeExactly(function, one).error);
      if (one.error > worst.error) worst = one;
    }
  }
  return worst;
}

void draw(const Function& f, const Range& range, Random& random, Block& block) {
  const auto n = static_cast<size_t>(block.count);
  drawArguments(range, random, std::span(block.a).first(n), std::span(block.b).first(n), f.sameSecond);
}

void evaluate(const Function& f, int level, Block& block) {
  double* const outputs[] = {block.results[0].data(), block.results[1].data()};
  f.call(level, block.a.data(), block.b.data(), outputs, block.count);
  for (size_t i = 0; i < static_cast<size_t>(block.count); ++i) {
    long double both[2];
    f.reference->quick(both, block.a[i], block.b[i]);
    for (size_t k = 0; k < static_cast<size_t>(f.outputs); ++k) block.quick[k][i] = both[k];
  }
}

Finding judgedAt(const Function& function, const Block& block, size_t i, size_t output) {
  Finding finding = findingAt(block, i, output);
  bool sure;
  finding.error = quickError(finding.result, block.quick[output][i], sure);
  if (!sure) finding.error = judgeExactly(function, finding).error;
  return finding;
}

Measurement measure(const Function& function, int level, const Range& range, int64_t count, uint64_t seed,
                    const Progress& progress) {
  Random random{seed};
  static Block block;
  Measurement m;
  double record = -1;
  for (int64_t done = 0; done < count; done += block.count) {
    block.count = static_cast<int32_t>(std::min<int64_t>(function.sameSecond ? 128 : blockLength, count - done));
    draw(function, range, random, block);
    evaluate(function, level, block);
    for (size_t k = 0; k < static_cast<size_t>(function.outputs); ++k) {
      for (size_t i = 0; i < static_cast<size_t>(block.count); ++i) {
        bool sure;
        const double error = quickError(block.results[k][i], block.quick[k][i], sure), size = std::fabs(error);
        const bool perhapsRecord = size + quickErrorBound > record && (size > quickErrorBound || record < 0);
        ++m.results;
        if (sure && !perhapsRecord && std::fabs(size - 0.5) > quickErrorBound && i != 0) {
          m.correct += size < 0.5;
          continue;
        }
        Finding finding = findingAt(block, i, k);
        const Judgement judgement = judgeExactly(function, finding);
        if (sure && std::fabs(judgement.error - error) > quickErrorBound) {
          std::fprintf(stderr, "%s of %a, %a: the quick value is off by %g units in the last place\n",
                       function.stem.data(), finding.a, finding.b, judgement.error - error);
          std::exit(1);
        }
        m.correct += judgement.correct;
        finding.error = judgement.error;
        if (std::fabs(finding.error) > record) record = std::fabs(finding.error), m.worst = finding;
      }
    }
    if (progress) progress(done + block.count);
  }
  return m;
}

}  // namespace accuracy
