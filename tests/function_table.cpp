#include "tests/function_table.h"

#include <bit>
#include <cmath>
#include <random>

#include "frame/dispatch.h"

namespace qorvane::test {
namespace {

using Unary = nuvStatus(const double*, double*, int32_t);
using Binary = nuvStatus(const double*, const double*, double*, int32_t);
using Split = nuvStatus(const double*, double*, double*, int32_t);
using Scalar = nuvStatus(const double*, double, double*, int32_t);
using UnaryTwin = nuvStatus(const double*, int32_t, double*, int32_t, int32_t);
using BinaryTwin = nuvStatus(const double*, int32_t, const double*, int32_t, double*, int32_t, int32_t);
using SplitTwin = nuvStatus(const double*, int32_t, double*, int32_t, double*, int32_t, int32_t);
using ScalarTwin = nuvStatus(const double*, int32_t, double, double*, int32_t, int32_t);

template <class F>
F* as(void* address) {
  return reinterpret_cast<F*>(address);
}

}  // namespace

const std::vector<Function>& functions() {
  using enum Shape;
  using enum CheckClass;
  using enum StateClass;
  static const std::vector<Function> all = {
#define FUNCTION(name, stem, shape, family, programs, checkA, stateA, checkB, stateB, raisesA, raisesB, exception) \
  {"nuvs" #name,                                                                                                   \
   shape,                                                                                                          \
   {checkA, stateA, raisesA},                                                                                      \
   {checkB, stateB, raisesB},                                                                                      \
   Exception::exception,                                                                                           \
   reinterpret_cast<void*>(&nuvs##name),                                                                           \
   reinterpret_cast<void*>(&nuvs##name##_Idx)},
#include "frame/functions.inc"
#undef FUNCTION
  };
  return all;
}

bool sameResult(const Function& f, double a, double b) {
  const uint64_t distance = std::bit_cast<uint64_t>(a) - std::bit_cast<uint64_t>(b);
  if (distance == 0 || (a != a && b != b)) return true;
  return f.dependsOnBlock(DispatchLevel) && ((a == 0 && b == 0) || (std::isfinite(a) && distance + 1 <= 2));
}

nuvStatus Function::operator()(const double* x, const double* y, double value, double* a, double* b,
                               int32_t len) const {
  switch (shape) {
    case Shape::realUnary: return as<Unary>(plain)(x, a, len);
    case Shape::realBinary: return as<Binary>(plain)(x, y, a, len);
    case Shape::realSplit: return as<Split>(plain)(x, a, b, len);
    case Shape::realScalar: return as<Scalar>(plain)(x, value, a, len);
  }
  return -1;
}

nuvStatus Function::throughTwin(const double* x, const double* y, double value, double* a, double* b, int32_t len,
                                int32_t shift) const {
  const int32_t offset = shift;
  const auto off = [&](auto* p) { return p - shift; };
  switch (shape) {
    case Shape::realUnary: return as<UnaryTwin>(twin)(off(x), offset, off(a), offset, len);
    case Shape::realBinary: return as<BinaryTwin>(twin)(off(x), offset, off(y), offset, off(a), offset, len);
    case Shape::realSplit: return as<SplitTwin>(twin)(off(x), offset, off(a), offset, off(b), offset, len);
    case Shape::realScalar: return as<ScalarTwin>(twin)(off(x), offset, value, off(a), offset, len);
  }
  return -1;
}

std::vector<double> mixedArguments(uint64_t seed, int count) {
  static const double special[] = {0.0,
                                   -0.0,
                                   1.0,
                                   -1.0,
                                   0.5,
                                   -0.5,
                                   2.0,
                                   0x1p-1022,
                                   -0x1p-1022,
                                   0x1p-1074,
                                   -0x1p-1074,
                                   HUGE_VAL,
                                   -HUGE_VAL,
                                   NAN,
                                   -NAN,
                                   0x1p52,
                                   -0x1p52,
                                   0x1p53 + 2,
                                   0x1.fffffffffffffp1023,
                                   -0x1.fffffffffffffp1023,
                                   709.8,
                                   -745.2,
                                   65536.0,
                                   1e22};
  std::mt19937_64 random(seed);
  const auto unit = [&] { return std::ldexp(static_cast<double>(random() >> 11), -52) - 1; };  // [-1, 1)
  std::vector<double> x;
  for (int i = 0; i < count; ++i) {
    switch (random() % 8) {
      case 0: x.push_back(special[random() % std::size(special)]); break;
      case 1: x.push_back(std::bit_cast<double>(random())); break;
      case 2: {
        const double mantissa = unit();
        x.push_back(std::ldexp(mantissa, static_cast<int>(random() % 2100) - 1075));
        break;
      }
      case 3: x.push_back(static_cast<double>(static_cast<int>(random() % 201) - 100) / 2); break;
      case 4: x.push_back(std::abs(unit()) * 700); break;
      case 5: x.push_back(1 + unit() / 1000); break;
      default: x.push_back(std::abs(unit()) * 20 + 0.01); break;
    }
  }
  return x;
}

std::vector<double> ordinaryArguments(uint64_t seed, int count) {
  std::mt19937_64 random(seed);
  std::vector<double> x;
  for (int i = 0; i < count; ++i) {
    const double mantissa = static_cast<double>((random() >> 12) + (uint64_t{1} << 52));
    x.push_back(std::ldexp(mantissa, static_cast<int>(random() % 8) - 56));
  }
  return x;
}

}  // namespace qorvane::test
