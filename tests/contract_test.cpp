// What a program's row of tests/contracts.inc promises, for every function at every level: the order
// of its checks, the modes that it runs in, the statuses that it gives and the flags that it raises.
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include <cfenv>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "frame/kernel_frame.h"
#include "tests/every_function.h"

namespace qorvane::test {
namespace {

class EveryContract : public AtEveryLevel {};

TEST_P(EveryContract, ReportsBadArgumentsInItsOrderAndTouchesNothing) {
  const Inputs x = ordinaryInputs(f, 3, 4);
  Outputs y = outputsFor(4);
  const Call good = callOf(x, y, 4);
  const auto withLength = [](Call c, int32_t len) { return c.len = len, c; };
  std::feclearexcept(FE_ALL_EXCEPT);
  for (int32_t len : {0, -1, INT32_MIN}) EXPECT_EQ(f(withLength(good, len)), nuvStatusBadLength);
  const nuvStatus both = contract.check == CheckClass::pointersFirst ? nuvStatusNullPointer : nuvStatusBadLength;
  for (size_t array = 0; array < inputs + outputs; ++array) {
    Call c = good;
    if (array < inputs) c.in[array] = nullptr;
    if (array >= inputs) c.out[array - inputs] = nullptr;
    EXPECT_EQ(f(c), nuvStatusNullPointer);
    EXPECT_EQ(f(withLength(c, 0)), both);
    EXPECT_EQ(f.twin(c), nuvStatusNullPointer);
  }
  EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
  for (const auto& out : y)
    for (const double number : out) EXPECT_EQ(number, canary);
}

// What a class makes of a caller's control word.
uint32_t inForce(MxcsrClass state, uint32_t csr) {
  constexpr uint32_t all = 0xe040;
  switch (state) {
    case MxcsrClass::none: return csr;
    case MxcsrClass::clearMode: return csr & ~all;
    case MxcsrClass::clearRounding: return csr & ~0xe000u;
    case MxcsrClass::forceDown: return (csr & ~all) | 0x2000;
    case MxcsrClass::forceUp: return (csr & ~all) | 0x4000;
    case MxcsrClass::forceToZero: return (csr & ~all) | 0x6000;
  }
  return csr;
}
uint16_t inForce(X87Class state, uint16_t word) {
  if (state == X87Class::none) return word;
  return static_cast<uint16_t>((word & ~0x0f00) | (state == X87Class::fixX87 ? 0x0300 : 0x0200));
}

constexpr uint32_t masks = 0x1f80;
// Calls `visit` with the caller's modes: rounding, FTZ and DAZ, and those of the x87.
template <class Visit>
void inModes(Visit visit) {
  for (uint32_t rounding : {0u, 0x2000u, 0x4000u, 0x6000u})
    for (uint32_t flush : {0u, 0x8000u, 0x40u, 0x8040u})
      for (const uint16_t x87 : {uint16_t{0x037f}, uint16_t{0x027f}, uint16_t{0x0c7f}, uint16_t{0x0f7f}})
        visit(masks | rounding | flush, x87);
}

TEST_P(EveryContract, LeavesTheControlWordsAsItFoundThem) {
  const auto samples = bothSamplesOf(6);
  Outputs y = outputsFor(count), usual[2] = {y, y};
  for (size_t k = 0; k < 2; ++k) f(callOf(samples[k].inputs, usual[k], count));
  int turn = 0;
  inModes([&](uint32_t csr, uint16_t x87) {
    const size_t which = static_cast<size_t>(++turn / 4 % 2);  // each with all of FTZ, DAZ and x87 modes
    const Sample& s = samples[which];
    const Call c = callOf(s.inputs, y, count);
    writeX87Control(x87);
    writeMxcsr(csr);
    const nuvStatus status = f(c);
    const uint32_t after = readMxcsr();
    const uint16_t x87After = readX87Control();
    writeMxcsr(masks);
    writeX87Control(0x037f);
    EXPECT_EQ(after & 0xffc0u, csr) << std::hex << "MXCSR was " << csr;
    EXPECT_EQ(x87After, x87) << std::hex;
    if (inForce(contract.mxcsr, csr) != csr) {
      EXPECT_EQ(after & 0x3f, 0u) << "flags are put back with the mode";
    }
    // A mode that the kernel replaces can't be seen in the results.
    if (inForce(contract.mxcsr, csr) == inForce(contract.mxcsr, masks)) {
      for (size_t k = 0; k < outputs; ++k)
        EXPECT_EQ(std::memcmp(y[k].data(), usual[which][k].data(), y[k].size() * sizeof(double)), 0)
            << "other bits where MXCSR was " << std::hex << csr;
      EXPECT_EQ(status, s.lastStatus(0, count)) << std::hex << "MXCSR was " << csr;
    }
  });
}

// A few elements may have a way of their own.
TEST_P(EveryContract, KeepsItsModesInShortCalls) {
  const Inputs x = ordinaryInputs(f, 12, 8);
  for (int32_t n = 1; n <= 8; ++n) {
    Outputs usual = outputsFor(n), y = usual;
    f(callOf(x, usual, n));
    inModes([&](uint32_t csr, uint16_t) {
      writeMxcsr(csr);
      f(callOf(x, y, n));
      const uint32_t after = readMxcsr(), within = inForce(contract.mxcsr, csr);
      writeMxcsr(masks);
      EXPECT_EQ(after & 0xffc0u, csr) << std::hex << n << " elements";
      EXPECT_TRUE(within == csr || (after & 0x3f) == 0) << n << " elements: flags are put back with the mode";
      EXPECT_TRUE(within != inForce(contract.mxcsr, masks) || y == usual)
          << n << " elements: other bits where MXCSR was " << std::hex << csr;
    });
  }
}

// Flags that were up before a call are so after it, whether the kernel puts modes back or not.
TEST_P(EveryContract, LeavesEarlierFlagsUp) {
  const auto samples = bothSamplesOf(11, 600);
  for (const Sample& s : samples)
    for (const uint32_t modes : {0u, 0x6000u, 0x8040u}) {
      Outputs y = outputsFor(600);
      const Call c = callOf(s.inputs, y, 600);
      writeMxcsr(masks | modes | 0x3f);
      f(c);
      const uint32_t after = readMxcsr();
      writeMxcsr(masks);
      EXPECT_EQ(after & 0x3f, 0x3fu) << std::hex << "modes " << modes;
    }
}

// The words in force when the first input is read, from the fault on its page.
struct Seen {
  uint32_t csr;
  uint16_t x87;
  char* page;
  size_t size;
};
Seen seen;
void lookAtTheWords(int, siginfo_t*, void* context) {
  const auto* state = static_cast<ucontext_t*>(context)->uc_mcontext.fpregs;
  seen.csr = state->mxcsr, seen.x87 = state->cwd;
  if (mprotect(seen.page, seen.size, PROT_READ | PROT_WRITE) != 0) std::abort();
}

TEST_P(EveryContract, RunsInTheModesOfItsClass) {
  seen.size = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  seen.page = static_cast<char*>(mmap(nullptr, seen.size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
  ASSERT_NE(seen.page, MAP_FAILED);
  const Inputs x = ordinaryInputs(f, 10, 1);
  std::memcpy(seen.page, x.in[0].data(), f.reals(1) * 8);
  Outputs y = outputsFor(1);
  Call c = callOf(x, y, 1);
  c.in[0] = reinterpret_cast<double*>(seen.page);
  struct sigaction look = {}, before;
  look.sa_sigaction = lookAtTheWords;
  look.sa_flags = SA_SIGINFO;
  ASSERT_EQ(sigaction(SIGSEGV, &look, &before), 0);
  inModes([&](uint32_t modes, uint16_t word) {
    // The exceptions' masks are the caller's: here zero divides trap in one unit or the other.
    const uint32_t csr = word == 0x037f ? modes : modes & ~0x200u;
    const auto x87 = static_cast<uint16_t>(word == 0x037f ? word & ~4 : word);
    seen.csr = 0;
    ASSERT_EQ(mprotect(seen.page, seen.size, PROT_NONE), 0);
    writeX87Control(x87);
    writeMxcsr(csr);
    f(c);
    writeMxcsr(masks);
    writeX87Control(0x037f);
    EXPECT_EQ(seen.csr & 0xffc0, inForce(contract.mxcsr, csr)) << std::hex << "MXCSR was " << csr;
    EXPECT_EQ(seen.x87, inForce(contract.x87, x87)) << std::hex << "the x87 word was " << x87;
  });
  sigaction(SIGSEGV, &before, nullptr);
  munmap(seen.page, seen.size);
}

TEST_P(EveryContract, GivesItsStatusesAndRaisesTheirFlags) {
  const bool keepsFlags = inForce(contract.mxcsr, masks) == masks;  // else they are put back at exit
  const Inputs x = mixedInputs(f, 7, 2000);
  Outputs y = outputsFor(1);
  unsigned given = nothing;
  for (int32_t i = 0; i < 2000; ++i) {
    const Call one = from(callOf(x, y, 1), i);
    std::feclearexcept(FE_ALL_EXCEPT);
    std::feraiseexcept(FE_INEXACT);  // as it nearly always is
    const unsigned status = asSet(f(one));
    const int raised = std::fetestexcept(FE_ALL_EXCEPT);
    given |= status;
    if ((status & contract.raises) == 0 || !keepsFlags) continue;
    const int flag = status == outOfDomain ? FE_INVALID
                     : status == pole      ? FE_DIVBYZERO
                     : status == overflow  ? FE_OVERFLOW
                                           : FE_UNDERFLOW;
    EXPECT_TRUE(raised & flag) << "x = " << *one.in[0] << ", y = " << *one.in[1] << ", status " << status << ", flags "
                               << raised;
  }
  EXPECT_EQ(given, contract.gives);
}

// Buffers are read only where they were written: what was on the stack before shows neither in results nor in flags.
[[gnu::noinline]] void fillStack(uint64_t pattern) {
  volatile uint64_t below[1 << 13];
  for (volatile uint64_t& word : below) word = pattern;
}
TEST_P(EveryContract, ReadsNothingLeftOnTheStack) {
  const auto samples = bothSamplesOf(13);
  for (const Sample& s : samples)
    for (int32_t len : {1, 2, 3, 5, 6, 7, 9, 15, 17, 31, 45, 65, 131, 201, 259}) {
      Outputs y[2] = {outputsFor(len), outputsFor(len)};
      int flags[2];
      for (size_t k = 0; k < 2; ++k) {
        const Call c = callOf(s.inputs, y[k], len);
        fillStack(k == 0 ? 0 : 0x7ff4000000000001);  // a NaN that signals
        std::feclearexcept(FE_ALL_EXCEPT);
        f(c);
        flags[k] = std::fetestexcept(FE_ALL_EXCEPT);
      }
      EXPECT_EQ(flags[0], flags[1]) << "length " << len;
      for (size_t k = 0; k < 2; ++k)
        EXPECT_EQ(std::memcmp(y[0][k].data(), y[1][k].data(), y[0][k].size() * sizeof(double)), 0) << "length " << len;
    }
}

// A kernel that leaves the upper halves of the registers dirty slows the caller's SSE code down.
// XGETBV of register 1 shows which state is in use.
class EveryAvxKernel : public AtEveryLevel {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EveryAvxKernel);
TEST_P(EveryAvxKernel, LeavesNoDirtyUpperHalves) {
  uint32_t eax = 0xd, ebx, ecx = 1, edx;
  asm("cpuid" : "+a"(eax), "=b"(ebx), "+c"(ecx), "=d"(edx));
  if (!(eax & 4)) GTEST_SKIP() << "this processor doesn't tell";
  const auto samples = bothSamplesOf(9, 600);
  Outputs y = outputsFor(600);
  for (const Sample& s : samples)
    for (int32_t len : {1, 8, 33, count, 599}) {
      uint32_t low, high;
      asm volatile("vzeroupper");
      f(callOf(s.inputs, y, len));
      asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(1));
      EXPECT_EQ(low & 4, 0u) << "length " << len;
    }
}

INSTANTIATE_TEST_SUITE_P(Properties, EveryContract, everyFunctionAndLevel(), nameOf);
INSTANTIATE_TEST_SUITE_P(Properties, EveryAvxKernel,
                         testing::Combine(testing::Range(size_t{0}, functions().size()), testing::ValuesIn([] {
                                            std::vector<int> levels = supportedLevels();
                                            std::erase_if(levels, [](int level) { return level < 5; });
                                            return levels;
                                          }())),
                         nameOf);

}  // namespace
}  // namespace qorvane::test
