#include "tools/accuracy_report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

namespace accuracy {
namespace {

// The largest error expected anywhere.
double largestBound(const Function& f) {
  double largest = 0;
  for (const Range& range : rangesOf(f.stem))
    for (const double bound : range.bounds) largest = std::max(largest, bound);
  return largest;
}

// The sample, the hunt and the worst arguments known.
Measurement measureRow(const Function& f, const LevelGroup& levels, const Range& range, int64_t count, uint64_t seed,
                       const Progress& progress) {
  Measurement measured = measure(f, levels.first, range, count, seed, progress);
  const auto take = [&](const Finding& found) {
    if (std::fabs(found.error) > std::fabs(measured.worst.error)) measured.worst = found;
  };
  if (largestBound(f) > 0)
    take(hunt(f, levels.first, range, count, seed, [&](int64_t done) { progress(count + done); })[0]);
  for (const WorstArgument& known : worstArguments())
    if (known.stem == f.stem && known.range == range.name) take(evaluateAt(f, levels.first, known.reals, 1));
  return measured;
}

// Rounded up, so that no document states less than what was found.
std::string roundedUp(double error) {
  char text[40];
  std::snprintf(text, sizeof text, "%.4f", std::max(std::ceil(std::fabs(error) * 1e4 - 1e-6), 1.0) / 1e4);
  return error == 0 ? "0" : text;
}

std::string head() {
  std::string text = "function,range,arguments,first level,last level,largest error,at,results,correctly rounded";
  for (const double error : errorClasses) {
    char field[40];
    std::snprintf(field, sizeof field, ",within %g", error);
    text += field;
  }
  return text;
}

void writeRow(std::ostream& out, const Function& f, const Range& range, const LevelGroup& levels,
              const Measurement& m) {
  std::string at = m.worst.error == 0 ? "" : argumentText(f, m.worst.x);
  at.erase(std::remove(at.begin(), at.end(), ','), at.end());
  out << f.stem << ",\"" << range.name << "\",\"" << describe(range.arguments) << "\"," << levels.first << ','
      << levels.last << ',' << roundedUp(m.worst.error) << ',' << at << ',' << m.results << ',' << m.correct;
  for (const int64_t results : m.within) out << ',' << results;
  out << '\n';
}

}  // namespace

bool writeData(const std::string& path, const std::vector<const Function*>& functions, int64_t count, uint64_t seed,
               const std::function<void(const std::string&, double)>& progress) {
  std::map<std::string, std::string, std::less<>> rows;  // of a function
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);)
    if (line != head()) rows[line.substr(0, line.find(','))] += line + '\n';
  in.close();
  double work = 0, finished = 0;
  for (const Function* f : functions) work += static_cast<double>(rangesOf(f->stem).size() * levelGroups(*f).size());
  for (const Function* f : functions) {
    std::ostringstream found;
    for (const Range& range : rangesOf(f->stem)) {
      for (const LevelGroup& group : levelGroups(*f)) {
        const std::string title = std::string(f->stem) + ", " + std::string(range.name) + ", level " + text(group);
        const Measurement measured = measureRow(*f, group, range, count, seed, [&](int64_t done) {
          progress(title, (finished + static_cast<double>(done) / static_cast<double>(2 * count)) / work);
        });
        writeRow(found, *f, range, group, measured);
        ++finished;
      }
    }
    rows[std::string(f->stem)] = found.str();
    std::ofstream out(path);
    out << head() << '\n';
    for (const Function& served : servedFunctions())
      if (const auto entry = rows.find(served.stem); entry != rows.end()) out << entry->second;
    if (!out.flush()) return false;
  }
  return true;
}

}  // namespace accuracy
