#include "platform/audio/lv2/LV2Manifest.h"

#include <glib.h>
#include <serd/serd.h>

#include <cstring>
#include <memory>
#include <string_view>

#include "platform/audio/lv2/TurtleFile.h"

namespace orvalo {

namespace {

using Environment = std::unique_ptr<SerdEnv, decltype(&serd_env_free)>;

/// One reading of a manifest.
struct Reading {
    Environment environment{nullptr, serd_env_free};
    std::vector<LV2ComponentStatement> statements;
};

std::string text(const SerdNode& node) {
    return node.buf == nullptr ? std::string()
                               : std::string(reinterpret_cast<const char*>(node.buf), node.n_bytes);
}

/// The node's whole URI; empty for literals and blank nodes.
std::string uriOf(const Reading& reading, const SerdNode& node) {
    if (node.type != SERD_URI && node.type != SERD_CURIE) {
        return {};
    }
    SerdNode whole = serd_env_expand_node(reading.environment.get(), &node);
    std::string result = text(whole);
    serd_node_free(&whole);
    return result;
}

SerdStatus onBase(void* handle, const SerdNode* uri) {
    return serd_env_set_base_uri(static_cast<Reading*>(handle)->environment.get(), uri);
}

SerdStatus onPrefix(void* handle, const SerdNode* name, const SerdNode* uri) {
    return serd_env_set_prefix(static_cast<Reading*>(handle)->environment.get(), name, uri);
}

SerdStatus onStatement(void* handle, SerdStatementFlags /*flags*/, const SerdNode* /*graph*/,
                       const SerdNode* subject, const SerdNode* predicate, const SerdNode* object,
                       const SerdNode* /*datatype*/, const SerdNode* /*language*/) {
    auto& reading = *static_cast<Reading*>(handle);
    const auto predicateURI = uriOf(reading, *predicate);
    if (predicateURI.starts_with(kComponentVocabulary)) {
        const bool isLiteral = object->type == SERD_LITERAL;
        reading.statements.push_back({uriOf(reading, *subject),
                                      predicateURI.substr(std::strlen(kComponentVocabulary)),
                                      text(*object), isLiteral});
    }
    return SERD_SUCCESS;
}

Reading read(const LV2Bundle& bundle) {
    Reading reading;
    const std::string base = bundle.uri + "manifest.ttl";
    const SerdNode baseNode =
        serd_node_from_string(SERD_URI, reinterpret_cast<const std::uint8_t*>(base.c_str()));
    reading.environment.reset(serd_env_new(&baseNode));
    const std::unique_ptr<SerdReader, decltype(&serd_reader_free)> reader(
        serd_reader_new(SERD_TURTLE, &reading, nullptr, onBase, onPrefix, onStatement, nullptr),
        serd_reader_free);
    serd_reader_set_strict(reader.get(), true);
    serd_reader_read_string(reader.get(),
                            reinterpret_cast<const std::uint8_t*>(bundle.manifest.c_str()));
    return reading;
}

bool contains(const std::string& bytes, std::string_view part) {
    return memmem(bytes.data(), bytes.size(), part.data(), part.size()) != nullptr;
}

bool isNameCharacter(char character) {
    return g_ascii_isalnum(character) || character == '_' || character == '-';
}

/// Whether the bytes hold the name as a whole, not as a piece of a longer one.
bool containsName(std::string_view bytes, std::string_view name) {
    for (auto at = bytes.find(name); at != std::string_view::npos; at = bytes.find(name, at + 1)) {
        const auto end = at + name.size();
        if ((at == 0 || !isNameCharacter(bytes[at - 1])) &&
            (end == bytes.size() || !isNameCharacter(bytes[end]))) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool isReadable(const LV2Bundle& bundle) {
    const auto error = turtleError(bundle.manifest);
    if (!error.empty()) {
        g_warning("The manifest of %s is left out: %s.", bundle.path.c_str(), error.c_str());
    }
    return error.empty();
}

std::vector<LV2ComponentStatement> componentStatements(const LV2Bundle& bundle) {
    return read(bundle).statements;
}

bool mayMention(const LV2Bundle& bundle, const std::string& pluginURI) {
    const auto lastOfText = pluginURI.find_last_not_of("/#:");
    if (lastOfText == std::string::npos) {
        return true;
    }
    const auto cut = pluginURI.find_last_of("/#:", lastOfText);
    const auto from = cut == std::string::npos ? 0 : cut + 1;
    return containsName(bundle.manifest,
                        std::string_view(pluginURI).substr(from, lastOfText + 1 - from));
}

bool mayStateComponents(const LV2Bundle& bundle) {
    return contains(bundle.manifest, "audio-component");
}

}  // namespace orvalo
