#include "programs/defaults/Domain.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DefaultsDomain.h"
#include "platform/foundation/defaults/DefaultsPlaces.h"
#include "platform/foundation/defaults/SQLiteError.h"
#include "programs/defaults/DefaultsOptions.h"
#include "programs/defaults/format/Escaped.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

/// What cannot be looked at counts as there: opening it says why.
bool isAnythingAt(const fs::path& path) {
    std::error_code ignored;
    return fs::status(path, ignored).type() != fs::file_type::not_found;
}

/// The operation, with the file's name in front of what SQLite has to say, which names none.
template <typename Operation>
void naming(const std::string& path, const Operation& operation) {
    try {
        operation();
    } catch (const SQLiteError& error) {
        throw NSError(error.domain(), error.code(), path + ": " + error.what());
    }
}

std::string pathOf(const std::string& name) {
    if (name == ownDomainName()) {
        return ownDomainFile().string();
    }
    if (const auto trouble = suiteNameTrouble(name)) {
        throw BadOption(escaped(*trouble));
    }
    return suiteFile(name).string();
}

}  // namespace

Domain::Domain(std::string name) : name_(std::move(name)), path_(pathOf(name_)) {}

std::vector<std::string> Domain::names() {
    const auto folder = suiteFile("any").parent_path();
    std::error_code error;
    if (fs::directory_iterator(folder, error); error && isAnythingAt(folder)) {
        throw NSError::posix(error.value(), folder.string());
    }
    auto names = suiteNames();
    if (isAnythingAt(ownDomainFile())) {
        names.push_back(ownDomainName());
    }
    std::ranges::sort(names);
    return names;
}

bool Domain::isThere() const {
    return isAnythingAt(path_);
}

PropertyList::Dictionary Domain::entries() const {
    PropertyList::Dictionary entries;
    if (isThere()) {
        const auto domain = DefaultsDomain::of(path_);
        naming(path_, [&] { domain->open(); });
        domain->addTo(entries);
    }
    return entries;
}

void Domain::change(DefaultsChanges changes) const {
    naming(path_, [&] { DefaultsDomain::of(path_)->change(std::move(changes)); });
}

}  // namespace orvalo
