// YuvToRgbTables: the terms of the plain YUV to RGB arithmetic in 13-bit fixed point, for each
// sample value (ITU-R BT.601: 1.164, 2.018, 0.391, 0.813 and 1.596 times 8192, truncated).
#pragma once
#include <cstdint>

namespace pxb {

struct YuvToRgbTables {
    std::int32_t luma[256], u_to_blue[256], u_to_green[256], v_to_green[256], v_to_red[256];
};

constexpr YuvToRgbTables BuildYuvToRgbTables() {
    YuvToRgbTables tables = {};
    for (int i = 0; i < 256; ++i) {
        tables.luma[i] = 9535 * (i - 16);
        tables.u_to_blue[i] = 16531 * (i - 128);
        tables.u_to_green[i] = 3203 * (i - 128);
        tables.v_to_green[i] = 6660 * (i - 128);
        tables.v_to_red[i] = 13074 * (i - 128);
    }
    return tables;
}

}  // namespace pxb
