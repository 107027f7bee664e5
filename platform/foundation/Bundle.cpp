#include "platform/foundation/Bundle.h"

#include <glib.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "platform/foundation/ExecutablePath.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo {

const std::shared_ptr<Bundle>& Bundle::main() {
    // Never destroyed: threads may still use it while the process ends.
    static const auto& bundle = *new const std::shared_ptr<Bundle>(std::make_shared<Bundle>(
        URL::fileURLWithPath(executablePath().parent_path().parent_path().string())));
    return bundle;
}

Bundle::Bundle(URL prefix) : prefix_(std::move(prefix)) {}

std::optional<URL> Bundle::resourceURL() const {
    auto url = prefix_.appendingPathComponent("share/orvalo");
    std::error_code ignored;
    if (!std::filesystem::is_directory(url.path(), ignored)) {
        return std::nullopt;
    }
    return url;
}

std::optional<URL> Bundle::url(std::string_view forResource, std::string_view withExtension) const {
    std::string name(forResource);
    name.append(".").append(withExtension);
    auto url = prefix_.appendingPathComponent("share/orvalo").appendingPathComponent(name);
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(url.path(), ignored)) {
        return std::nullopt;
    }
    return url;
}

std::optional<std::string> Bundle::infoValue(const std::string& key) const {
    const auto file = url("Info", "ini");
    const std::unique_ptr<GKeyFile, Release<g_key_file_unref>> info(g_key_file_new());
    if (!file || g_key_file_load_from_file(info.get(), file->path().c_str(), G_KEY_FILE_NONE,
                                           nullptr) == FALSE) {
        return std::nullopt;
    }
    const GText value(g_key_file_get_string(info.get(), "Bundle", key.c_str(), nullptr));
    return value ? std::optional<std::string>(value.get()) : std::nullopt;
}

URL Bundle::dataURL() const {
    return prefix_.appendingPathComponent("share");
}

URL Bundle::effectsURL() const {
    return prefix_.appendingPathComponent("lib/lv2");
}

URL Bundle::helperURL(std::string_view name) const {
    return prefix_.appendingPathComponent("libexec/orvalo").appendingPathComponent(name);
}

}  // namespace orvalo
