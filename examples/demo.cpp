// The demonstration: evaluates every served function through the shared library on real data, and
// on a long array of arguments from the same range, and shows the status, the time beside the C
// library's scalar function in the same run, and the largest error against extended precision.
// demo.sh builds and runs it.
//   demo DATA-FOLDER
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "frame/detection.h"
#include "frame/include/qorvane.h"

namespace {

using Column = std::vector<double>;
constexpr int longLength = 100000;

// A CSV file's columns by name: lines with # are comments, the first other line has the names, the
// first column is text.
struct Table {
  std::vector<std::string> labels;
  std::map<std::string, Column> columns;
};
Table readTable(const std::string& path) {
  Table table;
  std::ifstream in(path);
  std::vector<std::string> names;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream cells(line);
    std::string cell;
    const bool header = names.empty();
    for (size_t i = 0; std::getline(cells, cell, ','); ++i) {
      if (header)
        names.push_back(cell);
      else if (i == 0)
        table.labels.push_back(cell);
      else
        table.columns[names.at(i)].push_back(std::stod(cell));
    }
  }
  if (table.labels.empty()) std::fprintf(stderr, "%s: no data\n", path.c_str()), std::exit(1);
  return table;
}

struct Job {
  Column a, b;
  double value = 1;
  Column out, outB;
};

// A served function, made from the table of functions; the first half of the elements goes through
// the plain export, the second through its twin.
using Unary = nuvStatus (*)(const Float64*, Float64*, int32_t);
using UnaryIdx = nuvStatus (*)(const Float64*, int32_t, Float64*, int32_t, int32_t);
using Binary = nuvStatus (*)(const Float64*, const Float64*, Float64*, int32_t);
using BinaryIdx = nuvStatus (*)(const Float64*, int32_t, const Float64*, int32_t, Float64*, int32_t, int32_t);
using Split = nuvStatus (*)(const Float64*, Float64*, Float64*, int32_t);
using SplitIdx = nuvStatus (*)(const Float64*, int32_t, Float64*, int32_t, Float64*, int32_t, int32_t);
using Scalar = nuvStatus (*)(const Float64*, Float64, Float64*, int32_t);
using ScalarIdx = nuvStatus (*)(const Float64*, int32_t, Float64, Float64*, int32_t, int32_t);

nuvStatus call(Unary f, Job& j, int n) { return f(j.a.data(), j.out.data(), n); }
nuvStatus call(UnaryIdx f, Job& j, int from, int n) { return f(j.a.data(), from, j.out.data(), from, n); }
[[maybe_unused]] nuvStatus call(Binary f, Job& j, int n) { return f(j.a.data(), j.b.data(), j.out.data(), n); }
[[maybe_unused]] nuvStatus call(BinaryIdx f, Job& j, int from, int n) {
  return f(j.a.data(), from, j.b.data(), from, j.out.data(), from, n);
}
[[maybe_unused]] nuvStatus call(Split f, Job& j, int n) { return f(j.a.data(), j.out.data(), j.outB.data(), n); }
[[maybe_unused]] nuvStatus call(SplitIdx f, Job& j, int from, int n) {
  return f(j.a.data(), from, j.out.data(), from, j.outB.data(), from, n);
}
[[maybe_unused]] nuvStatus call(Scalar f, Job& j, int n) { return f(j.a.data(), j.value, j.out.data(), n); }
[[maybe_unused]] nuvStatus call(ScalarIdx f, Job& j, int from, int n) {
  return f(j.a.data(), from, j.value, j.out.data(), from, n);
}

template <auto plain, auto twin>
nuvStatus run(Job& job) {
  const int n = static_cast<int>(job.a.size()), half = n / 2;
  job.out.resize(job.a.size()), job.outB.resize(job.a.size());
  const nuvStatus first = half > 0 ? call(plain, job, half) : nuvStatusOk, second = call(twin, job, half, n - half);
  return second != nuvStatusOk ? second : first;
}
struct Served {
  const char *name, *stem;
  nuvStatus (*run)(Job&);
};
#define FUNCTION(name, stem, ...) {"nuvs" #name, #stem, run<nuvs##name, nuvs##name##_Idx>},
constexpr Served served[] = {
#include "frame/functions.inc"
};

// What is computed with a function, and the function itself in the C library's double and long
// double.
template <class T>
using Results = std::pair<T, T>;
struct Use {
  const char *stem, *question;
  std::function<Job()> data;
  Results<double> (*scalar)(double a, double b);
  Results<long double> (*exact)(long double a, long double b);
  const std::vector<std::string>* labels;
};
#define FORMULA(first, second)                               \
  [](double a, double b) {                                   \
    return (void)b, Results<double>{first, second};          \
  },                                                         \
      [](long double a, long double b) {                     \
        return (void)b, Results<long double>{first, second}; \
      }

template <class F>
Column map(const Column& column, F f) {
  Column result;
  for (double x : column) result.push_back(f(x));
  return result;
}

using namespace std;  // the functions of <cmath>, for double and long double
template <class T>
T fraction(T x) {
  T whole;
  return std::modf(x, &whole);
}

std::vector<Use> usesOf(const Table& cities, const Table& stars, const Table& planets) {
  const Column &elevation = cities.columns.at("elevation"), &latitude = cities.columns.at("latitude"),
               &parallax = stars.columns.at("parallax"), &magnitude = stars.columns.at("magnitude"),
               &axis = planets.columns.at("axis"), &period = planets.columns.at("period");
  const auto only = [](const Column& a) { return [a] { return Job{a, Column(a.size(), 1.0), 1, {}, {}}; }; };
  const Column radians = map(latitude, [](double x) { return x * (M_PI / 180); }),
               years = map(period, [](double x) { return x / 365.25; });
  const auto *c = &cities.labels, *s = &stars.labels, *p = &planets.labels;
  return {
      {"exp", "air pressure over that at sea level, from the elevation",
       only(map(elevation, [](double h) { return -h / 8434; })), FORMULA(exp(a), 0), c},
      {"ln", "logarithm of the parallax", only(parallax), FORMULA(log(a), 0), s},
      {"log10", "distance modulus over 5, log10 of the distance in units of 10 pc",
       only(map(parallax, [](double x) { return 100 / x; })), FORMULA(log10(a), 0), s},
      {"pow", "brightness over that of magnitude 0, 10^(-0.4 m)",
       [=] {
         return Job{Column(magnitude.size(), 10.0), map(magnitude, [](double m) { return -0.4 * m; }), 1, {}, {}};
       },
       FORMULA(pow(a, b), 0), s},
      {"powx", "orbital period in years, axis^1.5",
       [=] {
         return Job{axis, Column(axis.size(), 1.5), 1.5, {}, {}};
       },
       FORMULA(pow(a, b), 0), p},
      {"inv", "distance in kiloparsecs, 1 / parallax", only(parallax), FORMULA(1 / a, 0), s},
      {"div", "days over astronomical units",
       [=] {
         return Job{period, axis, 1, {}, {}};
       },
       FORMULA(a / b, 0), p},
      {"sqrt", "square root of the axis", only(axis), FORMULA(sqrt(a), 0), p},
      {"invSqrt", "orbital speed over the Earth's, 1 / sqrt(axis)", only(axis), FORMULA(1 / sqrt(a), 0), p},
      {"cbrt", "axis from the period in years, cbrt(T^2)", only(map(years, [](double t) { return t * t; })),
       FORMULA(cbrt(a), 0), p},
      {"invCbrt", "1 / cbrt(T^2)", only(map(years, [](double t) { return t * t; })), FORMULA(1 / cbrt(a), 0), p},
      {"sin", "height of the celestial pole, its sine", only(radians), FORMULA(sin(a), 0), c},
      {"cos", "radius of the parallel over the equator's", only(radians), FORMULA(cos(a), 0), c},
      {"sinCos", "sine and cosine of the latitude", only(radians), FORMULA(sin(a), cos(a)), c},
      {"tan", "shadow at noon of an equinox over the height", only(radians), FORMULA(tan(a), 0), c},
      {"floor", "full years of a period", only(years), FORMULA(floor(a), 0), p},
      {"ceil", "years of a period begun", only(years), FORMULA(ceil(a), 0), p},
      {"trunc", "latitude in whole degrees", only(latitude), FORMULA(trunc(a), 0), c},
      {"round", "magnitude class", only(magnitude), FORMULA(round(a), 0), s},
      {"rint", "magnitude class, halves to even", only(magnitude), FORMULA(rint(a), 0), s},
      {"nearbyInt", "the same without the inexact flag", only(magnitude), FORMULA(nearbyint(a), 0), s},
      {"modf", "latitude in degrees and the rest", only(latitude), FORMULA(trunc(a), fraction(a)), c},
  };
}

double ulps(double y, long double exact) {
  if (exact == 0) return y == 0 ? 0 : HUGE_VAL;
  return static_cast<double>(std::fabs(y - exact) / std::ldexp(1.0L, std::max(std::ilogb(exact), -1022) - 52));
}

double largestError(const Job& job, const Use& use) {
  double largest = 0;
  for (size_t i = 0; i < job.a.size(); ++i) {
    const auto exact = use.exact(job.a[i], job.b[i]);
    largest = std::max({largest, ulps(job.out[i], exact.first), ulps(job.outB[i], exact.second)});
  }
  return largest;
}

// The best of many turns, nanoseconds an element.
template <class F>
double time(int n, F f) {
  double best = HUGE_VAL;
  for (int turn = 0; turn < 15; ++turn) {
    const auto start = std::chrono::steady_clock::now();
    f();
    best =
        std::min(best, std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() / n);
  }
  return best;
}

// The level that the library's load hook chooses on this processor.
int level() {
  uint64_t features = 0;
  qorvane::queryProcessorFeatures(&features, nullptr);
  return qorvane::chooseLevel(features).level;
}

// Arguments spread evenly over the range of the data.
Column spread(const Column& data, uint64_t seed) {
  const auto [low, high] = std::minmax_element(data.begin(), data.end());
  std::mt19937_64 random(seed);
  Column result(longLength);
  for (double& x : result) x = *low + (*high - *low) * std::ldexp(static_cast<double>(random() >> 11), -53);
  return result;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string folder = count > 1 ? arguments[1] : "examples/data";
  const Table cities = readTable(folder + "/cities.csv"), stars = readTable(folder + "/stars.csv"),
              planets = readTable(folder + "/planets.csv");
  const std::vector<Use> uses = usesOf(cities, stars, planets);
  std::printf(
      "Real data: %zu cities, %zu stars, %zu planets; the long array has %d elements from the range of the data\n\n",
      cities.labels.size(), stars.labels.size(), planets.labels.size(), longLength);
  std::printf("%-22s %5s %6s %11s %11s %9s %9s   %s\n", "function", "level", "status", "ns/element", "C library",
              "ratio", "max ulp", "on the data");
  bool good = true;
  for (const Served& function : served) {
    const auto use =
        std::find_if(uses.begin(), uses.end(), [&](const Use& u) { return std::string(u.stem) == function.stem; });
    if (use == uses.end()) {
      std::printf("%-22s (no data for it here)\n", function.name);
      continue;
    }
    Job data = use->data();
    nuvStatus status = function.run(data);
    const double errorOnData = largestError(data, *use);

    Job all = {spread(data.a, 1), spread(data.b, 2), data.value, {}, {}};
    const nuvStatus statusOfAll = function.run(all);
    if (statusOfAll != nuvStatusOk) status = statusOfAll;
    const double error = std::max(errorOnData, largestError(all, *use));
    const double ours = time(longLength, [&] { function.run(all); });
    const double theirs = time(longLength, [&] {
      for (int i = 0; i < longLength; ++i) {
        const auto results = use->scalar(all.a[static_cast<size_t>(i)], all.b[static_cast<size_t>(i)]);
        all.out[static_cast<size_t>(i)] = results.first;
        all.outB[static_cast<size_t>(i)] = results.second;
      }
    });
    const size_t shown = data.a.size() - 1;
    std::printf("%-22s %5d %6d %11.2f %11.2f %9.3f %9.3f   %s: %s %.6g\n", function.name, level(), status, ours, theirs,
                ours / theirs, error, use->question, (*use->labels)[shown].c_str(), data.out[shown]);
    std::fflush(stdout);
    good = good && status == nuvStatusOk && error < 1;
  }
  return good ? 0 : 1;
}
