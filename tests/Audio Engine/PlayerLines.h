#pragma once

#include <string>

namespace orvalo::testing {

// Lines that the player prints, for several tests.

inline const std::string kDisconnects =
    "AUEnginePlayer::WARNING: Function connect() with argument 'nil' causes disconnection.";
inline const std::string kAssignsHandler =
    "AUEnginePlayer: The audio unit reports MIDI output names. Assigning a handling block.";
inline const std::string kNoFormatToWire =
    "AUEnginePlayer::ERROR: There was a problem with the file processing format or the file is nil "
    "(yet).";
inline const std::string kNoFormatToReset =
    "AUEnginePlayer: ERROR: There is a problem with the audio file processing format.";

}  // namespace orvalo::testing
