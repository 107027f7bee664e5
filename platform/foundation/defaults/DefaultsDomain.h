#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/foundation/defaults/DefaultsFile.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// The entries of one domain, which all processes share through its file. Any thread.
///
/// The entries stay in memory and are read again when SQLite's data_version has changed.
class DefaultsDomain {
  public:
    /// Values to store under keys; absent ones are removed.
    using Changes = std::map<std::string, std::optional<PropertyList>, std::less<>>;

    explicit DefaultsDomain(std::string path) : path_(std::move(path)) {}

    /// Reads the file, which is made where it is missing. Throws NSError when it is refused. A file
    /// that another process keeps locked is not refused: one line on standard error, and the next
    /// operation tries again.
    void open();

    /// The value of the key; absent without one. A domain that cannot be read keeps the entries
    /// that it had, with one line on standard error.
    std::optional<PropertyList> value(std::string_view key);
    /// All entries. Throws NSError when they cannot be read.
    PropertyList::Dictionary entries();
    /// Adds the entries whose keys are not there.
    void addTo(PropertyList::Dictionary& dictionary);
    /// Stores a value, or removes the key. What cannot be stored stays as it was, with one line on
    /// standard error.
    void set(std::string_view key, const std::optional<PropertyList>& value);
    /// Makes all changes together; replacesAll: removes all other entries. Throws NSError, which
    /// names the key where one cannot be stored, and changes nothing then.
    void change(const Changes& changes, bool replacesAll);

  private:
    /// The file, opened again when its path leads elsewhere.
    DefaultsFile& file();
    void refresh();
    void refreshOrWarn();
    void store(const std::vector<BinaryEntry>& entries, bool replacesAll);
    /// Runs the operation again with a new file, after a damaged one was set aside.
    template <typename Operation>
    void retryAfterDamage(const Operation& operation);

    const std::string path_;
    std::mutex mutex_;
    std::unique_ptr<DefaultsFile> file_;
    std::optional<std::int64_t> version_;  ///< The data_version of the entries.
    std::map<std::string, PropertyList, std::less<>> entries_;
    std::string lastTrouble_;
};

}  // namespace orvalo
