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

    /// Reads the file; creates it when it is missing. Throws NSError when the file is refused. For
    /// a file that another process keeps locked, logs one line; the next operation tries again.
    void open();

    /// The value of the key; absent without one. When the file cannot be read, the entries that
    /// were read last count, with one line on standard error.
    std::optional<PropertyList> value(std::string_view key);
    /// All entries. Throws NSError when they cannot be read.
    PropertyList::Dictionary entries();
    /// Adds the entries whose keys the dictionary lacks.
    void addTo(PropertyList::Dictionary& dictionary);
    /// Stores a value; an absent one removes the key. A failure leaves the key as it was, with one
    /// line on standard error.
    void set(std::string_view key, const std::optional<PropertyList>& value);
    /// Makes all changes together, or changes nothing when it throws. replacesAll: removes all
    /// other entries. Throws NSError, which names the key when a value cannot be stored.
    void change(const Changes& changes, bool replacesAll);

  private:
    /// The file, opened again when its path leads to another file.
    DefaultsFile& file();
    void refresh();
    void refreshOrWarn();
    /// Stores the changes, which `binary` has encoded.
    void store(const std::vector<BinaryEntry>& binary, const Changes& changes, bool replacesAll);
    /// Runs the operation; when the file is damaged, renames it and runs the operation again with a
    /// new file.
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
