// The hunt for the largest error. The error of a result is a slow function of the argument (a
// polynomial's, a table row's) plus rounding luck, which changes from one argument to the next. So
// the worst arguments of a sample are each followed by themselves: neighbours in a wide window
// first, which climbs the slow part, then in narrower ones, which tries the luck there.
#include <algorithm>
#include <cmath>

#include "tools/accuracy_measure.h"

namespace accuracy {
namespace {

constexpr size_t trails = 32;
constexpr int rounds = 40;
constexpr double narrowest = 0x1p14;

bool larger(const Finding& x, const Finding& y) { return std::fabs(x.error) > std::fabs(y.error); }

// Calls `visit` with the findings of a block.
template <class Visit>
void visitBlock(const Function& function, int level, Block& block, Visit visit) {
  evaluate(function, level, block);
  for (size_t k = 0; k < function.outputs(); ++k)
    for (size_t i = 0; i < static_cast<size_t>(block.count); ++i) visit(judgedAt(function, block, i, k));
}

}  // namespace

std::vector<Finding> hunt(const Function& function, int level, const Range& range, int64_t count, uint64_t seed,
                          const Progress& progress) {
  Random random{seed};
  static Block block;
  const auto& distributions = range.arguments.reals;
  const auto inside = [&](const Point& x) {
    for (size_t r = 0; r < function.reals(); ++r)
      if (!contains(distributions[r], x[r], r + 1 < function.reals() ? x[r + 1] : 0)) return false;
    return true;
  };
  std::vector<Finding> worst;
  int64_t done = 0;
  const auto report = [&] {
    done += block.count;
    if (progress) progress(std::min(done, count));
  };

  while (done < count / 2) {
    block.count = blockLengthOf(function);
    draw(function, range, random, block);
    visitBlock(function, level, block, [&](const Finding& finding) {
      if (worst.size() == trails && !larger(finding, worst.front())) return;
      worst.push_back(finding);
      std::push_heap(worst.begin(), worst.end(), larger);  // the least of the worst is at the front
      if (worst.size() > trails) std::pop_heap(worst.begin(), worst.end(), larger), worst.pop_back();
    });
    report();
  }

  const int64_t perRound = std::max<int64_t>((count - done) / (rounds * static_cast<int64_t>(worst.size())), 64);
  for (int round = 0; round < rounds; ++round) {
    const auto window = [&](const Distribution& d) {  // from 2^-6 of the range down to `narrowest`
      const double all = static_cast<double>(width(d)), start = std::max(all / 64, std::min(all, narrowest));
      return static_cast<uint64_t>(start * std::pow(std::min(1.0, narrowest / start), round / (rounds - 1.0)));
    };
    for (Finding& trail : worst) {
      for (int64_t tried = 0; tried < perRound; tried += block.count, report()) {
        block.count = static_cast<int32_t>(std::min<int64_t>(blockLengthOf(function), perRound - tried));
        for (size_t i = 0; i < static_cast<size_t>(block.count); ++i) {
          double next = 0;
          for (size_t r = function.reals(); r-- > 0; next = realAt(function, block, i, r)) {
            const bool scalar = r >= function.ownReals();
            if (scalar && i > 0) continue;
            // All but the first number move half of the time.
            const bool moves = r == 0 || scalar || random.next() & 1;
            const uint64_t distance = moves ? window(distributions[r]) / 2 : 0;
            realAt(function, block, i, r) = neighbour(distributions[r], trail.x[r], distance, next, random);
          }
        }
        visitBlock(function, level, block, [&](const Finding& finding) {
          // A new number may have left no room for the one before it.
          if (larger(finding, trail) && inside(finding.x)) trail = finding;
        });
      }
    }
  }

  for (Finding& finding : worst) finding.error = judgeExactly(function, finding).error;
  std::sort(worst.begin(), worst.end(), larger);
  return worst;
}

}  // namespace accuracy
