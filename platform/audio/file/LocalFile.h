#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// A regular file, open for reading; it may be renamed or removed while it is open. One thread at a
/// time.
class LocalFile {
  public:
    /// Throws NSError when the file is missing, unreadable (the system's error) or not regular.
    explicit LocalFile(const std::string& path);

    const std::string& path() const { return path_; }
    /// The present size in bytes.
    std::int64_t size() const;
    /// Reads bytes.size() bytes from this place and returns how many: fewer only at the file's end
    /// or after a read error.
    std::size_t read(std::int64_t from, std::span<std::uint8_t> bytes) const;

  private:
    std::string path_;
    FileDescriptor descriptor_;
};

}  // namespace orvalo
