// What holds for every function, at every level: an element's bits don't depend on where it stands
// or who stands beside it, nothing beyond the arrays is touched, control words come back, statuses
// and flags are as the frame promises.
#include <sys/mman.h>
#include <unistd.h>

#include <cfenv>
#include <cmath>
#include <cstring>
#include <thread>

#include "frame/kernel_frame.h"
#include "tests/function_table.h"
#include "tests/test_support.h"

namespace qorvane::test {
namespace {

constexpr int32_t count = 260;
constexpr double canary = -7.25e-77;

// Arguments of one call, and what each element gives when it is computed alone.
struct Sample {
  std::vector<double> x, y;
  double value;
  std::vector<double> a, b;
  std::vector<nuvStatus> status;

  nuvStatus lastStatus(int32_t first, int32_t len) const {
    for (int32_t i = first + len - 1; i >= first; --i)
      if (status[static_cast<size_t>(i)] != nuvStatusOk) return status[static_cast<size_t>(i)];
    return nuvStatusOk;
  }
};

Sample sampleOf(const Function& f, std::vector<double> x, std::vector<double> y, double value) {
  const size_t n = x.size();
  Sample s{std::move(x), std::move(y), value, {}, {}, {}};
  s.a.resize(n);
  s.b.resize(n);
  for (size_t i = 0; i < n; ++i) s.status.push_back(f(&s.x[i], &s.y[i], s.value, &s.a[i], &s.b[i], 1));
  return s;
}

Sample sampleOf(const Function& f, uint64_t seed, int32_t size = count) {
  return sampleOf(f, mixedArguments(seed, size), mixedArguments(seed + 1000, size),
                  2.5 + 0.25 * static_cast<double>(seed));
}

class EveryFunction : public testing::TestWithParam<std::tuple<size_t, int>> {
 protected:
  const Function& f = functions()[std::get<0>(GetParam())];
  const int level = std::get<1>(GetParam());
  const Variant& variant = f.at(level);
  AtLevel at{level};

  void expectResults(const Sample& s, int32_t first, const double* a, const double* b, int32_t len, const char* how) {
    for (int32_t i = 0; i < len; ++i) {
      const auto k = static_cast<size_t>(first + i);
      ASSERT_TRUE(sameResult(f, a[i], s.a[k])) << how << ", element " << i << " of " << len << ", x = " << s.x[k]
                                               << ", y = " << s.y[k] << ": " << a[i] << ", alone " << s.a[k];
      if (!f.hasSecondOutput()) continue;
      ASSERT_TRUE(sameResult(f, b[i], s.b[k]))
          << how << ", element " << i << " of " << len << ", x = " << s.x[k] << ", second output";
    }
  }
};

TEST_P(EveryFunction, GivesAnElementTheSameBitsWhereverItStands) {
  for (uint64_t seed = 1; seed <= 3; ++seed) {
    const Sample s = sampleOf(f, seed);
    for (int32_t first = 0; first < 5; ++first)
      for (int32_t len : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 13, 15, 16, 17, 23, 31, 33, 63, 64, 65, 127, 130, 255}) {
        std::vector<double> a(count + 2, canary), b(count + 2, canary);
        const nuvStatus status =
            f(&s.x[static_cast<size_t>(first)], &s.y[static_cast<size_t>(first)], s.value, &a[1], &b[1], len);
        expectResults(s, first, &a[1], &b[1], len, "in an array");
        EXPECT_EQ(status, s.lastStatus(first, len)) << "length " << len;
        EXPECT_TRUE(a[0] == canary && a[static_cast<size_t>(len) + 1] == canary && b[0] == canary &&
                    b[static_cast<size_t>(len) + 1] == canary)
            << "length " << len;
      }
  }
}

// Long stretches of ordinary arguments run through pipelines, some of which a single other argument
// stops.
TEST_P(EveryFunction, GivesTheSameBitsInLongStretches) {
  constexpr int32_t longest = 1100;
  for (const double outsider : {1.0, 0.0, -1.0, 0x1p-1074, 0x1p-130, 1e300, HUGE_VAL, -HUGE_VAL, double{NAN}}) {
    std::vector<double> x = ordinaryArguments(7, longest), y = ordinaryArguments(8, longest);
    for (const size_t place : {40u, 300u, 1050u}) x[place] = outsider;
    const Sample s = sampleOf(f, x, y, 2.75);
    for (int32_t first : {0, 3, 41})
      for (int32_t len : {45, 255, 261, 520, 1059}) {
        const auto from = static_cast<size_t>(first);
        std::vector<double> a(longest), b(longest);
        EXPECT_EQ(f(&s.x[from], &s.y[from], s.value, a.data(), b.data(), len), s.lastStatus(first, len));
        expectResults(s, first, a.data(), b.data(), len, "in a stretch");
        x = s.x;
        const nuvStatus status = f(&x[from], &s.y[from], s.value, &x[from], b.data(), len);
        if (f.exception != Exception::blocksReread || level == 5) {
          EXPECT_EQ(status, s.lastStatus(first, len));
        }
        expectResults(s, first, &x[from], b.data(), len, "in a stretch, in place");
        if (HasFatalFailure()) return;
      }
  }
}

TEST_P(EveryFunction, WorksAtAnyAddressInPlaceAndThroughItsTwin) {
  const Sample s = sampleOf(f, 4);
  constexpr int32_t len = 101;
  for (size_t shift : {1u, 4u, 7u}) {  // bytes off the alignment of a double
    std::vector<char> x(len * 8 + 8), y(len * 8 + 8), a(len * 8 + 8), b(len * 8 + 8);
    std::memcpy(&x[shift], s.x.data(), len * 8);
    std::memcpy(&y[shift], s.y.data(), len * 8);
    const auto doubles = [&](std::vector<char>& v) { return reinterpret_cast<double*>(v.data() + shift); };
    EXPECT_EQ(f(doubles(x), doubles(y), s.value, doubles(a), doubles(b), len), s.lastStatus(0, len));
    std::vector<double> resultA(len), resultB(len);
    std::memcpy(resultA.data(), &a[shift], len * 8);
    std::memcpy(resultB.data(), &b[shift], len * 8);
    expectResults(s, 0, resultA.data(), resultB.data(), len, "misaligned");
  }
  for (int32_t shift : {1, -3, 0}) {
    std::vector<double> a(len), b(len);
    EXPECT_EQ(f.throughTwin(s.x.data(), s.y.data(), s.value, a.data(), b.data(), len, shift), s.lastStatus(0, len));
    expectResults(s, 0, a.data(), b.data(), len, "through the twin");
  }
  for (int which = 0; which < 2; ++which) {  // the first or the second output, or input, is the shared array
    std::vector<double> x(s.x.begin(), s.x.begin() + len), y(s.y.begin(), s.y.begin() + len), other(len);
    if (which == 1 && !f.hasSecondInput() && !f.hasSecondOutput()) continue;
    double* a = x.data();
    double* b = other.data();
    if (which == 1 && f.hasSecondInput()) a = y.data();
    if (which == 1 && f.hasSecondOutput()) std::swap(a, b);
    const nuvStatus status = f(x.data(), y.data(), s.value, a, b, len);
    if (f.exception != Exception::blocksReread || level == 5) {
      EXPECT_EQ(status, s.lastStatus(0, len));
    }
    expectResults(s, 0, a, b, len, "in place");
  }
}

// Pages that can't be touched stand right before or right behind the arrays.
TEST_P(EveryFunction, TouchesNothingBesideItsArrays) {
  const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  const size_t spread = 3 * page;
  char* memory = static_cast<char*>(mmap(nullptr, 4 * spread, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
  ASSERT_NE(memory, MAP_FAILED);
  for (size_t i = 0; i < 4; ++i) ASSERT_EQ(mprotect(memory + i * spread + page, page, PROT_READ | PROT_WRITE), 0);
  const Sample s = sampleOf(f, 5);
  for (bool atEnd : {false, true})
    for (int32_t len = 1; len <= 70; ++len) {
      const size_t size = static_cast<size_t>(len) * 8;
      double* array[4];
      for (size_t i = 0; i < 4; ++i)
        array[i] = reinterpret_cast<double*>(memory + i * spread + page + (atEnd ? page - size : 0));
      std::memcpy(array[0], s.x.data(), size);
      std::memcpy(array[1], s.y.data(), size);
      f(array[0], array[1], s.value, array[2], array[3], len);
      expectResults(s, 0, array[2], array[3], len, atEnd ? "before a guard page" : "behind a guard page");
    }
  munmap(memory, 4 * spread);
}

TEST_P(EveryFunction, ReportsBadArgumentsInItsOrderAndTouchesNothing) {
  double x[4] = {1, 2, 3, 4}, y[4] = {1, 2, 3, 4}, a[4] = {canary, canary, canary, canary},
         b[4] = {canary, canary, canary, canary};
  for (int32_t len : {0, -1, INT32_MIN}) EXPECT_EQ(f(x, y, 1.5, a, b, len), nuvStatusBadLength);
  const nuvStatus both = variant.check == CheckClass::pointersFirst ? nuvStatusNullPointer : nuvStatusBadLength;
  const auto expectNull = [&](const double* px, const double* py, double* pa, double* pb) {
    EXPECT_EQ(f(px, py, 1.5, pa, pb, 4), nuvStatusNullPointer);
    EXPECT_EQ(f(px, py, 1.5, pa, pb, 0), both);
    EXPECT_EQ(f.throughTwin(px, py, 1.5, pa, pb, 4, 0), nuvStatusNullPointer);
  };
  std::feclearexcept(FE_ALL_EXCEPT);
  expectNull(nullptr, y, a, b);
  expectNull(x, y, nullptr, b);
  if (f.hasSecondInput()) expectNull(x, nullptr, a, b);
  if (f.hasSecondOutput()) expectNull(x, y, a, nullptr);
  EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(a[i] == canary && b[i] == canary);
}

// What a state class makes of a caller's control bits.
uint32_t inForce(StateClass state, uint32_t csr) {
  constexpr uint32_t all = 0xe040;
  switch (state) {
    case StateClass::none: return csr;
    case StateClass::clearMode:
    case StateClass::fixX87AndClearMode: return csr & ~all;
    case StateClass::clearRounding:
    case StateClass::fixX87AndClearRounding: return csr & ~0xe000u;
    case StateClass::forceDown: return (csr & ~all) | 0x2000;
    case StateClass::forceUp: return (csr & ~all) | 0x4000;
    case StateClass::forceToZero: return (csr & ~all) | 0x6000;
  }
  return csr;
}

TEST_P(EveryFunction, LeavesTheControlWordsAsItFoundThem) {
  const Sample s = sampleOf(f, 6);
  constexpr uint32_t masks = 0x1f80;
  std::vector<double> a(count), b(count);
  for (uint32_t rounding : {0u, 0x2000u, 0x4000u, 0x6000u})
    for (uint32_t flush : {0u, 0x8000u, 0x40u, 0x8040u})
      for (const uint16_t x87 : {uint16_t{0x037f}, uint16_t{0x027f}, uint16_t{0x0c7f}, uint16_t{0x0f7f}}) {
        const uint32_t csr = masks | rounding | flush;
        writeX87Control(x87);
        writeMxcsr(csr);
        const nuvStatus status = f(s.x.data(), s.y.data(), s.value, a.data(), b.data(), count);
        const uint32_t after = readMxcsr();
        const uint16_t x87After = readX87Control();
        writeMxcsr(masks);
        writeX87Control(0x037f);
        EXPECT_EQ(after & 0xffc0u, csr) << std::hex << "MXCSR was " << csr;
        EXPECT_EQ(x87After, x87) << std::hex;
        if (inForce(variant.state, csr) != csr) {
          EXPECT_EQ(after & 0x3f, 0u) << "flags are put back with the mode";
        }
        // A mode that the kernel replaces can't be seen in the results.
        if (inForce(variant.state, csr) == inForce(variant.state, masks)) {
          expectResults(s, 0, a.data(), b.data(), count, "in another mode");
          EXPECT_EQ(status, s.lastStatus(0, count)) << std::hex << "MXCSR was " << csr;
        }
      }
}

TEST_P(EveryFunction, RaisesTheFlagsOfItsStatuses) {
  if (inForce(variant.state, 0x1f80) != 0x1f80) return;  // the flags are put back at exit
  const Sample s = sampleOf(f, 7, 2000);
  for (size_t i = 0; i < s.x.size(); ++i) {
    double a, b;
    std::feclearexcept(FE_ALL_EXCEPT);
    const nuvStatus status = f(&s.x[i], &s.y[i], s.value, &a, &b, 1);
    const int raised = std::fetestexcept(FE_ALL_EXCEPT);
    if (status != nuvStatusOk && variant.raisesFlags) {
      const int flag = status == nuvStatusOutOfDomain ? FE_INVALID
                       : status == nuvStatusPole      ? FE_DIVBYZERO
                       : status == nuvStatusOverflow  ? FE_OVERFLOW
                                                      : FE_UNDERFLOW;
      EXPECT_TRUE(raised & flag) << "x = " << s.x[i] << ", y = " << s.y[i] << ", status " << status << ", flags "
                                 << raised;
    }
  }
}

TEST_P(EveryFunction, RunsOnManyThreadsAtOnce) {
  const Sample s = sampleOf(f, 8);
  int wrong[4] = {};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      std::vector<double> a(count), b(count);
      for (int round = 0; round < 40; ++round) {
        f(s.x.data(), s.y.data(), s.value, a.data(), b.data(), count);
        for (size_t i = 0; i < count; ++i) wrong[t] += !sameResult(f, a[i], s.a[i]);
      }
    });
  for (auto& thread : threads) thread.join();
  for (int w : wrong) EXPECT_EQ(w, 0);
}

// A kernel that leaves the upper halves of the registers dirty slows the caller's SSE code down.
// XGETBV of register 1 shows which state is in use.
TEST_P(EveryFunction, LeavesNoDirtyUpperHalves) {
  uint32_t eax = 0xd, ebx, ecx = 1, edx;
  asm("cpuid" : "+a"(eax), "=b"(ebx), "+c"(ecx), "=d"(edx));
  if (level < 5 || !(eax & 4)) return;  // nothing to see
  const Sample s = sampleOf(f, 9);
  std::vector<double> a(count), b(count);
  for (int32_t len : {1, 8, 33, count}) {
    uint32_t low, high;
    asm volatile("vzeroupper");
    f(s.x.data(), s.y.data(), s.value, a.data(), b.data(), len);
    asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(1));
    EXPECT_EQ(low & 4, 0u) << "length " << len;
  }
}

INSTANTIATE_TEST_SUITE_P(Properties, EveryFunction,
                         testing::Combine(testing::Range(size_t{0}, functions().size()),
                                          testing::ValuesIn(supportedLevels())),
                         [](const auto& instance) {
                           return functions()[std::get<0>(instance.param)].name + "_level" +
                                  std::to_string(std::get<1>(instance.param));
                         });

}  // namespace
}  // namespace qorvane::test
