#pragma once

#include <string>

namespace orvalo {

/// A plug-in's shared library, loaded for the object's life. Gives the reason of a failure, where
/// lilv only reports that instantiation failed.
class LV2Library {
  public:
    /// Throws NSError that names the plug-in: no such file, a library that does not load, or one
    /// without an LV2 entry point.
    LV2Library(const std::string& uri, const std::string& path);
    ~LV2Library();
    LV2Library(const LV2Library&) = delete;
    LV2Library& operator=(const LV2Library&) = delete;

    /// Whether the library has a plug-in of that URI; true when it has lv2_lib_descriptor only.
    bool holds(const std::string& uri) const;

  private:
    void* library_ = nullptr;
};

}  // namespace orvalo
