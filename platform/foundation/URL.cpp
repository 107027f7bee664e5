#include "platform/foundation/URL.h"

#include <glib.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

// RFC 3986, section 2: the characters of an address beside letters and digits. g_uri_parse()
// accepts others too.
constexpr std::string_view punctuation = "-._~:/?#[]@!$&'()*+,;=%";
// RFC 3986, section 3.3: the characters that a path has unescaped.
constexpr const char* pathPunctuation = "!$&'()*+,;=:@/";
constexpr auto flags = G_URI_FLAGS_ENCODED;
constexpr std::string_view fileScheme = "file:";

bool isWritten(char character) {
    return g_ascii_isalnum(character) || punctuation.find(character) != std::string_view::npos;
}

/// The unescaped bytes; absent when an escape is malformed.
std::optional<std::string> unescaped(const char* text) {
    const GBytesPointer bytes(g_uri_unescape_bytes(text, -1, nullptr, nullptr));
    if (!bytes) {
        return std::nullopt;
    }
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
    return std::string(data == nullptr ? "" : data, size);
}

bool isFile(const std::string& address) {
    return g_ascii_strncasecmp(address.c_str(), fileScheme.data(), fileScheme.size()) == 0;
}

/// The path of a file's address; absent when it has none or is on another machine.
std::optional<std::string> filePath(const std::string& address) {
    char* host = nullptr;
    const GText path(g_filename_from_uri(address.c_str(), &host, nullptr));
    const GText owner(host);
    const bool isHere = host == nullptr || std::string_view(host) == "localhost";
    if (!path || !isHere) {
        return std::nullopt;
    }
    return path.get();
}

std::string joined(std::string folder, std::string_view component) {
    if (!folder.ends_with('/')) {
        folder += '/';
    }
    return folder.append(component);
}

}  // namespace

URL::URL(std::string absoluteString, std::string path)
    : absoluteString_(std::move(absoluteString)), path_(std::move(path)) {}

std::optional<URL> URL::string(std::string_view text) {
    if (!std::all_of(text.begin(), text.end(), isWritten)) {
        return std::nullopt;
    }
    std::string whole(text);
    const GUriPointer uri(g_uri_parse(whole.c_str(), flags, nullptr));
    if (!uri) {
        return std::nullopt;
    }
    auto path = isFile(whole) ? filePath(whole) : unescaped(g_uri_get_path(uri.get()));
    if (!path) {
        return std::nullopt;
    }
    return URL(std::move(whole), *std::move(path));
}

URL URL::fileURLWithPath(std::string_view path) {
    std::string whole(path);
    if (!path.starts_with('/')) {
        whole = GText(g_get_current_dir()).get();
        if (!path.empty()) {
            whole = joined(std::move(whole), path);
        }
    }
    const GText uri(g_filename_to_uri(whole.c_str(), nullptr, nullptr));
    return {uri.get(), std::move(whole)};
}

bool URL::isFileURL() const {
    return isFile(absoluteString_);
}

std::string URL::pathExtension() const {
    const auto end = path_.find_last_not_of('/');
    const auto extension =
        std::filesystem::path(path_.substr(0, end + 1)).filename().extension().string();
    return extension.empty() ? "" : extension.substr(1);
}

URL URL::appendingPathComponent(std::string_view component) const {
    if (isFileURL()) {
        return fileURLWithPath(joined(path_, component));
    }
    const GUriPointer uri(g_uri_parse(absoluteString_.c_str(), flags, nullptr));
    const GText escaped(
        g_uri_escape_string(std::string(component).c_str(), pathPunctuation, FALSE));
    const auto path = joined(g_uri_get_path(uri.get()), escaped.get());
    const GText whole(g_uri_join(flags, g_uri_get_scheme(uri.get()), g_uri_get_userinfo(uri.get()),
                                 g_uri_get_host(uri.get()), g_uri_get_port(uri.get()), path.c_str(),
                                 g_uri_get_query(uri.get()), g_uri_get_fragment(uri.get())));
    return {whole.get(), joined(path_, component)};
}

std::string description(const std::optional<URL>& url) {
    return url ? "Optional(" + url->absoluteString() + ")" : "nil";
}

std::string description(const std::vector<URL>& urls) {
    std::string result = "[";
    for (const auto& url : urls) {
        result += (result.size() == 1 ? "" : ", ") + url.absoluteString();
    }
    return result + "]";
}

}  // namespace orvalo
