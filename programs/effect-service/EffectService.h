#pragma once

#include <memory>
#include <optional>

#include "programs/effect-service/LoadedEffect.h"
#include "programs/effect-service/ServiceConnection.h"
#include "programs/effect-service/ServicePluginUI.h"

namespace orvalo {

/// Handles the host's messages: the first instantiates the effect, the others address it. Main
/// thread.
class EffectService {
  public:
    /// socket: connected to the host.
    explicit EffectService(FileDescriptor socket);

    /// Serves the host until it closes the connection. Returns the exit status: 0, or 1 after a
    /// line in the log when the host sent a message that it must not send.
    int run();

  private:
    void take(const bridge::HostMessage& message);
    std::shared_ptr<const PluginUIParts> pluginUIParts();
    void closePluginUI();
    void fail(const char* reason);
    void answer(std::uint32_t number, const std::string& error = {});
    /// Does the work of a request and sends the answer, with the work's error.
    template <typename Work>
    void answerAfter(std::uint32_t number, const Work& work);

    void take(const bridge::Instantiate& request);
    void take(const bridge::Prepare& request);
    void take(const bridge::SetContextName& request);
    void take(const bridge::LoadPreset& request);
    void take(const bridge::Ping& request);
    void take(const bridge::OpenPluginUI& request);
    void take(const bridge::ResizePluginUI& request);
    void take(const bridge::ShowPluginUI& request);
    void take(const bridge::ClosePluginUI& request);
    void take(const bridge::LoadPluginUI& request);
    void take(const bridge::SetControl& request);
    void take(const bridge::SaveState& request);

    ServiceConnection connection_;
    std::unique_ptr<LoadedEffect> effect_;  // Null before Instantiate, and when that fails.
    bool writesPresets_ = false;            // As in Instantiate.
    std::shared_ptr<const PluginUIParts> pluginUIParts_;  // Once the host has asked for it.
    std::shared_ptr<ServicePluginUI> pluginUI_;
    std::optional<int> status_;
};

}  // namespace orvalo
