#pragma once

#include <optional>
#include <string>

#include "platform/foundation/URL.h"

namespace orvalo {

// The folders that the application and its effect share. One thread at a time.

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

/// Sets documentsURL and resourcesURL and prints both with safeprint(). A missing folder is a fatal
/// error.
void getPaths();

/// Creates a directory with its missing parents, unless an item of any kind exists there. Returns
/// false and prints the reason with debugprint() when that fails. Any thread.
bool ensureDirectoryExists(const URL& url);

}  // namespace orvalo
