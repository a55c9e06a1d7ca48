// The test program's own operators new and delete: they count, and fail on request.
#pragma once

namespace pxb::test {

// Blocks that are allocated at present.
int LiveAllocations();

// While it lives, one allocation that may return null does: the first (0), the second (1), ...
class FailingAllocation {
  public:
    explicit FailingAllocation(int number);
    ~FailingAllocation();
    bool HasFailed() const;  // since there were as many allocations
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};

}  // namespace pxb::test
