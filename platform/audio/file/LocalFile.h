#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace orvalo {

/// A regular file held open for reading, whatever becomes of its name. One thread at a time.
class LocalFile {
  public:
    /// Throws NSError (the system's own) for what is missing, unreadable or a directory, and for
    /// what is no regular file.
    explicit LocalFile(const std::string& path);
    ~LocalFile();
    LocalFile(const LocalFile&) = delete;
    LocalFile& operator=(const LocalFile&) = delete;

    const std::string& path() const { return path_; }
    /// Its size in bytes, as it is now.
    std::int64_t size() const;
    /// Reads up to bytes.size() bytes from there; returns how many, fewer only at the file's end,
    /// or when the system cannot read it.
    std::size_t read(std::int64_t from, std::span<std::uint8_t> bytes) const;

  private:
    std::string path_;
    int descriptor_;
};

}  // namespace orvalo
