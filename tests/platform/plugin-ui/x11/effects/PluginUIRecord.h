#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvalo::zoo {

/// How the UI is to misbehave at its next idle call.
enum class Misdeed {
    none,
    close,          ///< Says that it is closed.
    destroyWindow,  ///< Destroys its own window.
    badWindow,      ///< Makes X errors on its connection.
    wantByFeature,  ///< Asks for 400 x 300 by the resize feature.
    wantByWindow,   ///< Gives its own window 500 x 120.
    fixHints,       ///< States 200 x 150 as its only extent.
    growHints,      ///< States 900 x 700 as its least extent.
    takeKeyboard,   ///< Takes the keyboard for itself.
    writeNonsense,  ///< Writes to ports that cannot take it.
    requestValue,   ///< Asks the user for a file.
    secondWindow,   ///< Makes another window beside its own, and moves it.
    ignoreKeys,     ///< Wants no keys any more.
    callOut,        ///< Calls what the test has asked for.
};

/// What the test UI has seen of its host. One for the process, on the main thread.
struct PluginUIRecord {
    int instantiations = 0;
    int cleanups = 0;
    int idles = 0;
    int exposures = 0;
    unsigned long second = 0;  ///< The other window.
    int clicks = 0;
    std::vector<unsigned> keys;  ///< Keysyms.
    int width = 0;               ///< As the window was told last.
    int height = 0;
    int toldWidth = 0;  ///< As the resize extension was told last.
    int toldHeight = 0;
    std::array<float, 8> values{};
    std::array<int, 8> valueCounts{};
    std::vector<std::vector<unsigned char>> events;  ///< Bodies of the atoms from the effect.
    std::vector<std::string> features;
    float updateRate = 0.0F;
    float scaleFactor = 0.0F;
    float sampleRate = 0.0F;
    std::string windowTitle;
    const void* instance = nullptr;
    unsigned gainIndex = 0;
    unsigned unknownIndex = 0;
    unsigned subscriptions = 0;  ///< The sum of what the host returned.
    int requested = -1;
    unsigned long parent = 0;
    unsigned long window = 0;
    bool wasMappedAtCleanup = false;  ///< Whether its window could be seen then.
    Misdeed misdeed = Misdeed::none;
    std::function<void()> onCall;  ///< For callOut.
    std::optional<long> keyMask;   ///< Keys are sent on to the parent with that event mask.
};

/// Exported by the UI's library as "pluginUIRecord".
using PluginUIRecordFunction = PluginUIRecord* (*)();

}  // namespace orvalo::zoo
