// qorvane-accuracy: the errors of the library's functions against exact values.
#include <algorithm>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tools/accuracy_measure.h"
#include "tools/accuracy_report.h"

namespace {
using namespace accuracy;

constexpr char usage[] =
    "usage: qorvane-accuracy [OPTIONS] [FUNCTION...]\n"
    "Measures the functions (all served ones by default) against exact values, in units in the last place.\n"
    "  --level N      one level (default: each group of levels that run one program)\n"
    "  --range NAME   one range, by a part of its name (default: all of the function)\n"
    "  --count N      arguments for each range and level (default 1000000)\n"
    "  --seed N       of the generator (default 1)\n"
    "  --hunt         search around the worst arguments for worse ones, and print them as rows of "
    "tests/worst_arguments.inc\n"
    "  --at A [B]     one argument, or one pair (hexadecimal numbers and 0x patterns of 16 digits are understood "
    "too)\n"
    "  --all FOLDER   measure and hunt everything, write the table into FOLDER/accuracy.md and plots into "
    "FOLDER/accuracy/\n"
    "  --list         the functions, their ranges and bounds\n";

struct Options {
  std::vector<const Function*> functions;
  int level = 0;
  std::string range, report;
  int64_t count = 1000000;
  uint64_t seed = 1;
  bool hunting = false, list = false;
  std::vector<double> at;
};

[[noreturn]] void stop(const char* what, const char* which) {
  std::fprintf(stderr, "qorvane-accuracy: %s %s\n\n%s", what, which, usage);
  std::exit(2);
}

double parseNumber(const char* text) {
  char* end;
  if (std::strlen(text) == 18 && std::strncmp(text, "0x", 2) == 0 && std::strpbrk(text, ".pP") == nullptr) {
    const uint64_t pattern = std::strtoull(text, &end, 16);
    double x;
    std::memcpy(&x, &pattern, 8);
    if (*end == 0) return x;
  }
  const double x = std::strtod(text, &end);
  if (*end != 0) stop("not a number:", text);
  return x;
}

Options parse(int count, char** arguments) {
  Options o;
  for (int i = 1; i < count; ++i) {
    const std::string option = arguments[i];
    const auto value = [&] {
      return i + 1 < count ? arguments[++i] : (stop("a value is missing after", arguments[i]), nullptr);
    };
    if (option == "--level")
      o.level = std::atoi(value());
    else if (option == "--range")
      o.range = value();
    else if (option == "--count")
      o.count = static_cast<int64_t>(parseNumber(value()));
    else if (option == "--seed")
      o.seed = std::strtoull(value(), nullptr, 0);
    else if (option == "--hunt")
      o.hunting = true;
    else if (option == "--all")
      o.report = value();
    else if (option == "--list")
      o.list = true;
    else if (option == "--at") {
      o.at.push_back(parseNumber(value()));
      if (i + 1 < count && findFunction(arguments[i + 1]) == nullptr && arguments[i + 1][0] != '-')
        o.at.push_back(parseNumber(value()));
    } else if (const Function* f = findFunction(option))
      o.functions.push_back(f);
    else
      stop(option[0] == '-' ? "no such option:" : "not served:", arguments[i]);
  }
  if (o.functions.empty())
    for (const Function& f : servedFunctions()) o.functions.push_back(&f);
  if (o.count < 1) stop("--count is at least", "1");
  return o;
}

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
  if (all.empty()) stop("no such range or level:", o.range.c_str());
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
                    f.programs[f.programAt(levels.first)].name.data(), std::abs(found[k].error));
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
  const Options o = parse(count, arguments);
  if (o.list) {
    for (const Function* f : o.functions)
      for (const Range& r : rangesOf(f->stem))
        for (const LevelGroup& group : levelGroups(*f))
          std::printf("%s, \"%s\", level %s: at most %g\n", f->stem.data(), r.name.data(), text(group).c_str(),
                      r.bounds[f->programAt(group.first)]);
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
