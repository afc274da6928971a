// Processor detection, as the load hook uses it and tests look into it.
#pragma once
#include <cstdint>

#include "frame/include/qorvane.h"

namespace qorvane {

// Bits of the feature word that choose the level.
constexpr uint64_t hasSse3 = 0x8, hasSsse3 = 0x10, hasMovbe = 0x20, hasSse41 = 0x40, hasAvx = 0x100;
constexpr uint64_t savesAvxState = 0x200;  // the operating system saves the XMM and YMM registers

// The features in use: the feature word less what the chosen level leaves aside. A record, nothing
// depends on it.
extern uint64_t ProcessorFeatures;

// What the feature word is made from: ECX and EDX of CPUID leaf 1, whether XGETBV shows XMM and YMM
// state saved, and EDX of leaf 0x20000001, 0 where that leaf isn't there.
struct ProcessorWords {
  uint32_t ecx, edx;
  bool stateIsSaved;
  uint32_t familyB;
};
uint64_t featuresOf(const ProcessorWords& words);

// From ECX of CPUID leaf 1, and register 0 of XGETBV, which is read only where there is one.
bool avxStateIsSaved(uint32_t ecx, uint32_t (*xcr0)());

struct LevelChoice {
  int32_t level;
  uint64_t kept;
};
LevelChoice chooseLevel(uint64_t features);

// Stores the feature word in *features. With `info`: stores EAX, EBX, ECX, EDX of a CPUID leaf
// there, of leaf info[0] and sub-leaf info[2] if *features held getInfoMagic on entry, otherwise of
// leaf 1.
constexpr uint64_t getInfoMagic = 0x616f666e69746567;  // "getinfoa"
nuvStatus queryProcessorFeatures(uint64_t* features, uint32_t* info);

// The smaller of the two becomes the thread count, unless it is below 1.
void setDefaultThreads(int32_t processors, int32_t maxThreads);

}  // namespace qorvane
