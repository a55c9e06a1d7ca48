// What runs while the library is loaded, before any function of it can be called. The order among
// constructors of several files is opposite on Linux and Windows, so there is only this one, and
// all that it writes has constant initial values.
#include "convert/load_time.h"

#include "convert/kernel_table.h"
#include "convert/processor.h"

namespace pxb {

std::uint32_t InitialiseOnce() {
    if (ProcessorFeatures() != 0) return ProcessorFeatures();
    const Processor processor = ProbeProcessor();
    SetProcessor(processor);
    FillKernelTable(processor.features);
    return processor.features;
}

namespace {

__attribute__((constructor)) void OnLoad() {
    InitialiseOnce();
}

}  // namespace
}  // namespace pxb
