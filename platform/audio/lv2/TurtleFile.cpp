#include "platform/audio/lv2/TurtleFile.h"

#include <glib.h>
#include <lilv/lilv.h>
#include <serd/serd.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <memory>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

// Data of the largest plug-ins known have about two megabytes.
constexpr std::uintmax_t kLargestFile = 64U << 20U;

// serd reads "[" and "(" recursively and overflows a stack of 8 MB below 20,000 of them. Real
// bundles nest four deep.
constexpr int kDeepestNesting = 1000;

/// One pass of serd over a text.
struct Reading {
    const std::function<void(const TurtleStatement&)>& handler;
    std::unique_ptr<SerdEnv, Release<serd_env_free>> environment;
    std::string error;  // The first one.
    int depth = 0;

    std::string text(const SerdNode& node) const {
        const auto copy = [](const SerdNode& from) {
            return std::string(reinterpret_cast<const char*>(from.buf), from.n_bytes);
        };
        // Resolving a whole URI takes longer than reading its statement.
        if (node.type == SERD_LITERAL ||
            (node.type == SERD_URI && serd_uri_string_has_scheme(node.buf))) {
            return copy(node);
        }
        SerdNode expanded = serd_env_expand_node(environment.get(), &node);
        std::string result = expanded.buf == nullptr ? std::string() : copy(expanded);
        serd_node_free(&expanded);
        return result;
    }
};

const std::uint8_t* bytes(const char* text) {
    return reinterpret_cast<const std::uint8_t*>(text);
}

SerdStatus onBase(void* handle, const SerdNode* uri) {
    return serd_env_set_base_uri(static_cast<Reading*>(handle)->environment.get(), uri);
}

SerdStatus onPrefix(void* handle, const SerdNode* name, const SerdNode* uri) {
    return serd_env_set_prefix(static_cast<Reading*>(handle)->environment.get(), name, uri);
}

SerdStatus onStatement(void* handle, SerdStatementFlags flags, const SerdNode* /*graph*/,
                       const SerdNode* subject, const SerdNode* predicate, const SerdNode* object,
                       const SerdNode* /*datatype*/, const SerdNode* /*language*/) {
    auto& reading = *static_cast<Reading*>(handle);
    // serd reports the end of a "[" but not of a "(", so lists count until the next outer
    // statement.
    if ((flags & (SERD_ANON_CONT | SERD_LIST_CONT)) == 0) {
        reading.depth = 0;
    }
    for (const unsigned begin :
         {SERD_ANON_S_BEGIN, SERD_ANON_O_BEGIN, SERD_LIST_S_BEGIN, SERD_LIST_O_BEGIN}) {
        reading.depth += (flags & begin) != 0 ? 1 : 0;
    }
    if (reading.depth > kDeepestNesting) {
        reading.error = "it is nested more than " + std::to_string(kDeepestNesting) + " deep";
        return SERD_ERR_BAD_SYNTAX;
    }
    if (reading.handler) {
        reading.handler({reading.text(*subject), reading.text(*predicate), reading.text(*object),
                         object->type == SERD_LITERAL});
    }
    return SERD_SUCCESS;
}

SerdStatus onEnd(void* handle, const SerdNode* /*node*/) {
    --static_cast<Reading*>(handle)->depth;
    return SERD_SUCCESS;
}

SerdStatus onError(void* handle, const SerdError* error) {
    auto& first = static_cast<Reading*>(handle)->error;
    if (first.empty()) {
        const GText message(g_strdup_vprintf(error->fmt, *error->args));
        first = "line " + std::to_string(error->line) + ": " + g_strchomp(message.get());
    }
    return SERD_SUCCESS;
}

}  // namespace

std::string readTurtle(const std::string& path, const std::string& uri,
                       const std::function<void(const TurtleStatement&)>& handler) {
    // Also refuses what is no regular file; opening a pipe would block.
    std::error_code unreadable;
    const auto size = std::filesystem::file_size(path, unreadable);
    if (unreadable) {
        return unreadable.message();
    }
    if (size > kLargestFile) {
        return "it is larger than " + std::to_string(kLargestFile >> 20U) + " MB";
    }
    char* contents = nullptr;
    gsize length = 0;
    GError* failure = nullptr;
    if (g_file_get_contents(path.c_str(), &contents, &length, &failure) == FALSE) {
        return GErrorPointer(failure)->message;
    }
    const GText text(contents);
    if (std::strlen(contents) != length) {
        return "it holds a null character";
    }
    if (length == 0) {
        // serd reads an empty string beyond its end.
        return "";
    }
    const SerdNode base = serd_node_from_string(SERD_URI, bytes(uri.c_str()));
    Reading reading{handler, decltype(Reading::environment)(serd_env_new(&base)), {}};
    const std::unique_ptr<SerdReader, Release<serd_reader_free>> reader(
        serd_reader_new(SERD_TURTLE, &reading, nullptr, onBase, onPrefix, onStatement, onEnd));
    // Without strictness serd skips faults, and never returns from one at the end of the text.
    serd_reader_set_strict(reader.get(), true);
    serd_reader_set_error_sink(reader.get(), onError, &reading);
    const auto status = serd_reader_read_string(reader.get(), bytes(contents));
    if (status > SERD_FAILURE && reading.error.empty()) {
        reading.error = reinterpret_cast<const char*>(serd_strerror(status));
    }
    return reading.error;
}

std::string turtleFileError(const std::string& uri) {
    // lilv's own parser: GLib's refuses the "#" that file names such as Ardour's hold.
    const std::unique_ptr<char, Release<lilv_free>> path(lilv_file_uri_parse(uri.c_str(), nullptr));
    return path == nullptr ? "it is no file of this machine" : readTurtle(path.get(), uri, {});
}

}  // namespace orvalo
