#pragma once

#include <sys/types.h>

#include <cstddef>

namespace orvalo::testing {

/// As long as it lives, SQLite writes to files by another function.
class OtherWrites {
  public:
    using Write = ssize_t (*)(int, const void*, size_t, off_t);

    explicit OtherWrites(Write write);
    ~OtherWrites();
    OtherWrites(const OtherWrites&) = delete;
    OtherWrites& operator=(const OtherWrites&) = delete;
};

/// As long as it lives, SQLite finds every disk full.
class FullDisk {
  public:
    /// writes: how many still find room.
    explicit FullDisk(int writes = 0);

  private:
    static ssize_t write(int file, const void* bytes, size_t size, off_t at);

    static int left_;
    const OtherWrites writes_;
};

}  // namespace orvalo::testing
