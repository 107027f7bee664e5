#pragma once

#include <gio/gio.h>

#include <filesystem>
#include <memory>
#include <string>

#include "platform/foundation/GLibPointer.h"

namespace orvalo::bench {

/// The peer program at work in a process of its own.
class Peer {
  public:
    /// number: milliseconds, or how many values to watch for. Throws std::runtime_error.
    Peer(const std::string& contender, const std::filesystem::path& folder, const std::string& what,
         int number);

    /// The next line that it writes. Throws std::runtime_error when there is none.
    std::string line();

  private:
    std::unique_ptr<GSubprocess, Release<g_object_unref>> process_;
    std::unique_ptr<GDataInputStream, Release<g_object_unref>> output_;
};

}  // namespace orvalo::bench
