#include "app/EffectRestoration.h"

#include <glib.h>
#include <glib/gstdio.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/audio/engine/EffectLoading.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/StateFile.h"
#include "platform/ui/UIApplication.h"

namespace orvalo {

namespace {

constexpr const char* kFile = "effect.ini";
constexpr const char* kEffect = "Effect";
constexpr const char* kControls = "Controls";

/// The unit whose state is saved at the end.
struct Current {
    std::mutex mutex;
    std::weak_ptr<BridgedAudioUnit> unit;
};

Current& current() {
    static auto* const current = new Current;
    return *current;
}

std::string text(GKeyFile* saved, const char* key) {
    const GText value(g_key_file_get_string(saved, kEffect, key, nullptr));
    return value == nullptr ? "" : value.get();
}

/// The control values; absent when one is no number.
std::optional<std::map<std::string, float>> controls(GKeyFile* saved) {
    std::map<std::string, float> result;
    const std::unique_ptr<char*, Release<g_strfreev>> symbols(
        g_key_file_get_keys(saved, kControls, nullptr, nullptr));
    for (char** symbol = symbols.get(); symbol != nullptr && *symbol != nullptr; ++symbol) {
        GError* error = nullptr;
        result[*symbol] =
            static_cast<float>(g_key_file_get_double(saved, kControls, *symbol, &error));
        if (const GErrorPointer held(error); held != nullptr) {
            return std::nullopt;
        }
    }
    return result;
}

std::optional<LV2FullState> recall(const std::string& uri) {
    const auto path = stateFile(kFile);
    GError* error = nullptr;
    const KeyFilePointer saved(g_key_file_new());
    if (g_key_file_load_from_file(saved.get(), path.c_str(), G_KEY_FILE_NONE, &error) == FALSE) {
        const GErrorPointer held(error);
        if (!g_error_matches(error, G_FILE_ERROR, G_FILE_ERROR_NOENT)) {
            g_warning("%s cannot be read; the effect starts with its default: %s", path.c_str(),
                      error->message);
        }
        return std::nullopt;
    }
    const auto savedURI = text(saved.get(), "URI");
    auto values = controls(saved.get());
    const auto packed = text(saved.get(), "State");
    gsize size = 0;
    const std::unique_ptr<guchar, Release<g_free>> bytes(g_base64_decode(packed.c_str(), &size));
    if (savedURI.empty() || !values || (size == 0 && !packed.empty())) {
        g_warning("%s has no state of an effect; the effect starts with its default.",
                  path.c_str());
        return std::nullopt;
    }
    if (savedURI != uri) {
        return std::nullopt;
    }
    return LV2FullState{
        .controls = std::move(*values),
        .properties = std::string(reinterpret_cast<const char*>(bytes.get()), size),
        .preset = text(saved.get(), "Preset"),
    };
}

void save(const std::string& uri, const LV2FullState& state) {
    const KeyFilePointer saved(g_key_file_new());
    g_key_file_set_string(saved.get(), kEffect, "URI", uri.c_str());
    if (!state.preset.empty()) {
        g_key_file_set_string(saved.get(), kEffect, "Preset", state.preset.c_str());
    }
    if (!state.properties.empty()) {
        const GText packed(g_base64_encode(reinterpret_cast<const guchar*>(state.properties.data()),
                                           state.properties.size()));
        g_key_file_set_string(saved.get(), kEffect, "State", packed.get());
    }
    for (const auto& [symbol, value] : state.controls) {
        g_key_file_set_double(saved.get(), kControls, symbol.c_str(), double{value});
    }
    saveStateFile(kFile, saved, "The effect's state");
}

void saveCurrent() {
    std::shared_ptr<BridgedAudioUnit> unit;
    {
        auto& known = current();
        const std::scoped_lock lock(known.mutex);
        unit = known.unit.lock();
    }
    if (unit == nullptr) {
        return;
    }
    if (const auto state = unit->fullState()) {
        save(unit->data().uri, *state);
    } else {
        // The state may be why the effect has died.
        g_unlink(stateFile(kFile).c_str());
    }
}

}  // namespace

void restoreEffect() {
    setEffectMemory({.recall = recall, .made = [](const auto& unit) {
                         auto& known = current();
                         const std::scoped_lock lock(known.mutex);
                         known.unit = unit;
                     }});
    UIApplication::shared()->atEnd(saveCurrent);
}

}  // namespace orvalo
