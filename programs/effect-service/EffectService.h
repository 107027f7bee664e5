#pragma once

#include <memory>
#include <optional>

#include "programs/effect-service/LoadedEffect.h"
#include "programs/effect-service/ServiceConnection.h"
#include "programs/effect-service/ServicePluginUI.h"

namespace orvalo {

/// What the host asks of this process, done: the first message makes the effect, the others are for
/// it. Main thread.
class EffectService {
  public:
    /// socket: connected to the host.
    explicit EffectService(FileDescriptor socket);

    /// Serves the host until it is gone; returns the process's exit status. Where the host has
    /// broken the rules, that is not 0, and the log says how.
    int run();

  private:
    void take(const bridge::HostMessage& message);
    std::shared_ptr<const PluginUIParts> pluginUIParts();
    void closePluginUI();
    void fail(const char* reason);
    void answer(std::uint32_t number, const std::string& error = {});
    /// Does what a request asks, and answers with what has gone wrong.
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

    ServiceConnection connection_;
    std::unique_ptr<LoadedEffect> effect_;  // Null before the first message, and when that fails.
    std::shared_ptr<const PluginUIParts> pluginUIParts_;  // Once the host has asked for it.
    std::shared_ptr<ServicePluginUI> pluginUI_;
    std::optional<int> status_;
};

}  // namespace orvalo
