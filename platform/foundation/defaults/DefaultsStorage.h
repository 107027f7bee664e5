#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/ChangeCounter.h"
#include "platform/foundation/defaults/DefaultsChanges.h"
#include "platform/foundation/defaults/DefaultsFile.h"

namespace orvalo {

/// A domain on the disk, shared by all processes: its file and its change counter, opened when they
/// are needed. One thread at a time. Every operation throws NSError.
class DefaultsStorage {
  public:
    /// What has changed, and up to which count.
    struct Update {
        DefaultsChanges changes;
        /// Absent where there can be no counter, as on a read-only or full disk: everybody always
        /// looks.
        std::shared_ptr<const ChangeMapping> counter;
        /// The count with which the changes agree. An odd one has no duration: look again.
        std::uint64_t count = 0;
    };

    explicit DefaultsStorage(std::string path) : path_(std::move(path)) {}

    const std::string& path() const { return path_; }

    /// What other processes have changed since the last update; all there is at first.
    Update refresh();
    /// Stores a binary property list, or removes the key. The update is what others have changed
    /// before.
    Update put(std::string_view key, std::optional<std::span<const std::uint8_t>> value);
    /// put() of all these together, or of none when it throws. replaces: removes all others.
    Update putAll(std::span<const BinaryEntry> entries, bool replaces);
    /// Lets the files go, which a fork must not share; the next operation opens them again.
    void close();

  private:
    void openCounter();
    bool isOpen() const;
    /// The counter, where a write can be marked in it; otherwise null.
    ChangeMapping* mark() const;
    bool isWritable() const;
    /// Throws what keeps from writing.
    [[noreturn]] void refuseWrite() const;
    /// Under the lock, unless there is no counter.
    void openFile();
    /// Under the lock.
    void endWriteOfDeadProcess() const;
    /// The operation with the file open, under the domain's lock; without a counter there is none,
    /// and nothing but reading. Once more after a damaged file has been set aside.
    Update underLock(const std::function<Update()>& operation);
    void setAsideIfDamaged();
    Update written(const std::function<void()>& operation);
    Update update();

    std::string path_;
    std::string place_;  ///< Where the path leads, as of the opening.
    std::unique_ptr<ChangeCounter> counter_;
    std::optional<NSError> counterTrouble_;  ///< Why there is none.
    int looks_ = 0;                          ///< At the file since there is none.
    std::unique_ptr<DefaultsFile> file_;
    std::uint64_t agreed_ = 1;  ///< The count up to which the file has been read; odd: none.
};

}  // namespace orvalo
