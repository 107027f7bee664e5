#include "platform/audio/lv2/TurtleFile.h"

#include <glib.h>
#include <lilv/lilv.h>
#include <serd/serd.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

// Data of the largest plug-ins known have about two megabytes.
constexpr std::size_t kLargestData = 64U << 20U;

// serd reads "[" and "(" recursively and overflows a stack of 8 MB below 20,000 of them. Real
// bundles nest four deep.
constexpr int kDeepestNesting = 1000;

/// One pass of serd over a text.
struct Reading {
    const std::function<void(const TurtleStatement&)>& handler;
    std::unique_ptr<SerdEnv, Release<serd_env_free>> environment;
    std::string error;  // The first one.
    int depth = 0;
};

const std::uint8_t* bytes(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.c_str());
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
        reading.handler({reading.environment.get(), subject, predicate, object});
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

std::string TurtleStatement::text(const SerdNode& node) const {
    const auto copy = [](const SerdNode& from) {
        return std::string(reinterpret_cast<const char*>(from.buf), from.n_bytes);
    };
    // Resolving a whole URI takes longer than reading its statement.
    if (node.type == SERD_LITERAL ||
        (node.type == SERD_URI && serd_uri_string_has_scheme(node.buf))) {
        return copy(node);
    }
    SerdNode expanded = serd_env_expand_node(environment_, &node);
    std::string result = expanded.buf == nullptr ? std::string() : copy(expanded);
    serd_node_free(&expanded);
    return result;
}

std::optional<std::string> readTurtle(const std::string& path, std::size_t limit) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR)) {
        return std::nullopt;
    }
    // Opening a pipe would block.
    if (status.st_mode != 0 && !S_ISREG(status.st_mode)) {
        g_warning("%s is no regular file; it is ignored.", path.c_str());
        return std::nullopt;
    }
    if (static_cast<std::uint64_t>(status.st_size) > limit) {
        g_warning("%s is larger than %zu bytes; it is ignored.", path.c_str(), limit);
        return std::nullopt;
    }
    char* contents = nullptr;
    gsize size = 0;
    GError* failure = nullptr;
    if (g_file_get_contents(path.c_str(), &contents, &size, &failure) == FALSE) {
        g_warning("%s is ignored: %s.", path.c_str(), failure->message);
        g_error_free(failure);
        return std::nullopt;
    }
    const GText owned(contents);
    return std::string(contents, size);
}

std::string readStatements(const std::string& text, const std::string& base,
                           const std::function<void(const TurtleStatement&)>& handler) {
    if (text.find('\0') != std::string::npos) {
        return "it holds a null character";
    }
    if (text.empty()) {
        // serd reads an empty string beyond its end.
        return "";
    }
    const SerdNode baseNode = serd_node_from_string(SERD_URI, bytes(base));
    Reading reading{handler, decltype(Reading::environment)(serd_env_new(&baseNode)), {}};
    const std::unique_ptr<SerdReader, Release<serd_reader_free>> reader(
        serd_reader_new(SERD_TURTLE, &reading, nullptr, onBase, onPrefix, onStatement, onEnd));
    // Without strictness serd skips faults, and never returns from one at the end of the text.
    serd_reader_set_strict(reader.get(), true);
    serd_reader_set_error_sink(reader.get(), onError, &reading);
    const auto status = serd_reader_read_string(reader.get(), bytes(text));
    if (status > SERD_FAILURE && reading.error.empty()) {
        reading.error = reinterpret_cast<const char*>(serd_strerror(status));
    }
    return reading.error;
}

std::string turtleFileError(const std::string& uri) {
    // lilv's own parser: GLib's refuses the "#" that file names such as Ardour's hold.
    const std::unique_ptr<char, Release<lilv_free>> path(lilv_file_uri_parse(uri.c_str(), nullptr));
    if (path == nullptr) {
        return "it is no file of this machine";
    }
    const auto text = readTurtle(path.get(), kLargestData);
    return text ? readStatements(*text, uri, {}) : "it is missing";
}

}  // namespace orvalo
