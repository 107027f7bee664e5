#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/foundation/defaults/ChangeMapping.h"

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

/// As long as it lives, it looks at every write of SQLite's whether it is marked in the counter, by
/// which whoever dies in between is found out. One object at a time.
class MarkWatch {
  public:
    /// ending: looks at writes alone to files whose names end so.
    explicit MarkWatch(const ChangeMapping& mapping, std::string_view ending = {});

    /// Whether there were writes, and all of them marked.
    static bool wasMarkedThroughout();

  private:
    static ssize_t write(int file, const void* bytes, size_t size, off_t at);

    static const ChangeMapping* mapping_;
    static std::string_view ending_;
    static std::vector<bool> marks_;
    const OtherWrites writes_;
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
