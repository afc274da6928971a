#include "tools/accuracy_report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "tools/accuracy_measure.h"

namespace accuracy {
namespace {

struct Row {
  LevelGroup levels;
  Measurement measured;
};

// The largest error expected anywhere.
double largestBound(const Function& f) {
  double largest = 0;
  for (const Range& range : rangesOf(f.stem))
    for (const double bound : range.bounds) largest = std::max(largest, bound);
  return largest;
}

// The sample, the hunt and the worst arguments known.
Row measureRow(const Function& f, const LevelGroup& levels, const Range& range, int64_t count, uint64_t seed,
               const Progress& progress) {
  Row row{levels, measure(f, levels.first, range, count, seed, progress)};
  const auto take = [&](const Finding& found) {
    if (std::fabs(found.error) > std::fabs(row.measured.worst.error)) row.measured.worst = found;
  };
  if (largestBound(f) > 0)
    take(hunt(f, levels.first, range, count, seed, [&](int64_t done) { progress(count + done); })[0]);
  for (const WorstArgument& known : worstArguments())
    if (known.stem == f.stem && known.range == range.name) take(evaluateAt(f, levels.first, known.reals, 1));
  return row;
}

// Rounded up, so that the table never states less than what was found.
std::string roundedUp(double error) {
  char text[40];
  std::snprintf(text, sizeof text, "%.4f", std::ceil(std::fabs(error) * 1e4 - 1e-6) / 1e4);
  return error == 0 ? "0" : text;
}

// Rounded down, likewise.
std::string share(const Measurement& m) {
  char text[40];
  std::snprintf(text, sizeof text, "%.2f",
                std::floor(1e4 * static_cast<double>(m.correct) / static_cast<double>(m.results)) / 100);
  return m.correct == m.results ? "100" : text;
}

std::string place(const Function& f, const Finding& worst) {
  if (worst.error == 0) return "";
  std::string text = '`' + argumentText(f, worst.x) + '`';
  for (size_t comma = 0; (comma = text.find(", ", comma)) != std::string::npos; comma += 4)
    text.replace(comma, 2, "`, `");
  return text;
}

void writeRows(std::ostream& out, const Function& f, const Range& range, const std::vector<Row>& rows) {
  for (size_t i = 0; i < rows.size(); ++i) {
    Row row = rows[i];
    // Programs whose figures agree make one row.
    for (; i + 1 < rows.size(); ++i) {
      const Measurement &a = row.measured, &b = rows[i + 1].measured;
      if (a.correct != b.correct || a.worst.error != b.worst.error || (a.worst.error != 0 && a.worst.x != b.worst.x))
        break;
      row.levels.last = rows[i + 1].levels.last;
    }
    std::string arguments = describe(range.arguments), name(range.name);
    for (std::string* text : {&arguments, &name})
      for (size_t bar = 0; (bar = text->find('|', bar)) != std::string::npos; bar += 2) text->insert(bar, 1, '\\');
    out << "| " << f.stem << " | " << name << ": " << arguments << " | " << text(row.levels) << " | "
        << roundedUp(row.measured.worst.error) << " | " << place(f, row.measured.worst) << " | " << share(row.measured)
        << " |\n";
  }
}

// The largest size of an error in each of many columns of the everyday range.
constexpr size_t columns = 160;
std::vector<double> largestErrors(const Function& f, int level, const Range& range, bool logarithmic, int64_t count,
                                  uint64_t seed) {
  std::vector<double> largest(columns, 0);
  const Distribution& d = range.arguments.reals[0];
  const auto axis = [&](double x) { return logarithmic ? std::log(std::fabs(x)) : x; };
  Random random{seed};
  static Block block;
  for (int64_t done = 0; done < count; done += block.count) {
    block.count = blockLengthOf(f);
    draw(f, range, random, block);
    evaluate(f, level, block);
    for (size_t k = 0; k < f.outputs(); ++k) {
      for (size_t i = 0; i < static_cast<size_t>(block.count); ++i) {
        const Finding finding = judgedAt(f, block, i, k);
        const double part = (axis(finding.x[0]) - axis(d.low)) / (axis(d.high) - axis(d.low));
        double& column = largest[std::min(static_cast<size_t>(part * columns), columns - 1)];
        column = std::max(column, std::fabs(finding.error));
      }
    }
  }
  return largest;
}

// Levels 1 and 5 side by side. Half a unit is what any rounding costs, so the picture starts just
// below.
bool plot(const std::string& folder, const Function& f, int64_t count, uint64_t seed) {
  const Range& range = rangesOf(f.stem)[0];
  const Distribution& d = range.arguments.reals[0];
  const bool logarithmic = d.kind == Kind::magnitudes || d.kind == Kind::signedMagnitudes;
  std::vector<int> levels = {1};
  if (levelGroups(f).back().last == 5) levels.push_back(5);
  std::ostringstream script;
  double top = 0.51;
  for (const int level : levels) {
    const std::vector<double> largest = largestErrors(f, level, range, logarithmic, count, seed);
    top = std::max(top, *std::max_element(largest.begin(), largest.end()));
    script << "$level" << level << " << END\n";
    for (size_t i = 0; i < columns; ++i) {
      const double part = (static_cast<double>(i) + 0.5) / columns;
      char line[100];
      std::snprintf(line, sizeof line, "%.5g %.4f\n",
                    logarithmic ? d.low * std::pow(d.high / d.low, part) : d.low + (d.high - d.low) * part, largest[i]);
      script << line;
    }
    script << "END\n";
  }
  const double bottom = 0.5 - (top - 0.5) / 4;
  for (const char* kind : {"svg", "png"}) {
    script << "set terminal "
           << (kind[0] == 's' ? "svg size 900,300 font 'sans,12' background 'white'"
                              : "pngcairo size 900,300 font 'sans,9'")
           << "\nset output '" << folder << "/" << f.stem << "." << kind << "'\nset multiplot layout 1,"
           << levels.size() << "\nset yrange [" << bottom << ":" << top + (top - 0.5) / 10 << "]\nset xrange [" << d.low
           << ":" << d.high << "]\nset key off\nset xlabel 'argument'\n"
           << "set ylabel 'largest error, ulp'\n"
           << (logarithmic ? "set logscale x\nset format x '10^{%T}'\n" : "");
    for (const int level : levels)
      script << "set title '" << f.stem << ", level " << level << "'\nplot $level" << level
             << " using 1:2 with filledcurves y1=" << bottom << " lc rgb '#7aa6d6', 0.5 lc rgb '#c04040' dt 2\n";
    script << "unset multiplot\n";
  }
  FILE* gnuplot = popen("gnuplot", "w");
  if (gnuplot == nullptr) return false;
  const std::string text = script.str();
  const bool written = std::fwrite(text.data(), 1, text.size(), gnuplot) == text.size();
  return pclose(gnuplot) == 0 && written;
}

bool replaceMeasured(const std::string& path, const std::string& measured) {
  constexpr std::string_view start = "<!-- measured -->\n", end = "<!-- end -->";
  std::ifstream in(path);
  std::string all{std::istreambuf_iterator<char>(in), {}};
  const size_t first = all.find(start), last = all.find(end);
  if (first == std::string::npos || last == std::string::npos) return false;
  all.replace(first + start.size(), last - first - start.size(), measured);
  return static_cast<bool>(std::ofstream(path) << all);
}

}  // namespace

bool writeReport(const std::string& folder, int64_t count, uint64_t seed,
                 const std::function<void(const std::string&, double)>& progress) {
  std::ostringstream table, figures;
  table
      << "| Function | Range | Levels | Largest error, ulp | At | Correctly rounded, % |\n|---|---|---|---|---|---|\n";
  std::error_code error;
  std::filesystem::create_directories(folder + "/accuracy", error);
  double work = 0, finished = 0;
  for (const Function& f : servedFunctions())
    work += static_cast<double>(rangesOf(f.stem).size() * levelGroups(f).size());
  for (const Function& f : servedFunctions()) {
    for (const Range& range : rangesOf(f.stem)) {
      std::vector<Row> rows;
      for (const LevelGroup& group : levelGroups(f)) {
        const std::string title = std::string(f.stem) + ", " + std::string(range.name) + ", level " + text(group);
        rows.push_back(measureRow(f, group, range, count, seed, [&](int64_t done) {
          progress(title, (finished + static_cast<double>(done) / static_cast<double>(2 * count)) / work);
        }));
        ++finished;
      }
      writeRows(table, f, range, rows);
    }
    if (largestBound(f) <= 0.5) continue;  // nothing to see
    if (!plot(folder + "/accuracy", f, 4 * count, seed)) return false;
    figures << "\n![Largest error of " << f.stem << " along its everyday range](accuracy/" << f.stem << ".svg)\n";
  }
  return replaceMeasured(folder + "/accuracy.md", table.str() + figures.str());
}

}  // namespace accuracy
