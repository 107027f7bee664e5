#include "platform/web/InstalledSite.h"

#include <glib.h>

#include <filesystem>
#include <utility>

#include "platform/foundation/FileContents.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

InstalledSite::InstalledSite(std::string site, const URL& folder)
    : site_(std::move(site)), folder_(folder.path()) {}

std::optional<std::string> InstalledSite::page(const std::string& address) const {
    const auto url = URL::string(withoutFragment(address));
    if (!url || !address.starts_with(site_ + "/")) {
        return std::nullopt;
    }
    auto file = folder_ + url->path();
    if (file.ends_with('/')) {
        file += "index.html";
    }
    if (url->path().find("/../") != std::string::npos || !std::filesystem::is_regular_file(file)) {
        return std::nullopt;
    }
    try {
        const auto content = contentsOfFile(file);
        return std::string(content.begin(), content.end());
    } catch (const NSError& error) {
        g_warning("The installed page cannot be shown: %s", error.localizedDescription().c_str());
        return std::nullopt;
    }
}

std::string withoutFragment(const std::string& address) {
    return address.substr(0, address.find('#'));
}

}  // namespace orvalo
