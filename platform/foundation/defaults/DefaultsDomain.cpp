#include "platform/foundation/defaults/DefaultsDomain.h"

#include <glib.h>

#include <utility>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/PropertyListCoding.h"

namespace orvalo {

namespace {

constexpr int kMostAttempts = 3;

BinaryEntry encoded(const std::string& key, const std::optional<PropertyList>& value) {
    if (g_utf8_validate_len(key.data(), key.size(), nullptr) == FALSE) {
        throw propertyListError("its key is not UTF-8 or holds a NUL");
    }
    return {key, value ? std::optional(binaryPropertyList(*value)) : std::nullopt};
}

}  // namespace

DefaultsFile& DefaultsDomain::file() {
    if (!file_ || !file_->isInPlace()) {
        file_.reset();
        version_.reset();
        file_ = DefaultsFile::open(path_);
    }
    return *file_;
}

template <typename Operation>
void DefaultsDomain::retryAfterDamage(const Operation& operation) {
    for (int attempt = 1;; ++attempt) {
        try {
            operation();
            return;
        } catch (const SQLiteError& error) {
            if (!error.isDamage() || attempt == kMostAttempts) {
                throw;
            }
            file_.reset();  // Opening it again renames a damaged file.
        }
    }
}

void DefaultsDomain::refresh() {
    retryAfterDamage([this] {
        // Read before the entries, so that the next refresh reads a write in between.
        const auto version = file().dataVersion();
        if (version_ != version) {
            entries_ = file_->entries();
            version_ = version;
        }
    });
}

void DefaultsDomain::refreshOrWarn() {
    try {
        refresh();
        lastTrouble_.clear();
    } catch (const NSError& error) {
        if (std::exchange(lastTrouble_, error.what()) != error.what()) {
            g_warning("The settings in %s cannot be read: %s.", path_.c_str(), error.what());
        }
    }
}

void DefaultsDomain::open() {
    const std::lock_guard lock(mutex_);
    try {
        refresh();
    } catch (const SQLiteError& error) {
        if (!error.isBusy()) {
            throw;
        }
        lastTrouble_ = error.what();
        g_warning("The settings in %s cannot be read yet: %s.", path_.c_str(), error.what());
    }
}

std::optional<PropertyList> DefaultsDomain::value(std::string_view key) {
    const std::lock_guard lock(mutex_);
    refreshOrWarn();
    const auto found = entries_.find(key);
    return found == entries_.end() ? std::nullopt : std::optional(found->second);
}

PropertyList::Dictionary DefaultsDomain::entries() {
    const std::lock_guard lock(mutex_);
    refresh();
    return {entries_.begin(), entries_.end()};
}

void DefaultsDomain::addTo(PropertyList::Dictionary& dictionary) {
    const std::lock_guard lock(mutex_);
    refreshOrWarn();
    dictionary.insert(entries_.begin(), entries_.end());
}

void DefaultsDomain::set(std::string_view key, const std::optional<PropertyList>& value) {
    const Changes changes{{std::string(key), value}};
    const auto& name = changes.begin()->first;
    try {
        store({encoded(name, value)}, changes, false);
    } catch (const NSError& error) {
        g_warning("'%s' in %s stays as it was: %s.", name.c_str(), path_.c_str(), error.what());
    }
}

void DefaultsDomain::change(const Changes& changes, bool replacesAll) {
    std::vector<BinaryEntry> binary;
    for (const auto& [key, value] : changes) {
        try {
            binary.push_back(encoded(key, value));
        } catch (const NSError& error) {
            throw propertyListError("'" + key + "': " + error.what());
        }
    }
    store(binary, changes, replacesAll);
}

void DefaultsDomain::store(const std::vector<BinaryEntry>& binary, const Changes& changes,
                           bool replacesAll) {
    const std::lock_guard lock(mutex_);
    if (file_ && file_->isReadOnly()) {
        file_.reset();  // The file may be writable by now.
    }
    retryAfterDamage([&] {
        do {
            file().change(binary, replacesAll);
        } while (!file_->isInPlace());
    });
    if (replacesAll) {
        entries_.clear();
    }
    for (const auto& [key, value] : changes) {
        if (value) {
            entries_.insert_or_assign(key, *value);
        } else {
            entries_.erase(key);
        }
    }
}

}  // namespace orvalo
