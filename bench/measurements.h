// The comparison's measurements.
#pragma once
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "bench/neighbour.h"
#include "bench/workloads.h"

namespace qorvane::bench {

struct Row {
  std::string stem, label;
  int n;
  auto operator<=>(const Row&) const = default;
};

struct Measurements {
  std::vector<std::string> contestants;  // in the order of the columns: level 1, ..., C library, ...
  std::vector<Row> rows;                 // in the order in which they were measured
  std::map<Row, std::map<std::string, double>> nanoseconds;  // an element
  double clock = 0;                                          // of the core during the run, GHz
  Disturbance disturbance;

  // The time an element, or 0 if it wasn't measured.
  double at(const Row& row, const std::string& contestant) const;
};

struct Effort {
  int rounds = 100;
  double slice = 50e-6;  // seconds that a contestant runs at a time
};

// Measures the workloads whose stem is in `only`, or all if it is empty, on the processor where it is. Sweeps that a busy
// neighbour disturbs are repeated, each once. Says on stderr how far it is.
Measurements measureAll(const std::vector<std::string>& only, const Effort& effort);

// What the run tells, on stdout: the table, then each bar with its measured ratio.
void printTable(const Measurements& measurements);
void printBars(const Measurements& measurements);
// Rewrites the table in docs/performance.md and the charts docs/performance.png and .svg in the
// given source tree.
bool writeDocuments(const Measurements& measurements, const std::string& sourceTree);

}  // namespace qorvane::bench
