#include "tests/arguments.h"

#include <bit>
#include <cmath>
#include <random>

#include "tools/ranges.h"

namespace qorvane::test {

std::vector<double> mixedNumbers(uint64_t seed, size_t count) {
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
  for (size_t i = 0; i < count; ++i) {
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

Inputs mixedInputs(const Function& f, uint64_t seed, int32_t count) {
  return {{mixedNumbers(seed, f.reals(count)), mixedNumbers(seed + 1000, f.reals(count))},
          {2.5 + 0.25 * static_cast<double>(seed), -0.75}};
}

Inputs ordinaryInputs(const Function& f, uint64_t seed, int32_t count) {
  Inputs inputs{{std::vector<double>(f.reals(count)), std::vector<double>(f.reals(count))}, {}};
  accuracy::Random random{seed};
  accuracy::drawArguments(accuracy::rangesOf(f.stem)[0], f.signature, random, static_cast<size_t>(count),
                          {inputs.in[0].data(), inputs.in[1].data()}, inputs.value.data());
  return inputs;
}

}  // namespace qorvane::test
