#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "platform/audio/unit/ExpectedRendering.h"

/// The messages between the host and an effect service. A record's fields() lists its fields once,
/// for writing and for reading.
///
/// The service answers each request, a message with a number, with one Done of that number, in the
/// order of the requests. A State that a request causes precedes its Done.

#define ORVALO_BRIDGE_FIELDS(...)         \
    template <typename Archive>           \
    void fields(Archive& archive) {       \
        archive(__VA_ARGS__);             \
    }                                     \
    template <typename Archive>           \
    void fields(Archive& archive) const { \
        archive(__VA_ARGS__);             \
    }

namespace orvalo::bridge {

/// The value of a control input.
struct ControlValue {
    std::uint32_t port = 0;
    float value = 0.0F;
    ORVALO_BRIDGE_FIELDS(port, value)
};

/// The first request; passes the descriptor of the shared memory.
struct Instantiate {
    std::uint32_t number = 0;
    std::string uri;
    std::vector<std::string> bundles;  ///< Paths of the bundles that describe the plug-in.
    std::string stateFolder;           ///< The folder for the plug-in's files.
    std::string contextName;
    double sampleRate = ExpectedRendering{}.sampleRate;  ///< Hz.
    std::string state;                   ///< The text of a State; "" for the plug-in's default.
    std::vector<ControlValue> controls;  ///< Set after the state.
    std::uint32_t inputChannelCount = 0;
    std::uint32_t outputChannelCount = 0;
    std::uint32_t portCount = 0;
    std::string preset;         ///< The URI of a preset to load after the state; "" for none.
    std::uint32_t quantum = 0;  ///< ExpectedRendering::frameCount.
    /// Whether the host takes WritePreset and RemovePreset.
    bool writesPresets = false;
    ORVALO_BRIDGE_FIELDS(number, uri, bundles, stateFolder, contextName, sampleRate, state,
                         controls, inputChannelCount, outputChannelCount, portCount, preset,
                         quantum, writesPresets)
};

/// AUAudioUnit::allocateRenderResources(). No quantum is under way.
struct Prepare {
    std::uint32_t number = 0;
    double sampleRate = 0.0;
    ORVALO_BRIDGE_FIELDS(number, sampleRate)
};

/// AUAudioUnit::setContextName().
struct SetContextName {
    std::uint32_t number = 0;
    std::string name;
    ORVALO_BRIDGE_FIELDS(number, name)
};

/// Loads the preset of that URI.
struct LoadPreset {
    std::uint32_t number = 0;
    std::string uri;
    ORVALO_BRIDGE_FIELDS(number, uri)
};

/// Checks that the service's main thread answers.
struct Ping {
    std::uint32_t number = 0;
    ORVALO_BRIDGE_FIELDS(number)
};

/// Creates the UI inside the host's window, hidden. Answered by PluginUIOpened and Done, or by Done
/// with an error.
struct OpenPluginUI {
    std::uint32_t number = 0;
    std::string display;
    std::uint64_t window = 0;
    double scaleFactor = 1.0;
    ORVALO_BRIDGE_FIELDS(number, display, window, scaleFactor)
};

/// The UI's window has a new size, in pixels.
struct ResizePluginUI {
    std::int32_t width = 0;
    std::int32_t height = 0;
    ORVALO_BRIDGE_FIELDS(width, height)
};

/// Shows or hides the open UI.
struct ShowPluginUI {
    bool isVisible = false;
    ORVALO_BRIDGE_FIELDS(isVisible)
};

/// Answered by Done when the UI has cleaned up, so that the host's window is free.
struct ClosePluginUI {
    std::uint32_t number = 0;
    ORVALO_BRIDGE_FIELDS(number)
};

/// Loads the UI's code, so that an error in it is known before the UI is opened.
struct LoadPluginUI {
    std::uint32_t number = 0;
    ORVALO_BRIDGE_FIELDS(number)
};

/// Sets a control input, as a UI of the host's process wants. Other ports are ignored.
struct SetControl {
    ControlValue control;
    ORVALO_BRIDGE_FIELDS(control)
};

/// Sends the state, if it has changed, and publishes the control values before Done.
struct SaveState {
    std::uint32_t number = 0;
    ORVALO_BRIDGE_FIELDS(number)
};

using HostMessage =
    std::variant<Instantiate, Prepare, SetContextName, LoadPreset, Ping, OpenPluginUI,
                 ResizePluginUI, ShowPluginUI, ClosePluginUI, LoadPluginUI, SetControl, SaveState>;

/// The answer to a request.
struct Done {
    std::uint32_t number = 0;
    std::string error;  ///< For the user; "" for success.
    ORVALO_BRIDGE_FIELDS(number, error)
};

/// The plug-in's state, sent after every change once the plug-in has run.
struct State {
    std::string text;
    ORVALO_BRIDGE_FIELDS(text)
};

/// The UI is open and hidden; Done follows.
struct PluginUIOpened {
    std::uint64_t window = 0;  ///< The window that the UI reports; 0 for none.
    ORVALO_BRIDGE_FIELDS(window)
};

/// The UI requests a size, in pixels.
struct PluginUIResizeRequest {
    std::int32_t width = 0;
    std::int32_t height = 0;
    ORVALO_BRIDGE_FIELDS(width, height)
};

/// The UI has closed itself; the reason is a clause. The UI works no more and waits for
/// ClosePluginUI.
struct PluginUIClosed {
    std::string reason;
    ORVALO_BRIDGE_FIELDS(reason)
};

/// The UI accesses an instance that has been replaced. The UI works no more; the host closes it and
/// opens it again, in another window.
struct PluginUIOutdated {
    template <typename Archive>
    void fields(Archive& /*archive*/) const {}
};

/// The UI saves a preset, in a bundle of `~/.lv2` that has no other one.
struct WritePreset {
    std::string folder;  ///< The bundle's name.
    std::string label;
    std::string comment;
    std::vector<ControlValue> values;
    ORVALO_BRIDGE_FIELDS(folder, label, comment, values)
};

/// The UI deletes a preset with its bundle.
struct RemovePreset {
    std::string folder;
    ORVALO_BRIDGE_FIELDS(folder)
};

using ServiceMessage = std::variant<Done, State, PluginUIOpened, PluginUIResizeRequest,
                                    PluginUIClosed, PluginUIOutdated, WritePreset, RemovePreset>;

/// A message with its head. The receiver rejects a body longer than kLongestMessage.
std::vector<std::byte> encode(const HostMessage& message);
std::vector<std::byte> encode(const ServiceMessage& message);

/// Precedes each message.
struct Head {
    std::uint32_t version = 0;
    std::uint32_t type = 0;    ///< The index in HostMessage or ServiceMessage.
    std::uint32_t length = 0;  ///< Of the body, in bytes.

    /// Whether the version is this build's and the length is within the limit.
    bool isSound() const;
};

/// The longest body: a state may contain samples.
constexpr std::uint32_t kLongestMessage = 64U << 20U;

/// Decodes a body; absent when the bytes are not exactly one message of that type.
std::optional<HostMessage> decodeHostMessage(std::uint32_t type, std::span<const std::byte> bytes);
std::optional<ServiceMessage> decodeServiceMessage(std::uint32_t type,
                                                   std::span<const std::byte> bytes);

}  // namespace orvalo::bridge

#undef ORVALO_BRIDGE_FIELDS
