// A synthetic frame that shows at a glance what a conversion does to edges, ramps and colors.
#pragma once
#include "picture.h"

namespace pxb::tool {

// I420, studio range. Of `count` frames, number 0 to count - 1 form one turn of a loop.
Picture PaintTestCard(Size size, int number, int count);

}  // namespace pxb::tool
