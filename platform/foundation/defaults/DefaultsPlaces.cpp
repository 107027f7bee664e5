#include "platform/foundation/defaults/DefaultsPlaces.h"

#include <glib.h>

#include <climits>
#include <system_error>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/foundation/UserFolders.h"

namespace orvalo {

namespace {

constexpr std::string_view kSuffix = ".sqlite";
// For the suffixes of SQLite's files and of damaged files.
constexpr std::size_t kRoomForSuffixes = 64;

std::filesystem::path suiteFolder() {
    return userConfigurationFolder() / "orvalo-suites";
}

bool isText(std::string_view name) {
    return g_utf8_validate_len(name.data(), name.size(), nullptr) != FALSE;
}

}  // namespace

const std::string& ownDomainName() {
    static const auto& name = *new const std::string(
        Bundle::main()->infoValue("Identifier").value_or(ProcessInfo::processInfo().processName()));
    return name;
}

std::optional<std::string> suiteNameTrouble(std::string_view name) {
    if (name.empty()) {
        return "A suite needs a name.";
    }
    if (!isText(name)) {
        return "A suite's name is not UTF-8 text.";
    }
    const auto culprit = "The suite name '" + std::string(name) + "' ";
    if (name.find('/') != std::string_view::npos || name == "." || name == "..") {
        return culprit + "is a path.";
    }
    if (name == ownDomainName()) {
        return culprit + "is the application's own domain.";
    }
    if (name.size() > NAME_MAX - kRoomForSuffixes) {
        return culprit + "is too long.";
    }
    return std::nullopt;
}

std::filesystem::path ownDomainFile() {
    return userConfigurationFolder() / ownDomainName() / "defaults.sqlite";
}

std::filesystem::path suiteFile(std::string_view name) {
    return suiteFolder() / std::string(name).append(kSuffix);
}

std::vector<std::string> suiteNames() {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(suiteFolder(), error), end; entry != end;
         entry.increment(error)) {
        const auto& path = entry->path();
        if (path.extension() == kSuffix && !suiteNameTrouble(path.stem().string())) {
            names.push_back(path.stem().string());
        }
    }
    std::error_code ignored;
    if (error && std::filesystem::status(suiteFolder(), ignored).type() !=
                     std::filesystem::file_type::not_found) {
        throw NSError::posix(error.value(), suiteFolder().string());
    }
    return names;
}

}  // namespace orvalo
