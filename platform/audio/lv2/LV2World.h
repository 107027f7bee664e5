#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2Bundle.h"
#include "platform/audio/lv2/LV2Component.h"
#include "platform/audio/lv2/LilvPointers.h"

namespace orvalo {

/// The LV2 plug-ins of a search path. Bundles are searched once, at the first use; only those that
/// are needed are handed to lilv, so that a thousand others cost a look at their manifests' bytes.
/// Any thread; lilv itself serves one at a time, which Access sees to.
class LV2World {
  public:
    explicit LV2World(LV2SearchPath searchPath);
    ~LV2World() = default;
    LV2World(const LV2World&) = delete;
    LV2World& operator=(const LV2World&) = delete;

    /// The environment's plug-ins and the application's own. Lives as long as the process.
    static LV2World& shared();

    /// The components whose plug-in is there: those outside the application's own folder by URI,
    /// then those inside by URI. A component without its plug-in is left out with a warning.
    std::vector<LV2Component> components();

    /// The paths of the bundles that may speak of a plug-in: its own, and those with presets or
    /// codes for it. A world of these alone knows of it what this one does.
    std::vector<std::string> bundlesOf(const std::string& pluginURI);

    /// Exclusive use of lilv, for the object's life. Does not nest. Every call of a lilv function
    /// needs one, but for running, connecting and activating an instance.
    class Access {
      public:
        explicit Access(LV2World& world) : lock_(world.mutex_), world_(world) {}

        LilvWorld* lilv() const { return world_.lilv_.get(); }
        LilvPointer<LilvNode> uri(const char* text) const;
        /// The plug-in with that URI, loaded with what bundles say of it; null without one.
        const LilvPlugin* plugin(const std::string& uri) const;

      private:
        std::scoped_lock<std::mutex> lock_;
        LV2World& world_;
    };

  private:
    struct Entry {
        LV2Bundle bundle;
        bool isHandedToLilv = false;
        std::optional<bool> isSound;  // Once somebody had to read the manifest.
    };

    void search();
    static bool isSound(Entry& entry);
    void load(Entry& entry);
    const LilvPlugin* loadedPlugin(const std::string& uri) const;
    const LilvPlugin* plugin(const std::string& uri);
    bool isOwn(const LilvPlugin* plugin) const;
    static std::filesystem::path bundlePath(const LilvPlugin* plugin);

    const LV2SearchPath searchPath_;
    std::mutex mutex_;
    LilvPointer<LilvWorld> lilv_;
    bool isSearched_ = false;
    bool isAllLoaded_ = false;
    std::vector<Entry> entries_;
};

}  // namespace orvalo
