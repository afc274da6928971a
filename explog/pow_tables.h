// The tables of x^y: one copy for the sources of all levels. explog/pow_tables.inc says what the
// rows are.
#pragma once
#include "frame/bits.h"

namespace qorvane {

extern const Float64 powRcpTable[1025];
extern const Float64 powLog2Table[1025][2];
extern const Float64 powExp2Table[128][2];

}  // namespace qorvane
