// Processor detection.
#include "frame/detection.h"

#include <cpuid.h>

namespace qorvane {
namespace {

uint64_t cachedFeatures;
bool featuresAreCached;

struct Registers {
  uint32_t eax, ebx, ecx, edx;
};
Registers cpuid(uint32_t leaf, uint32_t subleaf) {
  Registers r;
  __cpuid_count(leaf, subleaf, r.eax, r.ebx, r.ecx, r.edx);
  return r;
}

// Register 0 of XGETBV: which register state the operating system saves.
uint32_t savedState() {
  uint32_t low, high;
  asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

}  // namespace

bool avxStateIsSaved(uint32_t ecx, uint32_t (*xcr0)()) {
  constexpr uint32_t osxsaveAndAvx = 3u << 27;
  return (ecx & osxsaveAndAvx) == osxsaveAndAvx && (xcr0() & 6) == 6;
}

uint64_t featuresOf(const ProcessorWords& words) {
  struct Source {
    uint32_t word;
    int bit;
  };
  // In the order of the feature bits 0 to 8; the bits from 9 on follow below.
  const Source lowBits[] = {{words.edx, 23}, {words.edx, 25}, {words.edx, 26}, {words.ecx, 0}, {words.ecx, 9},
                            {words.ecx, 22}, {words.ecx, 19}, {words.ecx, 20}, {words.ecx, 28}};
  uint64_t features = 0;
  for (int i = 0; i < 9; ++i) features |= uint64_t{lowBits[i].word >> lowBits[i].bit & 1} << i;
  if (words.stateIsSaved) features |= savesAvxState;
  features |= uint64_t{words.ecx >> 25 & 1} << 10;  // AES
  features |= uint64_t{words.ecx >> 1 & 1} << 11;   // PCLMULQDQ
  features |= uint64_t{words.familyB >> 1 & 1} << 12;
  features |= uint64_t{words.ecx >> 30 & 1} << 13;  // RDRAND
  features |= uint64_t{words.ecx >> 29 & 1} << 14;  // F16C
  return features;
}

LevelChoice chooseLevel(uint64_t features) {
  if (features & hasAvx && features & savesAvxState) return {5, features & 0x6fdf};
  if (features & hasSse41) return {4, features & 0xcdf};
  if (features & hasMovbe && features & hasSsse3) return {3, features & 0x3f};
  if (features & hasSsse3) return {2, features & 0x1f};
  if (features & hasSse3) return {1, features & 0xf};
  return {0, features & 0x7};
}

nuvStatus queryProcessorFeatures(uint64_t* features, uint32_t* info) {
  if (!featuresAreCached) {
    const Registers r = cpuid(1, 0);
    ProcessorWords words = {r.ecx, r.edx, avxStateIsSaved(r.ecx, savedState), 0};
    if ((r.eax >> 8 & 0xf) == 0xb) words.familyB = cpuid(0x20000001, 0).edx;
    cachedFeatures = featuresOf(words);
    featuresAreCached = true;
  }
  if (features == nullptr) return nuvStatusNullPointer;
  const uint64_t request = *features;
  *features = cachedFeatures;
  if (info == nullptr) return nuvStatusOk;
  const Registers r = request == getInfoMagic ? cpuid(info[0], info[2]) : cpuid(1, 0);
  info[0] = r.eax;
  info[1] = r.ebx;
  info[2] = r.ecx;
  info[3] = r.edx;
  return nuvStatusOk;
}

}  // namespace qorvane
