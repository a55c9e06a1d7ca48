// The rows of both mirrors.
#pragma once
#include <vector>

#include "bench/rows.h"

namespace pxb::bench {

std::vector<Row> FlipRows();

}  // namespace pxb::bench
