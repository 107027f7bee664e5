#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvalo::zoo {

/// A misbehaviour of the UI in its next idle call.
enum class Misdeed {
    none,
    close,          ///< Returns that it has closed.
    destroyWindow,  ///< Destroys its own window.
    badWindow,      ///< Causes X errors on its connection.
    wantByFeature,  ///< Requests 400 x 300 by the resize feature.
    wantByWindow,   ///< Resizes its own window to 500 x 120.
    fixHints,       ///< Hints at 200 x 150 as its only size.
    growHints,      ///< Hints at 900 x 700 as its smallest size.
    takeKeyboard,   ///< Focuses its own window.
    writeNonsense,  ///< Writes values that the ports do not accept.
    requestValue,   ///< Requests a file from the user.
    secondWindow,   ///< Creates a second window, and moves it.
    ignoreKeys,     ///< Selects keys no longer.
    callOut,        ///< Calls UIRecord::onCall.
};

/// The test UI's record of its host's calls. One per process. Main thread.
struct UIRecord {
    int instantiations = 0;
    int cleanups = 0;
    int idles = 0;
    int exposures = 0;
    unsigned long second = 0;  ///< The second window.
    int clicks = 0;
    std::vector<unsigned> keys;  ///< Keysyms.
    int width = 0;               ///< Of the last ConfigureNotify, as is height.
    int height = 0;
    int toldWidth = 0;  ///< Of the last call of the resize extension, as is toldHeight.
    int toldHeight = 0;
    std::array<float, 8> values{};
    std::array<int, 8> valueCounts{};
    std::vector<std::vector<unsigned char>> events;  ///< The bodies of the effect's atoms.
    std::vector<std::string> features;
    float updateRate = 0.0F;
    float scaleFactor = 0.0F;
    float sampleRate = 0.0F;
    std::string windowTitle;
    const void* instance = nullptr;
    unsigned gainIndex = 0;
    unsigned unknownIndex = 0;
    unsigned subscriptions = 0;  ///< One decimal digit for each result.
    int requested = -1;
    unsigned long parent = 0;
    unsigned long window = 0;
    bool wasMappedAtCleanup = false;  ///< Whether the UI's window was on screen at cleanup.
    Misdeed misdeed = Misdeed::none;
    std::function<void()> onCall;  ///< For callOut.
    std::optional<long> keyMask;   ///< Sends keys on to the parent with that mask.
};

/// The type of the function "uiRecord" in the UI's library.
using UIRecordFunction = UIRecord* (*)();

}  // namespace orvalo::zoo
