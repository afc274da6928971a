// The demonstration: evaluates every served function through the shared library on real data, and
// on a long array of arguments from the function's everyday range, and shows the status, the time
// beside the C library's scalar function in the same run, and the largest error against extended
// precision. demo.sh builds and runs it.
//   demo DATA-FOLDER
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "frame/detection.h"
#include "frame/include/qorvane.h"
#include "tools/call.h"
#include "tools/inverse_erf_quick.h"
#include "tools/ranges.h"

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
  std::array<Column, 2> in;
  std::array<double, 2> value = {};  // the scalar
  std::array<Column, 2> out = {};
};

// A served function, made from the table of functions; the first half of the elements goes through
// the plain export, the second through its twin.
template <auto plain, auto twin>
nuvStatus run(Job& job) {
  constexpr auto parts = static_cast<size_t>(qorvane::signatureOf(plain).parts);
  const auto n = static_cast<int>(job.in[0].size() / parts), half = n / 2;
  for (Column& out : job.out) out.resize(job.in[0].size());
  qorvane::Call call = {{job.in[0].data(), job.in[1].data()},
                        {job.out[0].data(), job.out[1].data()},
                        {job.value[0], job.value[1]},
                        half,
                        {half, half},
                        {half, half}};
  const nuvStatus first = half > 0 ? qorvane::call(plain, call) : nuvStatusOk;
  call.len = n - half;
  const nuvStatus second = qorvane::call(twin, call);
  return second != nuvStatusOk ? second : first;
}
struct Served {
  const char *name, *stem;
  qorvane::Signature signature;
  nuvStatus (*run)(Job&);
};
#define FUNCTION(name, stem, ...) \
  {"nuvs" #name, #stem, qorvane::signatureOf(nuvs##name), run<nuvs##name, nuvs##name##_Idx>},
constexpr Served served[] = {
#include "frame/functions.inc"
};

// What is computed with a function, and the function itself in the C library's double and long
// double, of an element of the first input and one of the second, or the scalar. The C library
// lacks some, whose `scalar` is null.
template <class T>
using Results = std::pair<T, T>;
struct Use {
  const char *stem, *question;
  Job data;
  Results<double> (*scalar)(const double* x, const double* y);
  Results<long double> (*exact)(const long double* x, const long double* y);
  const std::vector<std::string>* labels;
  bool ofTheLarger = false;  // errors count in units of the larger of both parts, as a complex power's
};
#define FORMULA_OF(T, first, second)         \
  [](const T* x, const T* y) {               \
    [[maybe_unused]] const T a = *x, b = *y; \
    return Results<T>{first, second};        \
  }
#define COMPLEX_FORMULA_OF(T, formula)                           \
  [](const T* x, const T* y) {                                   \
    const std::complex<T> z(x[0], x[1]);                         \
    [[maybe_unused]] const std::complex<T> exponent(y[0], y[1]); \
    const std::complex<T> result = formula;                      \
    return Results<T>{result.real(), result.imag()};             \
  }
#define COMPLEX_FORMULA(formula) COMPLEX_FORMULA_OF(double, formula), COMPLEX_FORMULA_OF(long double, formula)
#define FORMULA(first, second) FORMULA_OF(double, first, second), FORMULA_OF(long double, first, second)

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
               &longitude = cities.columns.at("longitude"), &parallax = stars.columns.at("parallax"),
               &magnitude = stars.columns.at("magnitude"), &axis = planets.columns.at("axis"),
               &period = planets.columns.at("period");
  const auto only = [](Column a) { return Job{{a, Column(a.size())}}; };
  const Column radians = map(latitude, [](double x) { return x * (M_PI / 180); }),
               mercator = map(radians, [](double x) { return std::asinh(std::tan(x)); }),
               years = map(period, [](double x) { return x / 365.25; });
  const auto sine = [](double degrees) { return std::sin(degrees * (M_PI / 180)); };
  const auto cosine = [](double degrees) { return std::cos(degrees * (M_PI / 180)); };
  // What a telephone pair of 0.4 mm copper, 280 ohms, 0.59 mH and 50 nF a kilometre, does over 5 km
  // from 100 Hz to 1 MHz: its propagation constant times its length, and that turned by -i.
  Column line, turnedLine, ratio, lengths;
  static std::vector<std::string> frequencies;  // like the tables' labels, it outlives this function
  for (int i = 0; i <= 200; ++i) {
    const double hertz = 100 * std::pow(10, i / 50.0), angular = 2 * M_PI * hertz;
    const std::complex<double> gamma =
        5.0 * std::sqrt(std::complex(280.0, angular * 0.59e-3) * std::complex(0.0, angular * 50e-9));
    line.insert(line.end(), {gamma.real(), gamma.imag()});
    turnedLine.insert(turnedLine.end(), {gamma.imag(), -gamma.real()});
    const std::complex<double> voltages = std::exp(gamma);
    ratio.insert(ratio.end(), {voltages.real(), voltages.imag()});
    lengths.insert(lengths.end(), {i / 100.0, 0});
    frequencies.push_back(std::to_string(std::lround(hertz)) + " Hz");
  }
  // The same line's (R + iwL) (G + iwC), of which the square root is its propagation constant.
  Column product;
  for (int i = 0; i <= 200; ++i) {
    const double angular = 2 * M_PI * 100 * std::pow(10, i / 50.0);
    product.insert(product.end(), {-angular * 0.59e-3 * angular * 50e-9, 280 * angular * 50e-9});
  }
  // Cities on Mercator's map, longitude and ordinate as one number z; the transverse map, on which
  // Greenwich's meridian is true to scale, has them at asin(tanh z) = atan(sinh z).
  Column tangents, sines, transverseTangents, transverseScales;
  for (size_t i = 0; i < mercator.size(); ++i) {
    const std::complex<double> z(mercator[i], longitude[i] * (M_PI / 180)), place = std::asin(std::tanh(z));
    const auto add = [](Column& to, std::complex<double> w) { to.insert(to.end(), {w.real(), w.imag()}); };
    add(tangents, std::tanh(z)), add(sines, std::sinh(z));
    add(transverseTangents, std::tan(place)), add(transverseScales, 1.0 / std::cos(place));
  }
  // How far a star's magnitude is from the mean, in standard deviations over sqrt 2; and the stars'
  // ranks, from -1 to 1.
  double mean = 0, variance = 0;
  for (double m : magnitude) mean += m / static_cast<double>(magnitude.size());
  for (double m : magnitude) variance += (m - mean) * (m - mean) / static_cast<double>(magnitude.size());
  const Column deviation = map(magnitude, [=](double m) { return (m - mean) / std::sqrt(2 * variance); });
  const Column rank = map(magnitude, [&](double m) {
    double below = 0;
    for (double other : magnitude) below += other < m ? 1 : other == m ? 0.5 : 0;
    return 2 * below / static_cast<double>(magnitude.size()) - 1;
  });
  // The way to Greenwich, at 51.48 degrees north: its parts to the east and to the north.
  Column east, north;
  for (size_t i = 0; i < latitude.size(); ++i) {
    east.push_back(sine(-longitude[i]) * cosine(51.48));
    north.push_back(cosine(latitude[i]) * sine(51.48) - sine(latitude[i]) * cosine(51.48) * cosine(longitude[i]));
  }
  const auto *c = &cities.labels, *s = &stars.labels, *p = &planets.labels, *f = &frequencies;
  return {
      {"exp", "air pressure over that at sea level, from the elevation",
       only(map(elevation, [](double h) { return -h / 8434; })), FORMULA(exp(a), 0), c},
      {"ln", "logarithm of the parallax", only(parallax), FORMULA(log(a), 0), s},
      {"log10", "distance modulus over 5, log10 of the distance in units of 10 pc",
       only(map(parallax, [](double x) { return 100 / x; })), FORMULA(log10(a), 0), s},
      {"pow", "brightness over that of magnitude 0, 10^(-0.4 m)",
       Job{{Column(magnitude.size(), 10.0), map(magnitude, [](double m) { return -0.4 * m; })}}, FORMULA(pow(a, b), 0),
       s},
      {"powx", "orbital period in years, axis^1.5", Job{{axis, Column(axis.size())}, {1.5, 0}}, FORMULA(pow(a, b), 0),
       p},
      {"inv", "distance in kiloparsecs, 1 / parallax", only(parallax), FORMULA(1 / a, 0), s},
      {"div", "days over astronomical units", Job{{period, axis}}, FORMULA(a / b, 0), p},
      {"sqrt", "square root of the axis", only(axis), FORMULA(sqrt(a), 0), p},
      {"invSqrt", "orbital speed over the Earth's, 1 / sqrt(axis)", only(axis), FORMULA(1 / sqrt(a), 0), p},
      {"cbrt", "axis from the period in years, cbrt(T^2)", only(map(years, [](double t) { return t * t; })),
       FORMULA(cbrt(a), 0), p},
      {"invCbrt", "1 / cbrt(T^2)", only(map(years, [](double t) { return t * t; })), FORMULA(1 / cbrt(a), 0), p},
      {"sin", "height of the celestial pole, its sine", only(radians), FORMULA(sin(a), 0), c},
      {"cos", "radius of the parallel over the equator's", only(radians), FORMULA(cos(a), 0), c},
      {"sinCos", "sine and cosine of the latitude", only(radians), FORMULA(sin(a), cos(a)), c},
      {"tan", "shadow at noon of an equinox over the height", only(radians), FORMULA(tan(a), 0), c},
      {"sinh", "tangent of the latitude from the ordinate on Mercator's map", only(mercator), FORMULA(sinh(a), 0), c},
      {"cosh", "scale of Mercator's map at the ordinate", only(mercator), FORMULA(cosh(a), 0), c},
      {"tanh", "sine of the latitude from the ordinate", only(mercator), FORMULA(tanh(a), 0), c},
      {"asin", "largest angle between the Sun and the inner one of the planet and the Earth",
       only(map(axis, [](double r) { return r < 1 ? r : 1 / r; })), FORMULA(asin(a), 0), p},
      {"acos", "half a day at the June solstice, in radians of the Earth's turn",
       only(map(radians, [&](double x) { return -std::tan(x) * sine(23.44) / cosine(23.44); })), FORMULA(acos(a), 0),
       c},
      {"atan", "latitude as seen from the Earth's centre",
       only(map(radians, [](double x) { return 0.99330562 * std::tan(x); })), FORMULA(atan(a), 0), c},
      {"atan2", "bearing of Greenwich, from north to east", Job{{east, north}}, FORMULA(atan2(a, b), 0), c},
      {"asinh", "ordinate on Mercator's map, from the tangent of the latitude",
       only(map(radians, [](double x) { return std::tan(x); })), FORMULA(asinh(a), 0), c},
      {"acosh", "its magnitude, from the scale of the map there",
       only(map(radians, [](double x) { return 1 / std::cos(x); })), FORMULA(acosh(a), 0), c},
      {"atanh", "the ordinate from the sine of the latitude", only(map(radians, [](double x) { return std::sin(x); })),
       FORMULA(atanh(a), 0), c},
      {"erf", "share of normal magnitudes between the mean and its mirror image, with sign", only(deviation),
       FORMULA(erf(a), 0), s},
      {"erfc", "twice the share of normal magnitudes that are fainter", only(deviation), FORMULA(erfc(a), 0), s},
      {"erfInv", "normal deviation of the star's rank, over sqrt 2", only(rank), nullptr,
       FORMULA_OF(long double, accuracy::inverseErfQuick(a), 0), s},
      {"floor", "full years of a period", only(years), FORMULA(floor(a), 0), p},
      {"ceil", "years of a period begun", only(years), FORMULA(ceil(a), 0), p},
      {"trunc", "latitude in whole degrees", only(latitude), FORMULA(trunc(a), 0), c},
      {"round", "magnitude class", only(magnitude), FORMULA(round(a), 0), s},
      {"rint", "magnitude class, halves to even", only(magnitude), FORMULA(rint(a), 0), s},
      {"nearbyInt", "the same without the inexact flag", only(magnitude), FORMULA(nearbyint(a), 0), s},
      {"modf", "latitude in degrees and the rest", only(latitude), FORMULA(trunc(a), fraction(a)), c},
      {"complexExp", "voltage at the matched line's beginning over that at its end", only(line),
       COMPLEX_FORMULA(exp(z)), f},
      {"complexLn", "line's attenuation and phase, from the voltages", only(ratio), COMPLEX_FORMULA(log(z)), f},
      {"complexLog10", "the same in bels", only(ratio), COMPLEX_FORMULA(log10(z)), f},
      {"complexPow", "voltages' ratio over 0 to 10 km, from that over 5 km", Job{{ratio, lengths}},
       COMPLEX_FORMULA(pow(z, exponent)), f, true},
      {"complexPowx", "that over 7.5 km", Job{{ratio, Column(ratio.size())}, {1.5, 0}},
       COMPLEX_FORMULA(pow(z, exponent)), f, true},
      {"complexAsin", "place on the transverse map, from tanh z", only(tangents), COMPLEX_FORMULA(asin(z)), c},
      {"complexAcos", "the same from the pole", only(tangents), COMPLEX_FORMULA(acos(z)), c},
      {"complexAtan", "the same from sinh z", only(sines), COMPLEX_FORMULA(atan(z)), c},
      {"complexAsinh", "place on Mercator's map, from the transverse one's tangent", only(transverseTangents),
       COMPLEX_FORMULA(asinh(z)), c},
      {"complexAcosh", "the same from its secant", only(transverseScales), COMPLEX_FORMULA(acosh(z)), c},
      {"complexSqrt", "propagation constant of the line a kilometre", only(product), COMPLEX_FORMULA(sqrt(z)), f},
      {"complexSinh", "open line: current at its beginning over voltage at its end", only(line),
       COMPLEX_FORMULA(sinh(z)), f},
      {"complexCosh", "open line: voltage at its beginning over that at its end", only(line), COMPLEX_FORMULA(cosh(z)),
       f},
      {"complexTanh", "impedance of the shorted line over its own", only(line), COMPLEX_FORMULA(tanh(z)), f},
      {"complexSin", "the same as sinh, by the electrical length", only(turnedLine), COMPLEX_FORMULA(sin(z)), f},
      {"complexCos", "the same as cosh, by the electrical length", only(turnedLine), COMPLEX_FORMULA(cos(z)), f},
      {"complexTan", "the same as tanh, by the electrical length", only(turnedLine), COMPLEX_FORMULA(tan(z)), f},
  };
}

// The error of y in units of the last place of `unit`.
double ulps(double y, long double exact, long double unit) {
  if (unit == 0) return y == 0 ? 0 : HUGE_VAL;
  return static_cast<double>(std::fabs(y - exact) / std::ldexp(1.0L, std::max(std::ilogb(unit), -1022) - 52));
}

// Calls `take` with the element i of the first input, that of the second one or the scalar, and the
// places of its two results.
template <class Take>
void forEachElement(Job& job, const qorvane::Signature& signature, Take take) {
  const auto parts = static_cast<size_t>(signature.parts), step = signature.scalar ? 0 : parts;
  const double *x = job.in[0].data(), *y = signature.scalar ? job.value.data() : job.in[1].data();
  double *first = job.out[0].data(), *second = parts == 2 ? first + 1 : job.out[1].data();
  for (size_t i = 0; i < job.in[0].size(); i += parts, x += parts, y += step, first += parts, second += parts)
    take(x, y, *first, *second);
}

double largestError(Job& job, const qorvane::Signature& signature, const Use& use) {
  double largest = 0;
  forEachElement(job, signature, [&](const double* x, const double* y, double first, double second) {
    const bool pair = signature.parts == 2;
    const long double xs[] = {x[0], pair ? x[1] : 0}, ys[] = {y[0], pair ? y[1] : 0};
    const auto exact = use.exact(xs, ys);
    const long double larger = std::max(std::fabs(exact.first), std::fabs(exact.second));
    largest = std::max(largest, ulps(first, exact.first, use.ofTheLarger ? larger : exact.first));
    if (signature.realsOut() == 2)
      largest = std::max(largest, ulps(second, exact.second, use.ofTheLarger ? larger : exact.second));
  });
  return largest;
}

// The largest error known anywhere, and a little more: extended precision isn't exact either.
double largestBound(const char* stem) {
  double largest = 0.5;
  for (const accuracy::Range& range : accuracy::rangesOf(stem))
    for (const double bound : range.bounds) largest = std::max(largest, bound);
  return largest + 0.02;
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

// A long array from the function's everyday range.
Job everyday(const Served& function) {
  const auto size = static_cast<size_t>(longLength * function.signature.parts);
  Job job{{Column(size), Column(size)}};
  accuracy::Random random{1};
  accuracy::drawArguments(accuracy::rangesOf(function.stem)[0], function.signature, random, longLength,
                          {job.in[0].data(), job.in[1].data()}, job.value.data());
  return job;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string folder = count > 1 ? arguments[1] : "examples/data";
  const Table cities = readTable(folder + "/cities.csv"), stars = readTable(folder + "/stars.csv"),
              planets = readTable(folder + "/planets.csv");
  const std::vector<Use> uses = usesOf(cities, stars, planets);
  std::printf(
      "Real data: %zu cities, %zu stars, %zu planets; the long array has %d elements from the everyday range\n\n",
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
    Job data = use->data;
    nuvStatus status = function.run(data);
    const double errorOnData = largestError(data, function.signature, *use);

    Job all = everyday(function);
    const nuvStatus statusOfAll = function.run(all);
    if (statusOfAll != nuvStatusOk) status = statusOfAll;
    const double error = std::max(errorOnData, largestError(all, function.signature, *use));
    const double ours = time(longLength, [&] { function.run(all); });
    char theirs[16] = "-", ratio[16] = "-";
    if (use->scalar != nullptr) {
      const double nanoseconds = time(longLength, [&] {
        forEachElement(all, function.signature, [&](const double* x, const double* y, double& first, double& second) {
          const auto results = use->scalar(x, y);
          first = results.first, second = results.second;
        });
      });
      std::snprintf(theirs, sizeof theirs, "%.2f", nanoseconds);
      std::snprintf(ratio, sizeof ratio, "%.3f", ours / nanoseconds);
    }
    const size_t shown = data.in[0].size() / static_cast<size_t>(function.signature.parts) - 1;
    const double* result = &data.out[0][shown * static_cast<size_t>(function.signature.parts)];
    std::printf("%-22s %5d %6d %11.2f %11s %9s %9.3f   %s: %s %.6g", function.name, level(), status, ours, theirs,
                ratio, error, use->question, (*use->labels)[shown].c_str(), *result);
    if (function.signature.parts == 2) std::printf(" %+.6gi", result[1]);
    std::printf("\n");
    std::fflush(stdout);
    good = good && status == nuvStatusOk && error < largestBound(function.stem);
  }
  return good ? 0 : 1;
}
