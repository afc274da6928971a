// atan2(y, x) for any arguments. Where the ratio isn't extreme, ordinary results come from another
// evaluation than the kernels' and may differ from theirs in the last bit. The status is always ok.
#pragma once
#include "frame/element.h"

namespace qorvane {

Element atan2SpecialLane(Float64 y, Float64 x);

}  // namespace qorvane
