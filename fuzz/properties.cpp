#include "fuzz/properties.h"

namespace pxb::test {

#define PXB_DECLARE(function) void function(Bytes& bytes);
PXB_DECLARE(FuzzBuffers)
PXB_DECLARE(FuzzConversion)
PXB_DECLARE(FuzzScaling)
PXB_DECLARE(FuzzRotation)
PXB_DECLARE(FuzzMirrors)
PXB_DECLARE(FuzzBlending)

std::span<const Property> Properties() {
    static constexpr Property kProperties[] = {
        {"buffers", FuzzBuffers, 40000}, {"conversion", FuzzConversion, 60000},
        {"scaling", FuzzScaling, 40000}, {"rotation", FuzzRotation, 40000},
        {"mirrors", FuzzMirrors, 80000}, {"blending", FuzzBlending, 50000},
    };
    return kProperties;
}

}  // namespace pxb::test
