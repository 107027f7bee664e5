#define G_SETTINGS_ENABLE_BACKEND
#include <gio/gio.h>
#include <gio/gsettingsbackend.h>

#include <fstream>
#include <stdexcept>

#include "bench/defaults/Store.h"
#include "bench/measuring/Child.h"
#include "platform/foundation/GLibPointer.h"

namespace orvalo::bench {

namespace {

template <typename Object>
using Held = std::unique_ptr<Object, Release<g_object_unref>>;

/// The file monitor's news come through the main context.
class GSettingsStore : public Store {
  public:
    explicit GSettingsStore(Held<GSettings> settings) : settings_(std::move(settings)) {}

    std::int64_t read(const std::string& key) override {
        return g_settings_get_int64(settings_.get(), key.c_str());
    }
    std::int64_t readFresh(const std::string& key) override {
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
        return read(key);
    }
    void write(const std::string& key, std::int64_t number) override {
        g_settings_set_int64(settings_.get(), key.c_str(), number);
        g_settings_sync();
    }

  private:
    Held<GSettings> settings_;
};

}  // namespace

void makeGSettingsSchema(const std::filesystem::path& folder) {
    std::ofstream file(folder / "bench.gschema.xml");
    file << "<schemalist><schema id='bench' path='/bench/'>";
    for (int number = 0; number < kKeys; ++number) {
        file << "<key name='" << keyOf(number) << "' type='x'><default>0</default></key>";
    }
    file << "</schema></schemalist>";
    file.close();
    Child({"glib-compile-schemas", folder.string()}).awaitProcessorSeconds();
}

std::unique_ptr<Store> openGSettingsStore(const std::filesystem::path& folder) {
    const std::unique_ptr<GSettingsSchemaSource, Release<g_settings_schema_source_unref>> source(
        g_settings_schema_source_new_from_directory(folder.c_str(), nullptr, TRUE, nullptr));
    const std::unique_ptr<GSettingsSchema, Release<g_settings_schema_unref>> schema(
        source ? g_settings_schema_source_lookup(source.get(), "bench", FALSE) : nullptr);
    if (!schema) {
        throw std::runtime_error("there is no schema for GSettings");
    }
    const Held<GSettingsBackend> backend(
        g_keyfile_settings_backend_new((folder / "keyfile").c_str(), "/", nullptr));
    return std::make_unique<GSettingsStore>(
        Held<GSettings>(g_settings_new_full(schema.get(), backend.get(), nullptr)));
}

}  // namespace orvalo::bench
