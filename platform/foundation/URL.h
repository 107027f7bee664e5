#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvalo {

/// The address of a file or of a resource on the web. A value.
class URL {
  public:
    /// The address of that text, which is kept unchanged. Absent when the text is no absolute
    /// address (with a scheme) of RFC 3986.
    static std::optional<URL> string(std::string_view text);
    /// The address of a file or folder. Relative paths start at the working directory.
    static URL fileURLWithPath(std::string_view path);

    bool isFileURL() const;
    /// The unescaped path; for a file the bytes of its path in the file system.
    const std::string& path() const { return path_; }
    /// The part after the last full stop of the last path component; "" when there is no full stop
    /// or when it is the first character.
    std::string pathExtension() const;
    /// The escaped text, such as "file:///a%20b".
    const std::string& absoluteString() const { return absoluteString_; }
    /// The address of an item in this folder.
    URL appendingPathComponent(std::string_view component) const;

    friend bool operator==(const URL&, const URL&) = default;

  private:
    URL(std::string absoluteString, std::string path);
    std::string absoluteString_;
    std::string path_;
};

/// The textual form of an optional address: "Optional(<absoluteString>)", or "nil".
std::string description(const std::optional<URL>& url);
/// The textual form of a list of addresses: "[<absoluteString>, ...]".
std::string description(const std::vector<URL>& urls);

}  // namespace orvalo
