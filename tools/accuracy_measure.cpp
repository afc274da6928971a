#include "tools/accuracy_measure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace accuracy {
namespace {

using qorvane::AtLevel;

Function withReference(const Served& served) {
  const Function f{served, findReference(served.stem)};
  const std::span<const Range> ranges = rangesOf(f.stem);
  const auto stop = [&](const char* what) {
    std::fprintf(stderr, "%s is served, but %s %s\n", f.name.data(), f.family.data(), what);
    std::exit(1);
  };
  if (f.reference == nullptr) stop("/references.inc has no row for it");
  if (ranges.empty()) stop("/accuracy.inc has no range for it");
  for (const Range& range : ranges) {
    if (range.arguments.count != f.reals()) stop("/accuracy.inc has a range with too few or too many numbers");
    if (range.boundCount != f.programCount) stop("/accuracy.inc has a range without a bound for each program");
  }
  return f;
}

}  // namespace

const std::vector<Function>& servedFunctions() {
  static const std::vector<Function> all = [] {
    provideHardArguments();
    std::vector<Function> list;
    for (const Served& served : qorvane::served()) list.push_back(withReference(served));
    return list;
  }();
  return all;
}

const Function* findFunction(std::string_view name) {
  const std::string prefixed = "nuvs" + std::string(name);
  for (const Function& f : servedFunctions())
    if (f.stem == name || f.name == name || f.name == prefixed || f.name.substr(0, f.name.find('_')) == prefixed)
      return &f;
  return nullptr;
}

std::vector<LevelGroup> levelGroups(const Function& function) {
  static const int highest = DispatchLevel;
  std::vector<LevelGroup> groups;
  for (size_t i = 0; i < function.programCount; ++i)
    if (const qorvane::Program& p = function.programs[i]; p.firstLevel <= highest)
      groups.push_back({p.firstLevel, std::min(p.lastLevel, highest)});
  return groups;
}

std::string text(const LevelGroup& group) {
  return group.first == group.last ? std::to_string(group.first)
                                   : std::to_string(group.first) + "-" + std::to_string(group.last);
}

int32_t blockLengthOf(const Function& function) {
  return function.signature.scalar || function.reference->quick == nullptr ? 128 : blockLength;
}

double& realAt(const Function& f, Block& block, size_t i, size_t r) {
  const auto parts = static_cast<size_t>(f.signature.parts);
  return r < f.ownReals() ? block.in[r / parts][i * parts + r % parts] : block.scalar[r - f.ownReals()];
}

Finding findingAt(const Function& f, Block& block, size_t i, size_t output) {
  const auto parts = static_cast<size_t>(f.signature.parts);
  Finding finding;
  for (size_t r = 0; r < f.reals(); ++r) finding.x[r] = realAt(f, block, i, r);
  finding.output = output;
  finding.result = block.out[output / parts][i * parts + output % parts];
  return finding;
}

namespace {

void run(const Function& f, int level, Block& block) {
  const AtLevel at(level);
  f.plain({{block.in[0].data(), block.in[1].data()},
           {block.out[0].data(), block.out[1].data()},
           {block.scalar[0], block.scalar[1]},
           block.count,
           {},
           {}});
}

}  // namespace

Finding evaluateAt(const Function& f, int level, const Point& x, int32_t count) {
  static Block block;
  block.count = count;
  for (size_t i = 0; i < static_cast<size_t>(count); ++i)
    for (size_t r = 0; r < f.reals(); ++r) realAt(f, block, i, r) = x[r];
  run(f, level, block);
  Finding worst;
  worst.error = -1;
  for (size_t k = 0; k < f.outputs(); ++k) {
    const double first = findingAt(f, block, 0, k).result;
    for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
      Finding one = findingAt(f, block, i, k);
      if (i > 0 && one.result == first) continue;
      one.error = std::fabs(judgeExactly(f, one).error);
      if (one.error > worst.error) worst = one;
    }
  }
  return worst;
}

void draw(const Function& f, const Range& range, Random& random, Block& block) {
  drawArguments(range, f.signature, random, static_cast<size_t>(block.count), {block.in[0].data(), block.in[1].data()},
                block.scalar.data());
}

void evaluate(const Function& f, int level, Block& block) {
  run(f, level, block);
  if (f.reference->quick == nullptr) return;
  for (size_t i = 0; i < static_cast<size_t>(block.count); ++i) {
    long double x[mostReals] = {}, results[2];
    for (size_t r = 0; r < f.reals(); ++r) x[r] = realAt(f, block, i, r);
    f.reference->quick(results, x);
    for (size_t k = 0; k < f.outputs(); ++k) block.quick[k][i] = results[k];
  }
}

namespace {

double quickErrorAt(const Function& f, const Block& block, size_t i, const Finding& finding, bool& sure) {
  if (f.reference->quick == nullptr) return sure = false, HUGE_VAL;
  return quickError(finding.result, block.quick[finding.output][i], sure);
}

}  // namespace

Finding judgedAt(const Function& function, Block& block, size_t i, size_t output) {
  Finding finding = findingAt(function, block, i, output);
  bool sure;
  finding.error = quickErrorAt(function, block, i, finding, sure);
  if (!sure) finding.error = judgeExactly(function, finding).error;
  return finding;
}

namespace {

void countInClasses(Measurement& m, double error) {
  for (size_t i = 0; i < errorClasses.size(); ++i) m.within[i] += error <= errorClasses[i];
}

}  // namespace

Measurement measure(const Function& function, int level, const Range& range, int64_t count, uint64_t seed,
                    const Progress& progress) {
  Random random{seed};
  static Block block;
  Measurement m;
  double record = -1;
  for (int64_t done = 0; done < count; done += block.count) {
    block.count = static_cast<int32_t>(std::min<int64_t>(blockLengthOf(function), count - done));
    draw(function, range, random, block);
    evaluate(function, level, block);
    for (size_t k = 0; k < function.outputs(); ++k) {
      for (size_t i = 0; i < static_cast<size_t>(block.count); ++i) {
        bool sure;
        Finding finding = findingAt(function, block, i, k);
        const double error = quickErrorAt(function, block, i, finding, sure), size = std::fabs(error);
        const bool perhapsRecord = size + quickErrorBound > record && (size > quickErrorBound || record < 0);
        const bool atALimit = std::any_of(errorClasses.begin(), errorClasses.end(),
                                          [&](double limit) { return std::fabs(size - limit) <= quickErrorBound; });
        ++m.results;
        if (sure && !perhapsRecord && !atALimit && i != 0) {
          m.correct += size < 0.5;
          countInClasses(m, size);
          continue;
        }
        const Judgement judgement = judgeExactly(function, finding);
        if (sure && std::fabs(judgement.error - error) > quickErrorBound) {
          std::fprintf(stderr, "%s of %s: the quick value is off by %g units in the last place\n", function.stem.data(),
                       argumentText(function, finding.x).c_str(), judgement.error - error);
          std::exit(1);
        }
        m.correct += judgement.correct;
        countInClasses(m, std::fabs(judgement.error));
        finding.error = judgement.error;
        if (std::fabs(finding.error) > record) record = std::fabs(finding.error), m.worst = finding;
      }
    }
    if (progress) progress(done + block.count);
  }
  return m;
}

}  // namespace accuracy
