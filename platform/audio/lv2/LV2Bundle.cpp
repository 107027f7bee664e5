#include "platform/audio/lv2/LV2Bundle.h"

#include <glib.h>
#include <lilv/lilv.h>
#include <lv2/core/lv2.h>
#include <serd/serd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <unordered_map>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

// The folders of the Filesystem Hierarchy Standard that lilv searches on Debian.
constexpr const char* kDefaultPath =
    "~/.lv2:/usr/lib/" ORVALO_LIBRARY_ARCHITECTURE "/lv2:/usr/lib/lv2:/usr/local/lib/lv2";

std::string expanded(const std::string& folder) {
    if (folder == "~" || folder.starts_with("~/")) {
        return g_get_home_dir() + folder.substr(1);
    }
    if (folder.starts_with('$')) {
        const auto end = std::min(folder.find('/'), folder.size());
        const char* value = g_getenv(folder.substr(1, end - 1).c_str());
        return value == nullptr ? folder : value + folder.substr(end);
    }
    return folder;
}

// serd reads "[" and "(" recursively and overflows a stack of 8 MB below 20,000 of them. Real
// bundles nest four deep.
constexpr int kDeepestNesting = 1000;

const std::uint8_t* bytes(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.c_str());
}

std::string textOf(SerdNode node) {
    const auto* text = reinterpret_cast<const char*>(node.buf);
    return text == nullptr ? std::string() : std::string(text, node.n_bytes);
}

std::string folderURI(const std::string& path) {
    SerdNode node = serd_node_new_file_uri(bytes(path + "/"), nullptr, nullptr, true);
    std::string uri = textOf(node);
    serd_node_free(&node);
    return uri;
}

/// One pass of serd over a file. bundle: takes the statements; null where only faults count.
struct Reading {
    LV2Bundle* bundle;
    std::unique_ptr<SerdEnv, Release<serd_env_free>> environment;
    std::string error{};  // The first one.
    int depth = 0;

    /// The whole URI, or a literal's text; empty for a blank node.
    std::string text(const SerdNode& node) const {
        // Resolving a whole URI takes longer than reading its statement.
        if (node.type == SERD_LITERAL ||
            (node.type == SERD_URI && serd_uri_string_has_scheme(node.buf))) {
            return textOf(node);
        }
        SerdNode expanded = serd_env_expand_node(environment.get(), &node);
        std::string result = textOf(expanded);
        serd_node_free(&expanded);
        return result;
    }

    void add(const SerdNode& subjectNode, const SerdNode& predicateNode,
             const SerdNode& objectNode) const {
        const auto subject = text(subjectNode);
        const auto predicate = text(predicateNode);
        const auto object = text(objectNode);
        auto& resources = bundle->resources;
        if (resources.empty() || resources.back() != subject) {
            resources.push_back(subject);
        }
        if (predicate == LILV_NS_RDF "type" && object == LV2_CORE__Plugin && !subject.empty()) {
            bundle->plugins.insert(subject);
        } else if (predicate == LV2_CORE__appliesTo) {
            resources.push_back(object);
        } else if (predicate.starts_with(kComponentVocabulary)) {
            bundle->codes.push_back({subject, predicate.substr(std::strlen(kComponentVocabulary)),
                                     object, objectNode.type == SERD_LITERAL});
        }
    }
};

SerdStatus onBase(void* reading, const SerdNode* uri) {
    return serd_env_set_base_uri(static_cast<Reading*>(reading)->environment.get(), uri);
}

SerdStatus onPrefix(void* reading, const SerdNode* name, const SerdNode* uri) {
    return serd_env_set_prefix(static_cast<Reading*>(reading)->environment.get(), name, uri);
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
    if (reading.bundle != nullptr) {
        reading.add(*subject, *predicate, *object);
    }
    return SERD_SUCCESS;
}

SerdStatus onEnd(void* reading, const SerdNode* /*node*/) {
    --static_cast<Reading*>(reading)->depth;
    return SERD_SUCCESS;
}

SerdStatus onError(void* reading, const SerdError* error) {
    auto& first = static_cast<Reading*>(reading)->error;
    if (first.empty()) {
        const GText message(g_strdup_vprintf(error->fmt, *error->args));
        first = "line " + std::to_string(error->line) + ": " + g_strchomp(message.get());
    }
    return SERD_SUCCESS;
}

/// Returns the file's first fault as a clause; empty for a sound file.
std::string readTurtle(const std::string& path, const std::string& uri, LV2Bundle* bundle) {
    // Refuses what is no regular file; opening a pipe would block.
    std::error_code unreadable;
    static_cast<void>(fs::file_size(path, unreadable));
    if (unreadable) {
        return unreadable.message();
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"),
                                                               std::fclose);
    if (file == nullptr) {
        return g_strerror(errno);
    }
    const SerdNode base = serd_node_from_string(SERD_URI, bytes(uri));
    Reading reading{bundle, decltype(Reading::environment)(serd_env_new(&base))};
    const std::unique_ptr<SerdReader, Release<serd_reader_free>> reader(
        serd_reader_new(SERD_TURTLE, &reading, nullptr, onBase, onPrefix, onStatement, onEnd));
    // Without strictness serd skips faults, and never returns from one at the end of the file.
    serd_reader_set_strict(reader.get(), true);
    serd_reader_set_error_sink(reader.get(), onError, &reading);
    const auto status = serd_reader_read_file_handle(reader.get(), file.get(), bytes(uri));
    if (status > SERD_FAILURE && reading.error.empty()) {
        reading.error = reinterpret_cast<const char*>(serd_strerror(status));
    }
    return reading.error;
}

/// The folder's entries by name, with links resolved.
std::vector<std::string> entries(const fs::path& folder) {
    std::vector<std::string> result;
    std::error_code error;
    const auto place = fs::canonical(folder, error);
    for (fs::directory_iterator item(place, error), end; !error && item != end;
         item.increment(error)) {
        result.push_back(item->path().native());
        // Resolving each of a thousand names would take longer than reading them.
        std::error_code dangling;
        if (item->is_symlink(dangling)) {
            const auto target = fs::canonical(item->path(), dangling);
            if (!dangling) {
                result.back() = target.native();
            }
        }
    }
    if (error && error != std::errc::no_such_file_or_directory) {
        g_warning("%s cannot be searched for effects: %s.", folder.c_str(),
                  error.message().c_str());
    }
    std::sort(result.begin(), result.end());
    return result;
}

std::optional<LV2Bundle> readBundle(const std::string& path) {
    const auto manifest = path + "/manifest.ttl";
    std::error_code ignored;
    if (fs::status(manifest, ignored).type() == fs::file_type::not_found) {
        return std::nullopt;
    }
    LV2Bundle bundle{path, folderURI(path), {}, {}, {}};
    const auto error = readTurtle(manifest, bundle.uri + "manifest.ttl", &bundle);
    if (!error.empty()) {
        g_warning("The manifest of %s is left out: %s.", path.c_str(), error.c_str());
        return std::nullopt;
    }
    return bundle;
}

void forget(LV2Bundle& bundle, const std::string& plugin) {
    bundle.plugins.erase(plugin);
    std::erase(bundle.resources, plugin);
    std::erase_if(bundle.codes, [&plugin](const LV2ComponentStatement& statement) {
        return statement.plugin == plugin;
    });
}

}  // namespace

LV2SearchPath LV2SearchPath::fromEnvironment(std::filesystem::path ownFolder) {
    LV2SearchPath result;
    const char* path = g_getenv("LV2_PATH");
    const std::unique_ptr<char*, Release<g_strfreev>> folders(
        g_strsplit(path == nullptr ? kDefaultPath : path, ":", -1));
    for (char** folder = folders.get(); *folder != nullptr; ++folder) {
        if (**folder != '\0') {
            result.folders.emplace_back(expanded(*folder));
        }
    }
    result.ownFolder = std::move(ownFolder);
    return result;
}

std::vector<LV2Bundle> findBundles(const LV2SearchPath& searchPath) {
    std::vector<LV2Bundle> bundles;
    std::unordered_set<std::string> seen;
    std::unordered_map<std::string, std::string> holders;
    const auto add = [&](const std::string& path) {
        if (!seen.insert(path).second) {
            return;
        }
        auto bundle = readBundle(path);
        if (!bundle) {
            return;
        }
        // The plug-ins that earlier bundles hold, by bundle.
        std::map<std::string, std::set<std::string>> taken;
        for (const auto& plugin : std::unordered_set(bundle->plugins)) {
            const auto [holder, isFirst] = holders.emplace(plugin, path);
            if (!isFirst) {
                taken[holder->second].insert(plugin);
                forget(*bundle, plugin);
            }
        }
        for (const auto& [holder, plugins] : taken) {
            const auto more = plugins.size() == 1 ? ", which is"
                                                  : " and " + std::to_string(plugins.size() - 1) +
                                                        " more, which are";
            g_warning("%s holds <%s>%s taken from %s instead.", path.c_str(),
                      plugins.begin()->c_str(), more.c_str(), holder.c_str());
        }
        bundles.push_back(std::move(*bundle));
    };
    for (const auto& path : searchPath.bundles) {
        std::error_code error;
        add(fs::weakly_canonical(path, error).native());
    }
    std::vector<fs::path> folders = searchPath.folders;
    folders.push_back(searchPath.ownFolder);
    for (const auto& folder : folders) {
        for (const auto& path : entries(folder)) {
            add(path);
        }
    }
    return bundles;
}

std::string turtleFileError(const std::string& uri) {
    // lilv's own parser: GLib's refuses the "#" that file names such as Ardour's hold.
    const std::unique_ptr<char, Release<lilv_free>> path(lilv_file_uri_parse(uri.c_str(), nullptr));
    return path == nullptr ? "it is no file of this machine" : readTurtle(path.get(), uri, nullptr);
}

}  // namespace orvalo
