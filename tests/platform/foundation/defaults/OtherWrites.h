#pragma once

#include <sys/types.h>

#include <cstddef>

namespace orvalo::testing {

/// Makes SQLite write to files through another function for the object's life.
class OtherWrites {
  public:
    using Write = ssize_t (*)(int, const void*, size_t, off_t);

    explicit OtherWrites(Write write);
    ~OtherWrites();
    OtherWrites(const OtherWrites&) = delete;
    OtherWrites& operator=(const OtherWrites&) = delete;
};

/// For the object's life, SQLite's first write to a log stops the process (SIGSTOP), which then
/// holds the write lock.
class StopAtWrite {
  public:
    StopAtWrite() : writes_(write) {}

  private:
    static ssize_t write(int file, const void* bytes, size_t size, off_t at);

    static bool hasStopped_;
    const OtherWrites writes_;
};

/// For the object's life, SQLite finds every disk full.
class FullDisk {
  public:
    /// writes: the number of writes that succeed first.
    explicit FullDisk(int writes = 0);

  private:
    static ssize_t write(int file, const void* bytes, size_t size, off_t at);

    static int left_;
    const OtherWrites writes_;
};

}  // namespace orvalo::testing
