#include "programs/effect-service/EffectService.h"

#include <glib.h>

#include <utility>

#include "platform/audio/bridge/wire/EffectCache.h"
#include "platform/audio/lv2/URIDMap.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

EffectService::EffectService(FileDescriptor socket) : connection_(std::move(socket)) {
    connection_.onMessage = [this](const bridge::HostMessage& message) { take(message); };
    connection_.onEnd = [this](bool isBroken) {
        if (isBroken) {
            fail("The host sent an invalid message; the service ends.");
        } else if (!status_) {
            status_ = 0;
        }
    };
}

int EffectService::run() {
    while (!status_) {
        g_main_context_iteration(nullptr, TRUE);
    }
    return *status_;
}

void EffectService::fail(const char* reason) {
    g_warning("%s", reason);
    status_ = 1;
}

void EffectService::take(const bridge::HostMessage& message) {
    if (status_) {
        return;
    }
    if (effect_ == nullptr && !std::holds_alternative<bridge::Instantiate>(message)) {
        fail("The host sent a request before the effect; the service ends.");
        return;
    }
    std::visit([this](const auto& request) { take(request); }, message);
}

void EffectService::answer(std::uint32_t number, const std::string& error) {
    connection_.send(bridge::Done{number, error});
}

template <typename Work>
void EffectService::answerAfter(std::uint32_t number, const Work& work) {
    std::string error;
    try {
        work();
    } catch (const NSError& caught) {
        error = caught.localizedDescription();
    }
    effect_->publish();
    answer(number, error);
}

void EffectService::take(const bridge::Instantiate& request) {
    auto memory = connection_.takePassed();
    if (effect_ != nullptr) {
        fail("The host requested a second effect; the service ends.");
        return;
    }
    if (!memory) {
        fail("The host passed no shared memory; the service ends.");
        return;
    }
    // Before any code of the effect is loaded, while the process has one thread.
    g_setenv("TMPDIR", request.stateFolder.c_str(), TRUE);
    // Without its cache Mesa compiles a UI's shaders at each start, which takes seconds.
    g_setenv("MESA_SHADER_CACHE_DIR", effectCacheFolder(request.uri).c_str(), TRUE);
    // Half of BridgeLimits::cache.
    g_setenv("MESA_SHADER_CACHE_MAX_SIZE", "128M", TRUE);
    writesPresets_ = request.writesPresets;
    // These URIs get the first numbers in every service, also in the one that saved the state.
    LV2URIDs::shared();
    try {
        effect_ = std::make_unique<LoadedEffect>(
            request, std::move(memory), [this](const std::string& state) {
                // States must not pile up when the host does not read them.
                const bool canSend =
                    state.size() < bridge::kLongestMessage && !connection_.isWaiting();
                if (canSend) {
                    connection_.send(bridge::State{state});
                }
                return canSend;
            });
    } catch (const NSError& error) {
        answer(request.number, error.localizedDescription());
        return;
    }
    answer(request.number);
}

void EffectService::take(const bridge::Prepare& request) {
    // The state of an instance that may be replaced is known only now.
    effect_->publish();
    answerAfter(request.number,
                [&] { effect_->unit()->allocateRenderResources(request.sampleRate); });
}

void EffectService::take(const bridge::SetContextName& request) {
    answerAfter(request.number, [&] { effect_->unit()->setContextName(request.name); });
}

void EffectService::take(const bridge::LoadPreset& request) {
    answerAfter(request.number, [&] { effect_->loadPreset(request.uri); });
}

void EffectService::take(const bridge::Ping& request) {
    answer(request.number);
}

void EffectService::take(const bridge::OpenPluginUI& request) {
    answerAfter(request.number, [&] {
        closePluginUI();
        pluginUI_ = std::make_shared<ServicePluginUI>(*effect_, connection_, pluginUIParts(),
                                                      request, writesPresets_);
        connection_.send(bridge::PluginUIOpened{pluginUI_->window()});
    });
}

void EffectService::take(const bridge::ResizePluginUI& request) {
    if (pluginUI_ != nullptr) {
        pluginUI_->setSize({request.width, request.height});
    }
}

void EffectService::take(const bridge::ShowPluginUI& request) {
    if (pluginUI_ != nullptr) {
        pluginUI_->setVisible(request.isVisible);
    }
}

void EffectService::take(const bridge::ClosePluginUI& request) {
    closePluginUI();
    answer(request.number);
}

void EffectService::closePluginUI() {
    if (const auto closing = std::exchange(pluginUI_, nullptr)) {
        closing->end();
    }
}

void EffectService::take(const bridge::LoadPluginUI& request) {
    answerAfter(request.number, [this] { pluginUIParts(); });
}

void EffectService::take(const bridge::SetControl& request) {
    effect_->setControl(request.control);
}

void EffectService::take(const bridge::SaveState& request) {
    answerAfter(request.number, [] {});
}

std::shared_ptr<const PluginUIParts> EffectService::pluginUIParts() {
    if (pluginUIParts_ == nullptr) {
        pluginUIParts_ = std::make_shared<PluginUIParts>(*effect_->unit());
    }
    return pluginUIParts_;
}

}  // namespace orvalo
