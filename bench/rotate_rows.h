// The rows of turns.
#pragma once
#include <vector>

#include "bench/rows.h"

namespace pxb::bench {

std::vector<Row> RotateRows();

}  // namespace pxb::bench
