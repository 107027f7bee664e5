#include "platform/audio/lv2/LV2Instance.h"

#include <lv2/options/options.h>
#include <lv2/state/state.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>

#include "platform/audio/lv2/LV2Error.h"
#include "platform/audio/lv2/LV2Library.h"
#include "platform/audio/lv2/URIDMap.h"

namespace orvalo {

namespace {

template <typename Interface>
const Interface* extension(const LilvInstance* instance, const char* uri) {
    return static_cast<const Interface*>(lilv_instance_get_extension_data(instance, uri));
}

const void* portValue(const char* symbol, void* handle, std::uint32_t* size, std::uint32_t* type) {
    const auto& controls = *static_cast<const LV2Controls*>(handle);
    const auto* port = controls.input(symbol);
    // lilv copies the value before it asks for the next one, on the same thread.
    thread_local float value;
    *size = 0;
    *type = 0;
    if (port == nullptr) {
        return nullptr;
    }
    value = controls.value(port->index);
    *size = sizeof(value);
    *type = LV2URIDs::shared().atomFloat;
    return &value;
}

template <typename Number>
std::optional<float> as(const void* value, std::uint32_t size) {
    if (size != sizeof(Number)) {
        return std::nullopt;
    }
    Number number{};
    std::memcpy(&number, value, sizeof(number));
    const auto result = static_cast<float>(number);
    return std::isfinite(result) ? std::optional(result) : std::nullopt;
}

/// A control value from a state: the body of a float, double, int, long or bool atom. Absent for
/// another type, a size that is not the type's, and a number that is not finite.
std::optional<float> numberOf(const void* value, std::uint32_t size, std::uint32_t type) {
    const auto& urids = LV2URIDs::shared();
    if (type == urids.atomFloat) {
        return as<float>(value, size);
    }
    if (type == urids.atomDouble) {
        return as<double>(value, size);
    }
    if (type == urids.atomInt || type == urids.atomBool) {
        return as<std::int32_t>(value, size);
    }
    if (type == urids.atomLong) {
        return as<std::int64_t>(value, size);
    }
    return std::nullopt;
}

void setPortValue(const char* symbol, void* handle, const void* value, std::uint32_t size,
                  std::uint32_t type) {
    auto& controls = *static_cast<LV2Controls*>(handle);
    const auto* port = controls.input(symbol);
    const auto number = numberOf(value, size, type);
    if (port != nullptr && number) {
        controls.setValue(port->index, *number);
    }
}

LV2_State_Status store(LV2_State_Handle handle, std::uint32_t key, const void* value,
                       std::size_t size, std::uint32_t type, std::uint32_t flags) {
    if (key == 0 || type == 0 || value == nullptr) {
        return LV2_STATE_ERR_UNKNOWN;
    }
    if ((flags & LV2_STATE_IS_POD) == 0) {
        return LV2_STATE_ERR_BAD_FLAGS;
    }
    auto& properties = *static_cast<LV2StateProperties*>(handle);
    const std::string body(static_cast<const char*>(value), size);
    const auto known =
        std::find_if(properties.begin(), properties.end(),
                     [key](const LV2StateProperty& property) { return property.key == key; });
    if (known != properties.end()) {
        *known = {key, type, flags, body};
    } else {
        properties.push_back({key, type, flags, body});
    }
    return LV2_STATE_SUCCESS;
}

const void* retrieve(LV2_State_Handle handle, std::uint32_t key, std::size_t* size,
                     std::uint32_t* type, std::uint32_t* flags) {
    for (const auto& property : *static_cast<const LV2StateProperties*>(handle)) {
        if (property.key == key) {
            *size = property.body.size();
            *type = property.type;
            *flags = property.flags;
            return property.body.data();
        }
    }
    *size = 0;
    *type = 0;
    *flags = 0;
    return nullptr;
}

}  // namespace

LV2Instance::LV2Instance(LV2UnitParts& parts, double sampleRate, const std::string& contextName)
    : parts_(parts),
      sampleRate_(sampleRate),
      options_(sampleRate, parts.data.sequenceSize, parts.quantum, contextName),
      features_(options_, worker_, parts.log, parts.paths) {
    const auto& uri = parts_.data.uri;
    if (!(sampleRate > 0.0) || !std::isfinite(sampleRate)) {
        throw lv2Error(LV2ErrorCode::instantiationFailed, uri,
                       "a sample rate of " + std::to_string(sampleRate) + " Hz is not valid");
    }
    const LV2Library library(uri, parts_.data.binary);
    const bool hasDescriptors = library.has("lv2_descriptor");
    if (!hasDescriptors && !library.has("lv2_lib_descriptor")) {
        throw lv2Error(LV2ErrorCode::noLibrary, uri,
                       "its library " + parts_.data.binary + " has no lv2_descriptor");
    }
    {
        const LV2World::Access access(parts_.world);
        const auto* plugin = access.plugin(uri);
        instance_.reset(lilv_plugin_instantiate(plugin, sampleRate, features_.forInstantiation()));
    }
    if (instance_ == nullptr) {
        // lv2_lib_descriptor needs a bundle path and features; lilv has called it already.
        const bool isMissing =
            hasDescriptors && !library.lists<LV2_Descriptor>("lv2_descriptor", uri);
        throw lv2Error(
            LV2ErrorCode::instantiationFailed, uri,
            isMissing ? "its library does not hold it" : "it refuses to be instantiated");
    }
    worker_.start(lilv_instance_get_handle(instance_.get()),
                  extension<LV2_Worker_Interface>(instance_.get(), LV2_WORKER__interface));
    process_ = std::make_unique<LV2Process>(parts_.data, instance_.get(), parts_.controls, worker_,
                                            parts_.log);
}

LV2Instance::~LV2Instance() {
    deactivate();
    const LV2World::Access access(parts_.world);
    instance_.reset();
}

void LV2Instance::activate() {
    lilv_instance_activate(instance_.get());
    isActive_ = true;
}

void LV2Instance::deactivate() {
    worker_.stop();
    if (isActive_) {
        lilv_instance_deactivate(instance_.get());
        isActive_ = false;
    }
}

bool LV2Instance::keepsState() const {
    return extension<LV2_State_Interface>(instance_.get(), LV2_STATE__interface) != nullptr;
}

LV2State LV2Instance::save() const {
    const std::string folder = keepsState() ? parts_.paths.folder().string() : std::string();
    LilvState* state = nullptr;
    {
        const LV2World::Access access(parts_.world);
        state = lilv_state_new_from_instance(
            access.plugin(parts_.data.uri), instance_.get(), &LV2Features::map(),
            folder.empty() ? nullptr : folder.c_str(), nullptr, nullptr, nullptr, portValue,
            &parts_.controls, LV2_STATE_IS_POD | LV2_STATE_IS_NATIVE, features_.forState());
    }
    if (state == nullptr) {
        throw lv2Error(LV2ErrorCode::stateFailed, parts_.data.uri, "its state cannot be saved");
    }
    return keep(parts_.world, state);
}

void LV2Instance::restore(const LilvState& state) {
    const LV2World::Access access(parts_.world);
    lilv_state_restore(&state, instance_.get(), setPortValue, &parts_.controls, 0,
                       features_.forState());
}

LV2StateProperties LV2Instance::saveProperties() const {
    LV2StateProperties properties;
    if (!keepsState()) {
        return properties;
    }
    const auto* state = extension<LV2_State_Interface>(instance_.get(), LV2_STATE__interface);
    const auto status =
        state->save(lilv_instance_get_handle(instance_.get()), store, &properties,
                    LV2_STATE_IS_POD | LV2_STATE_IS_NATIVE, features_.forPlainState());
    if (status != LV2_STATE_SUCCESS) {
        throw lv2Error(LV2ErrorCode::stateFailed, parts_.data.uri, "its state cannot be saved");
    }
    return properties;
}

void LV2Instance::restore(const LV2StateProperties& properties) {
    if (keepsState()) {
        const auto* state = extension<LV2_State_Interface>(instance_.get(), LV2_STATE__interface);
        // restore() requires a mutable handle.
        auto kept = properties;
        state->restore(lilv_instance_get_handle(instance_.get()), retrieve, &kept, 0,
                       features_.forPlainState());
    }
}

bool LV2Instance::takesOptions() const {
    const auto* options = extension<LV2_Options_Interface>(instance_.get(), LV2_OPTIONS__interface);
    return options != nullptr && options->set != nullptr;
}

void LV2Instance::setContextName(const std::string& name) {
    if (takesOptions()) {
        const auto* options =
            extension<LV2_Options_Interface>(instance_.get(), LV2_OPTIONS__interface);
        const std::array changes{LV2Options::contextName(name), LV2_Options_Option{}};
        options->set(lilv_instance_get_handle(instance_.get()), changes.data());
    }
}

}  // namespace orvalo
