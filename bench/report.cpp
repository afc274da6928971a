// What a comparison leaves behind: the table on stdout, and in docs/ the same in Markdown and as a
// bar chart.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "bench/measurements.h"

namespace qorvane::bench {
namespace {

constexpr char beginMark[] = "<!-- speed table: written by qorvane-compare -->";
constexpr char endMark[] = "<!-- end of the speed table -->";

std::string title(const Row& row) { return row.label.empty() ? row.stem : row.stem + ", " + row.label; }

std::string cell(double nanoseconds) {
  if (nanoseconds == 0) return "";
  char text[32];
  std::snprintf(text, sizeof text, nanoseconds < 10 ? "%.2f" : "%.1f", nanoseconds);
  return text;
}

std::string markdownTable(const Measurements& m) {
  std::ostringstream out;
  char clock[32];
  std::snprintf(clock, sizeof clock, "%.2f", m.clock);
  out << "Nanoseconds an element, the best of many turns; the core ran at " << clock << " GHz. "
      << remark(m.disturbance) << "\n\n| function | n |";
  for (const std::string& name : m.contestants) out << ' ' << name << " |";
  out << "\n|---|---:|";
  for (size_t i = 0; i < m.contestants.size(); ++i) out << "---:|";
  for (const Row& row : m.rows) {
    out << "\n| " << title(row) << " | " << row.n << " |";
    for (const std::string& name : m.contestants) out << ' ' << cell(m.at(row, name)) << " |";
  }
  out << '\n';
  return out.str();
}

// Replaces what stands between the marks.
bool replaceTable(const std::string& path, const std::string& table) {
  std::ifstream in(path);
  std::string text{std::istreambuf_iterator<char>(in), {}};
  const size_t begin = text.find(beginMark), end = text.find(endMark);
  if (begin == std::string::npos || end == std::string::npos || end < begin) {
    std::fprintf(stderr, "%s lacks the lines\n%s\n%s\n", path.c_str(), beginMark, endMark);
    return false;
  }
  const size_t from = begin + sizeof beginMark - 1;
  text.replace(from, end - from, "\n" + table);
  std::ofstream out(path);
  out << text;
  return out.flush().good();
}

// A chart of how many times as fast as the C library's loop everyone is, at n = 1000.
bool writeChart(const Measurements& m, const std::string& sourceTree) {
  const std::string data = sourceTree + "/docs/performance.dat";
  std::vector<std::string> shown;
  for (const char* name : {"level 1", "level 5", "SLEEF SSE4", "SLEEF AVX", "SLEEF AVX2", "SLEEF AVX-512"})
    if (std::find(m.contestants.begin(), m.contestants.end(), name) != m.contestants.end()) shown.push_back(name);
  std::ofstream out(data);
  out << "function";
  for (const std::string& name : shown) out << ",\"" << name << '"';
  for (const Row& row : m.rows) {
    const double reference = m.at(row, "C library");
    if (row.n != 1000 || !row.label.empty() || reference == 0) continue;
    out << '\n' << row.stem;
    for (const std::string& name : shown) {
      const double time = m.at(row, name);
      out << ',' << (time == 0 ? "NaN" : std::to_string(reference / time));
    }
  }
  out << '\n';
  if (!out.flush().good()) return false;
  out.close();
  const std::string command = "cd '" + sourceTree + "/docs' && gnuplot -e last=" + std::to_string(shown.size() + 1) +
                              " ../bench/speed_chart.gnuplot";
  const bool drawn = std::system(command.c_str()) == 0;
  std::remove(data.c_str());
  return drawn;
}

}  // namespace

void printTable(const Measurements& m) {
  std::printf("Nanoseconds an element; clock %.2f GHz. %s\n%-22s %7s", m.clock, remark(m.disturbance).c_str(),
              "function", "n");
  for (const std::string& name : m.contestants) std::printf(" %13s", name.c_str());
  std::printf("\n");
  for (const Row& row : m.rows) {
    std::printf("%-22s %7d", title(row).c_str(), row.n);
    for (const std::string& name : m.contestants) std::printf(" %13s", cell(m.at(row, name)).c_str());
    std::printf("\n");
  }
}

bool writeDocuments(const Measurements& m, const std::string& sourceTree) {
  return replaceTable(sourceTree + "/docs/performance.md", markdownTable(m)) && writeChart(m, sourceTree);
}

}  // namespace qorvane::bench
