#pragma once

#include <string>

namespace orvalo {

/// A plug-in's shared library, loaded and held for the object's life, so that what is wrong with it
/// can be said in words.
class LV2Library {
  public:
    /// Throws NSError that names the plug-in: no such file, a library that does not load, or one
    /// without LV2's entry.
    LV2Library(const std::string& uri, const std::string& path);
    ~LV2Library();
    LV2Library(const LV2Library&) = delete;
    LV2Library& operator=(const LV2Library&) = delete;

    /// Whether the library has a plug-in of that URI, as far as its plain entry tells.
    bool holds(const std::string& uri) const;

  private:
    void* library_ = nullptr;
};

}  // namespace orvalo
