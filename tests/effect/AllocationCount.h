#pragma once

namespace orvalo::testing {

/// Counts the heap calls of this thread while the object lives.
class AllocationCount {
  public:
    AllocationCount();
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    static int count();
};

}  // namespace orvalo::testing
