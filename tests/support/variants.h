// The variants that conversions may choose, and how to force one.
#pragma once
#include <vector>

#include "convert/processor.h"
#include "reference.h"

namespace pxb::test {

struct Variant {
    const char* name;
    pxb::Processor words;
    ::Processor arithmetic;  // what the reference has to compute
};

// All that this machine can run, and the names of those that it cannot.
std::vector<Variant> RunnableVariants();
std::vector<const char*> MissingVariants();

class ForcedProcessor {
  public:
    explicit ForcedProcessor(pxb::Processor words) : before_{ProcessorFeatures(), WideFeatures()} {
        SetProcessor(words);
    }
    ~ForcedProcessor() { SetProcessor(before_); }
    ForcedProcessor(const ForcedProcessor&) = delete;
    ForcedProcessor& operator=(const ForcedProcessor&) = delete;

  private:
    pxb::Processor before_;
};

}  // namespace pxb::test
