#include "core/variants.h"

namespace pxb {
namespace {

constinit Processor processor = {0, 0};

}  // namespace

std::uint32_t ProcessorFeatures() {
    return processor.features;
}
std::uint32_t WideFeatures() {
    return processor.wide;
}
void SetProcessor(Processor replacement) {
    processor = replacement;
}

}  // namespace pxb
