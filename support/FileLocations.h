#pragma once

#include <optional>
#include <string>

#include "platform/foundation/URL.h"

namespace orvalo {

// The places that the application and its effect share. From one thread at a time.

/// The identifier of the application group that the application shares with the effect.
inline std::string sharedContainer = "group.com.Tessaly.audio";
/// The user's documents directory; absent until getPaths().
inline std::optional<URL> documentsURL;
/// The directory of the application's resources; absent until getPaths().
inline std::optional<URL> resourcesURL;
/// Reserved for shared audio files.
inline std::optional<URL> sharedURLAudio;
/// Reserved for shared MIDI files.
inline std::optional<URL> sharedURLMIDI;

/// Sets documentsURL and resourcesURL and logs both with safeprint(). A user without a documents
/// directory or an application without resources is a fatal error.
void getPaths();

/// Makes sure that there is an item at the address, by creating a directory with its missing
/// parents if there is none; an item of another kind counts as well. Returns false, with the
/// reason logged by debugprint(), when that fails. Any thread.
bool ensureDirectoryExists(const URL& url);

}  // namespace orvalo
