#pragma once

namespace orvalo::testing {

/// Counts the heap's calls on this thread while it lives.
class AllocationCount {
  public:
    AllocationCount();
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    static int count();
};

}  // namespace orvalo::testing
