// qorvane-accuracy: the errors of the library's functions against exact values.
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tools/accuracy_measure.h"
#include "tools/accuracy_options.h"
#include "tools/accuracy_report.h"

namespace {
using namespace accuracy;

// On stderr, when the work takes longer than two seconds.
struct Clock {
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now(), last = start;
  bool shown = false;
  void show(const std::string& what, double part) {
    const auto now = std::chrono::steady_clock::now();
    const double seconds = std::chrono::duration<double>(now - start).count();
    if (seconds < 2 || now - last < std::chrono::milliseconds(500)) return;
    last = now, shown = true;
    std::fprintf(stderr, "\r\033[K%s: %.0f %%, %.0f s left", what.c_str(), 100 * part, seconds / part - seconds);
  }
  void clear() {
    if (shown) std::fprintf(stderr, "\r\033[K"), shown = false;
  }
};

std::string argumentText(const Function& f, const Finding& w) {
  char text[120];
  if (f.hasSecond)
    std::snprintf(text, sizeof text, "%.17g, %.17g (%a, %a)", w.a, w.b, w.a, w.b);
  else
    std::snprintf(text, sizeof text, "%.17g (%a)", w.a, w.a);
  return text;
}

void printFinding(const Function& f, const Finding& w) {
  std::printf("    largest error %.4f ulp at %s%s\n    result %.17g (%a), exact %s\n", std::abs(w.error),
              argumentText(f, w).c_str(), f.outputs == 2 ? (w.output == 0 ? ", first output" : ", second output") : "",
              w.result, w.result, exactValue(f, w, 25).c_str());
}

uint64_t pattern(double x) {
  uint64_t u;
  std::memcpy(&u, &x, 8);
  return u;
}

struct Job {
  const Function* function;
  const Range* range;
  LevelGroup levels;
};

std::vector<Job> jobs(const Options& o) {
  std::vector<Job> all;
  for (const Function* f : o.functions)
    for (const Range& range : rangesOf(f->stem))
      for (const LevelGroup& group : levelGroups(*f))
        if (range.name.find(o.range) != std::string_view::npos &&
            (o.level == 0 || (o.level >= group.first && o.level <= group.last)))
          all.push_back({f, &range, group});
  return all;
}

int runAt(const Options& o) {
  for (const Function* f : o.functions) {
    for (const LevelGroup& group : levelGroups(*f)) {
      std::printf("%s, level %s\n", f->stem.data(), text(group).c_str());
      printFinding(*f, evaluateAt(*f, group.first, o.at[0], o.at.size() > 1 ? o.at[1] : 0, 1));
    }
  }
  return 0;
}

int run(const Options& o) {
  const std::vector<Job> all = jobs(o);
  if (all.empty()) stop("these functions have no range " + o.range);
  Clock clock;
  bool within = true;
  for (size_t i = 0; i < all.size(); ++i) {
    const auto& [function, range, levels] = all[i];
    const Function& f = *function;
    std::string title = std::string(f.stem) + ", " + std::string(range->name) + ", level " + text(levels);
    const auto progress = [&, i = i](int64_t done) {
      clock.show(title, (static_cast<double>(i) + static_cast<double>(done) / static_cast<double>(o.count)) /
                            static_cast<double>(all.size()));
    };
    Finding worst;
    if (o.hunting) {
      const std::vector<Finding> found = hunt(f, levels.first, *range, o.count, o.seed, progress);
      clock.clear();
      worst = found[0];
      std::printf("%s\n", title.c_str());
      for (size_t k = 0; k < std::min<size_t>(found.size(), 3); ++k)
        std::printf("WORST(%s, \"%s\", %d, %d, 0x%016" PRIx64 ", 0x%016" PRIx64 ")  // %.4f\n", f.stem.data(),
                    range->name.data(), levels.first, levels.last, pattern(found[k].a), pattern(found[k].b),
                    std::abs(found[k].error));
    } else {
      const Measurement m = measure(f, levels.first, *range, o.count, o.seed, progress);
      clock.clear();
      worst = m.worst;
      std::printf("%s: %" PRId64 " results, %.3f %% correctly rounded\n", title.c_str(), m.results,
                  100 * static_cast<double>(m.correct) / static_cast<double>(m.results));
    }
    printFinding(f, worst);
    const double bound = range->bound(levels.first);
    if (!(std::abs(worst.error) <= bound + range->margin))
      within = false, std::printf("    ABOVE the bound of %g + %g ulp\n", bound, range->margin);
    std::fflush(stdout);
  }
  return within ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  const Options o = readOptions(count, arguments);
  if (o.list) {
    for (const Function* f : o.functions)
      for (const Range& r : rangesOf(f->stem))
        std::printf("%s, \"%s\": at most %g (levels 1-3), %g (level 4), %g (level 5)\n", f->stem.data(), r.name.data(),
                    r.bound1To3, r.bound4, r.bound5);
    return 0;
  }
  if (!o.report.empty()) {
    Clock clock;
    const bool written =
        writeReport(o.report, o.count, o.seed, [&](const std::string& what, double part) { clock.show(what, part); });
    clock.clear();
    if (!written)
      std::fprintf(stderr, "qorvane-accuracy: %s/accuracy.md, its marks or the plots can't be written\n",
                   o.report.c_str());
    return written ? 0 : 1;
  }
  return o.at.empty() ? run(o) : runAt(o);
}
