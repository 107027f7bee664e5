#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/foundation/defaults/ChangeMapping.h"
#include "platform/foundation/defaults/FileIdentity.h"

namespace orvalo {

/// The file that tells the processes which share a domain of its changes, and keeps their writes
/// apart. It holds nothing but a counter: lost or overwritten, it begins anew. One thread at a
/// time, but for the mapping.
class ChangeCounter {
  public:
    /// Held by one process at most; the system takes it from one that dies.
    class Lock {
      public:
        explicit Lock(int descriptor) : descriptor_(descriptor) {}
        ~Lock();
        Lock(Lock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
        Lock& operator=(Lock&&) = delete;

      private:
        int descriptor_;
    };

    /// Marks a write for as long as it lives; made and ended under the lock.
    class Write {
      public:
        explicit Write(ChangeMapping& mapping);
        ~Write();
        Write(const Write&) = delete;
        Write& operator=(const Write&) = delete;

      private:
        ChangeMapping& mapping_;
    };

    /// Opens the file, for reading alone where it cannot be written, and creates it where it is
    /// missing. Throws NSError.
    explicit ChangeCounter(const std::string& path);
    ~ChangeCounter();
    ChangeCounter(const ChangeCounter&) = delete;
    ChangeCounter& operator=(const ChangeCounter&) = delete;

    /// Whether the file is still the one that others find.
    bool isInPlace() const { return identity_.isAt(path_); }
    const std::shared_ptr<ChangeMapping>& mapping() const { return mapping_; }

    /// Waits for the lock. Throws NSError when another process has held it for ten seconds.
    Lock lock() const;
    /// The lock, unless another process holds it.
    std::optional<Lock> tryLock() const;

  private:
    std::string path_;
    int descriptor_ = -1;
    FileIdentity identity_;
    std::shared_ptr<ChangeMapping> mapping_;
};

}  // namespace orvalo
