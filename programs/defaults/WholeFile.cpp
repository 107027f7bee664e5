#include "programs/defaults/WholeFile.h"

#include <glib.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "platform/foundation/GLibPointer.h"
#include "programs/defaults/format/Escaped.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(GError* error) {
    const GErrorPointer owner(error);
    throw std::runtime_error(escaped(error->message) + ".");
}

void writeTo(std::FILE* stream, const std::string& name, const std::string& text) {
    if (stream == nullptr || std::fwrite(text.data(), 1, text.size(), stream) != text.size() ||
        std::fflush(stream) != 0) {
        throw std::runtime_error(escaped(name) + ": " + g_strerror(errno) + ".");
    }
}

}  // namespace

std::string readWholeFile(const std::string& path) {
    char* contents = nullptr;
    gsize size = 0;
    GError* error = nullptr;
    if (g_file_get_contents(path == "-" ? "/dev/stdin" : path.c_str(), &contents, &size, &error) ==
        FALSE) {
        fail(error);
    }
    const GText owner(contents);
    return {contents, size};
}

void writeWholeFile(const std::string& path, const std::string& text) {
    if (path == "-") {
        writeTo(stdout, "standard output", text);
        return;
    }
    std::error_code ignored;
    const bool isNew = !fs::exists(path, ignored) && !fs::is_symlink(path, ignored);
    if (!isNew && !fs::is_regular_file(path, ignored)) {
        const std::unique_ptr<std::FILE, Release<std::fclose>> file(std::fopen(path.c_str(), "r+"));
        writeTo(file.get(), path, text);
        return;
    }
    constexpr int ownerOnly = 0600;
    GError* error = nullptr;
    // GLib would replace a link.
    if (g_file_set_contents_full(isNew ? path.c_str() : fs::canonical(path).c_str(), text.data(),
                                 static_cast<gssize>(text.size()),
                                 static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT |
                                                                    G_FILE_SET_CONTENTS_DURABLE),
                                 ownerOnly, &error) == FALSE) {
        fail(error);
    }
}

}  // namespace orvalo
