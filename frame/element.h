// What a special lane gives: one element's result and status.
#pragma once
#include "frame/bits.h"
#include "frame/include/qorvane.h"

namespace qorvane {

struct Element {
  Float64 value;
  nuvStatus status = nuvStatusOk;
};

}  // namespace qorvane
