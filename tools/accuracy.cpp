// qorvane-accuracy: the errors of the library's functions against exact values.
#include <algorithm>
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

std::string decimalText(const Function& f, const Point& x) {
  std::string all;
  for (size_t r = 0; r < f.reals(); ++r) {
    char text[40];
    std::snprintf(text, sizeof text, "%s%.17g", r > 0 ? ", " : "", x[r]);
    all += text;
  }
  return all;
}

// A row for the family's accuracy.inc.
std::string worstRow(const Function& f, const Range& range, const Point& x) {
  std::string row = "WORST(" + std::string(f.stem) + ", \"" + std::string(range.name) + '"';
  for (size_t r = 0; r < f.reals(); ++r) {
    uint64_t pattern;
    std::memcpy(&pattern, &x[r], 8);
    char text[24];
    std::snprintf(text, sizeof text, ", 0x%016" PRIx64, pattern);
    row += text;
  }
  return row + ')';
}

const char* outputText(const Function& f, size_t output) {
  if (f.outputs() == 1) return "";
  if (f.signature.parts == 2) return output == 0 ? ", real part" : ", imaginary part";
  return output == 0 ? ", first output" : ", second output";
}

void printFinding(const Function& f, const Finding& w) {
  std::printf("    largest error %.4f ulp at %s (%s)%s\n    result %.17g (%a), exact %s\n", std::abs(w.error),
              decimalText(f, w.x).c_str(), argumentText(f, w.x).c_str(), outputText(f, w.output), w.result, w.result,
              exactValue(f, w, 25).c_str());
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
  Point x{};
  std::copy_n(o.at.begin(), std::min(o.at.size(), mostReals), x.begin());
  for (const Function* f : o.functions) {
    for (const LevelGroup& group : levelGroups(*f)) {
      std::printf("%s, level %s\n", f->stem.data(), text(group).c_str());
      printFinding(*f, evaluateAt(*f, group.first, x, 1));
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
        std::printf("%s  // %s: %.4f\n", worstRow(f, *range, found[k].x).c_str(),
                    std::string(f.programs[f.programAt(levels.first)].name).c_str(), std::abs(found[k].error));
    } else {
      const Measurement m = measure(f, levels.first, *range, o.count, o.seed, progress);
      clock.clear();
      worst = m.worst;
      std::printf("%s: %" PRId64 " results, %.3f %% correctly rounded\n", title.c_str(), m.results,
                  100 * static_cast<double>(m.correct) / static_cast<double>(m.results));
    }
    printFinding(f, worst);
    if (const double most = range->allowed(f.programAt(levels.first)); !(std::abs(worst.error) <= most))
      within = false, std::printf("    ABOVE the allowed %g ulp\n", most);
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
        for (const LevelGroup& group : levelGroups(*f))
          std::printf("%s, \"%s\", level %s: at most %g\n", f->stem.data(), r.name.data(), text(group).c_str(),
                      r.bounds[f->programAt(group.first)]);
    return 0;
  }
  if (!o.data.empty()) {
    Clock clock;
    const bool written = writeData(o.data, o.functions, o.count, o.seed,
                                   [&](const std::string& what, double part) { clock.show(what, part); });
    clock.clear();
    if (!written) std::fprintf(stderr, "qorvane-accuracy: %s can't be written\n", o.data.c_str());
    return written ? 0 : 1;
  }
  return o.at.empty() ? run(o) : runAt(o);
}
