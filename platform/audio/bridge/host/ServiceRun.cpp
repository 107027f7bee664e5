#include "platform/audio/bridge/host/ServiceRun.h"

#include <fcntl.h>
#include <glib.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/audio/bridge/host/PlainText.h"
#include "platform/audio/bridge/wire/EffectCache.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/lv2/UserPresets.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

std::string mebibytesText(std::uint64_t bytes) {
    return std::to_string(bytes >> 20U) + " MiB";
}

}  // namespace

// Start.

ServiceRun::ServiceRun(const Surroundings& surroundings)
    : surroundings_(surroundings),
      process_(surroundings.order.program, surroundings.order.places),
      channel_(process_.takeSocket()),
      log_(process_.takeOutput(), surroundings.order.uri, surroundings.limits.logLines),
      session_(std::make_unique<RenderSession>(SharedAudio::make(surroundings.order.layout))),
      nextPing_(Clock::now() + surroundings.limits.ping),
      nextUseCheck_(nextPing_) {
    sendInstantiate();
}

ServiceRun::~ServiceRun() {
    disconnectRender();
}

void ServiceRun::sendInstantiate() {
    const auto& [order, limits, render, pluginUI, last] = surroundings_;
    bridge::HostMessage message = bridge::Instantiate{
        .number = 0,
        .uri = order.uri,
        .bundles = order.places.bundles,
        .stateFolder = order.places.scratch,
        .contextName = last.contextName,
        .sampleRate = last.sampleRate,
        .state = last.state,
        .controls = last.controls,
        .inputChannelCount = order.layout.inputChannelCount,
        .outputChannelCount = order.layout.outputChannelCount,
        .portCount = order.layout.portCount,
        .preset = last.preset,
        .quantum = order.quantum,
        .writesPresets = order.writesPresets,
    };
    const auto number = transmit(message, session_->audio.descriptor());
    pending_.add({std::move(message), 0, {}}, number, Clock::now());
}

std::uint32_t ServiceRun::transmit(bridge::HostMessage& message, int passed) {
    std::uint32_t number = 0;
    std::visit(
        [this, &number](auto& record) {
            if constexpr (requires { record.number; }) {
                number = ++lastNumber_;
                record.number = number;
            }
        },
        message);
    channel_.send(bridge::encode(message), passed);
    return number;
}

std::shared_ptr<const SharedAudio> ServiceRun::sharedAudio() const {
    try {
        FileDescriptor descriptor(fcntl(readySession_->audio.descriptor(), F_DUPFD_CLOEXEC, 0));
        return std::make_shared<const SharedAudio>(
            SharedAudio::map(std::move(descriptor), surroundings_.order.layout));
    } catch (const NSError& error) {
        g_warning("The control values of <%s> cannot be shown: %s.",
                  surroundings_.order.uri.c_str(), error.what());
        return nullptr;
    }
}

// Running.

bool ServiceRun::canTake(const ServiceCommand& command) const {
    return !isPluginUIHung_ || std::holds_alternative<bridge::ClosePluginUI>(command.message) ||
           std::holds_alternative<bridge::ResizePluginUI>(command.message) ||
           std::holds_alternative<bridge::ShowPluginUI>(command.message) ||
           std::holds_alternative<bridge::SetControl>(command.message);
}

void ServiceRun::replace() {
    isReplaced_ = true;
    reason_ = "has a UI that hangs";
}

void ServiceRun::send(ServiceCommand command) {
    if (const auto number = transmit(command.message); number > 0) {
        pending_.add(std::move(command), number, Clock::now());
    }
}

bool ServiceRun::handleEvents(int wakeup) {
    const auto events = static_cast<short>(channel_.isWaiting() ? POLLIN | POLLOUT : POLLIN);
    std::array<pollfd, 4> watched{
        pollfd{wakeup, POLLIN, 0}, pollfd{process_.descriptor(), POLLIN, 0},
        pollfd{channel_.descriptor(), events, 0}, pollfd{log_.descriptor(), POLLIN, 0}};
    poll(watched.data(), watched.size(), static_cast<int>(surroundings_.limits.tick.count()));
    const auto now = Clock::now();
    if (watched[3].revents != 0) {
        log_.read(now);
    }
    if ((watched[1].revents & POLLIN) != 0) {
        return false;
    }
    if ((watched[2].revents & (POLLIN | POLLOUT)) != 0) {
        // The transfer of a large state may take longer than an answer.
        pending_.noteLife(now);
    }
    if ((watched[2].revents & POLLOUT) != 0) {
        channel_.flush();
    }
    if (watched[2].revents != 0 && !receive()) {
        return false;
    }
    sendPingWhenDue(now);
    observeQuanta(now);
    auto fault = overdueAnswer(now);
    if (fault.empty()) {
        fault = overdueQuantum(now);
    }
    if (fault.empty()) {
        fault = excessiveUse(now);
    }
    if (fault.empty()) {
        return true;
    }
    reason_ = std::move(fault);
    return false;
}

bool ServiceRun::receive() {
    const auto result =
        channel_.receive([this](std::uint32_t type, std::span<const std::byte> bytes) {
            const auto message = bridge::decodeServiceMessage(type, bytes);
            return message && take(*message);
        });
    // A service has no reason to pass a descriptor.
    static_cast<void>(channel_.takePassed());
    if (result == MessageChannel::Result::broken) {
        reason_ = "sent an invalid message";
    }
    return result == MessageChannel::Result::waiting;
}

bool ServiceRun::take(const bridge::ServiceMessage& message) {
    return std::visit([this](const auto& record) { return take(record); }, message);
}

bool ServiceRun::take(const bridge::Done& done) {
    const auto command = pending_.take(done.number, Clock::now());
    if (!command) {
        return false;
    }
    isPluginUIHung_ = false;
    const auto error = plainText(done.error);
    if (std::holds_alternative<bridge::Instantiate>(command->message)) {
        finishStart(error);
    } else {
        finishRequest(*command, error);
    }
    return true;
}

void ServiceRun::finishStart(const std::string& error) {
    process_.noteAnswer();
    if (!error.empty()) {
        refusal_ = error;
        reason_ = "could not be instantiated";
        return;
    }
    readySession_ = session_.get();
    // Before connect(), which may bring a quantum at once.
    unansweredSince_ = Clock::now();
    surroundings_.render.connect(std::move(session_));
}

void ServiceRun::finishRequest(const ServiceCommand& command, const std::string& error) {
    if (error.empty()) {
        if (const auto* prepare = std::get_if<bridge::Prepare>(&command.message)) {
            surroundings_.last.sampleRate = prepare->sampleRate;
        } else if (const auto* context = std::get_if<bridge::SetContextName>(&command.message)) {
            surroundings_.last.contextName = context->name;
        } else if (const auto* preset = std::get_if<bridge::LoadPreset>(&command.message);
                   preset != nullptr && !hasRun()) {
            surroundings_.last.preset = preset->uri;
        }
    }
    if (std::holds_alternative<bridge::ClosePluginUI>(command.message)) {
        isPluginUIOpen_ = false;
    }
    if (std::holds_alternative<bridge::SaveState>(command.message)) {
        surroundings_.last.takeControls(readySession_->audio.controlValues(),
                                        surroundings_.order.ports);
    }
    if (command.completion) {
        command.completion(
            {error.empty() ? ServiceAnswer::Kind::done : ServiceAnswer::Kind::refused, error});
    }
}

bool ServiceRun::hasRun() const {
    const auto& session = readySession_ == nullptr ? *session_ : *readySession_;
    return session.handedOver.load(std::memory_order_relaxed) != 0;
}

bool ServiceRun::take(const bridge::State& state) {
    const auto limit = surroundings_.limits.state;
    if (state.text.size() <= limit) {
        surroundings_.last.state = state.text;
        surroundings_.last.preset.clear();
    } else if (!std::exchange(warnedOfLargeState_, true)) {
        g_warning(
            "The state of the effect <%s> has %s, more than the limit of %s; a restart uses an "
            "older state.",
            surroundings_.order.uri.c_str(), mebibytesText(state.text.size()).c_str(),
            mebibytesText(limit).c_str());
    }
    return true;
}

bool ServiceRun::take(const bridge::PluginUIOpened& opened) {
    // Once for each request, before its answer.
    const bool isAsked =
        pending_.firstMessage() != nullptr &&
        std::holds_alternative<bridge::OpenPluginUI>(*pending_.firstMessage()) &&
        std::exchange(openedFor_, pending_.firstNumber()) != pending_.firstNumber();
    if (!isAsked) {
        return false;
    }
    isPluginUIOpen_ = true;
    surroundings_.pluginUI.post(opened);
    return true;
}

bool ServiceRun::take(const bridge::PluginUIResizeRequest& request) {
    constexpr std::int32_t kLargest = 16384;
    surroundings_.pluginUI.post(
        bridge::PluginUIResizeRequest{.width = std::clamp(request.width, 1, kLargest),
                                      .height = std::clamp(request.height, 1, kLargest)});
    return true;
}

bool ServiceRun::take(const bridge::PluginUIClosed& closed) {
    if (!std::exchange(isPluginUIOpen_, false)) {
        return false;
    }
    surroundings_.pluginUI.post(bridge::PluginUIClosed{plainText(closed.reason)});
    return true;
}

bool ServiceRun::take(const bridge::PluginUIOutdated& outdated) {
    if (!std::exchange(isPluginUIOpen_, false)) {
        return false;
    }
    surroundings_.pluginUI.post(outdated);
    return true;
}

bool ServiceRun::take(const bridge::WritePreset& request) {
    UserPreset preset{
        .folder = request.folder, .label = request.label, .comment = request.comment, .values = {}};
    for (const auto& [port, value] : request.values) {
        preset.values.emplace_back(port, value);
    }
    const auto& order = surroundings_.order;
    return changePresets([&] { writeUserPreset(order.uri, order.ports, preset); });
}

bool ServiceRun::take(const bridge::RemovePreset& request) {
    return changePresets([&] { removeUserPreset(surroundings_.order.uri, request.folder); });
}

bool ServiceRun::changePresets(const std::function<void()>& change) {
    if (!surroundings_.order.writesPresets) {
        return false;
    }
    try {
        change();
    } catch (const NSError& error) {
        // Once: the service may request it again and again.
        if (!std::exchange(warnedOfPresets_, true)) {
            g_warning("<%s>: %s", surroundings_.order.uri.c_str(), error.what());
        }
    }
    return true;
}

// Supervision.

void ServiceRun::sendPingWhenDue(Time now) {
    // The answer to any other request shows as well that the service is alive.
    if (pending_.isEmpty() && now >= nextPing_) {
        nextPing_ = now + surroundings_.limits.ping;
        send({bridge::Ping{}, 0, {}});
    }
}

void ServiceRun::observeQuanta(Time now) {
    if (readySession_ == nullptr) {
        return;
    }
    const auto quantum = readySession_->handedOver.load(std::memory_order_relaxed);
    const bool isNew = quantum != std::exchange(lastQuantum_, quantum);
    if (isNew) {
        lastQuantumTime_ = now;
    }
    // Offline, a quantum has many spans, each of which has the time of a quantum.
    const auto& control = readySession_->audio.control();
    const auto rendered = control.rendered.load(std::memory_order_relaxed);
    const bool hasAdvanced = rendered != std::exchange(lastRendered_, rendered);
    const bool isAnswered = control.response.load(std::memory_order_relaxed) == quantum;
    if (isNew || hasAdvanced || isAnswered) {
        unansweredSince_ = now;
    }
    reportAudioThread();
}

void ServiceRun::reportAudioThread() {
    const auto& control = readySession_->audio.control();
    const auto& uri = surroundings_.order.uri;
    if (control.isSilenced.load(std::memory_order_relaxed) != 0 &&
        !std::exchange(warnedOfSilence_, true)) {
        g_warning("<%s>: %s", uri.c_str(), LV2LocalAudioUnit::kSilenced);
    }
    const int error = control.schedulingError.load(std::memory_order_relaxed);
    if (error != 0 && !std::exchange(warnedOfScheduling_, true)) {
        g_message(
            "The audio thread of the effect <%s> is refused real-time priority %d (%s); under load "
            "its output may be late.",
            uri.c_str(), control.schedulingPriority.load(std::memory_order_relaxed),
            g_strerror(error));
    }
}

std::string ServiceRun::overdueAnswer(Time now) {
    const auto& limits = surroundings_.limits;
    const bool runsPluginUI = isPluginUIOpen_ || pending_.concernPluginUI();
    const auto limit = runsPluginUI ? limits.pluginUI : limits.request;
    if (isPluginUIHung_ || pending_.waited(now) <= limit) {
        return "";
    }
    auto reason = "did not answer for " + durationText(limit);
    if (!runsPluginUI || pending_.concernEffect()) {
        return reason;
    }
    closeHungPluginUI(reason);
    return "";
}

// The main thread cannot leave the UI's code. The audio thread needs no main thread.
void ServiceRun::closeHungPluginUI(const std::string& reason) {
    isPluginUIHung_ = true;
    pending_.refusePluginUI("The UI of <" + surroundings_.order.uri + "> " + reason +
                            "; the effect plays on.");
    surroundings_.pluginUI.post(bridge::PluginUIClosed{"it " + reason + ", the effect plays on"});
}

std::string ServiceRun::overdueQuantum(Time now) const {
    const auto limit = surroundings_.limits.hang;
    const bool isOverdue = readySession_ != nullptr && now - unansweredSince_ > limit;
    return isOverdue ? "did not finish a quantum within " + durationText(limit) : "";
}

std::string ServiceRun::excessiveUse(Time now) {
    if (now < nextUseCheck_) {
        return "";
    }
    const auto& limits = surroundings_.limits;
    nextUseCheck_ = now + limits.ping;
    const auto use = process_.use();
    if (use.memory > limits.memory) {
        return "used " + mebibytesText(use.memory) + " of memory, more than the limit of " +
               mebibytesText(limits.memory);
    }
    if (use.threads > limits.threads) {
        return "ran " + std::to_string(use.threads) + " threads, more than the limit of " +
               std::to_string(limits.threads);
    }
    const auto& cache = surroundings_.order.cache;
    if (!cache.empty() && isEffectCacheLarger(cache, limits.cache)) {
        isCacheTooLarge_ = true;
        return "wrote more than " + mebibytesText(limits.cache) + " into its cache";
    }
    return "";
}

// End.

void ServiceRun::disconnectRender() {
    if (readySession_ != nullptr) {
        reportAudioThread();
        readySession_ = nullptr;
        session_ = surroundings_.render.disconnect();
    }
}

ServiceRun::End ServiceRun::finish() {
    const auto now = Clock::now();
    observeQuanta(now);
    disconnectRender();
    if (reason_.empty() && !process_.endsWithin(surroundings_.limits.farewell)) {
        reason_ = "closed its connection";
    }
    if (reason_.empty()) {
        // Reads the messages that the process sent before it ended. The answer to Instantiate may
        // be among them and connect the render thread.
        static_cast<void>(receive());
        disconnectRender();
    }
    const auto exit = process_.end();
    if (isCacheTooLarge_) {
        removeEffectCache(surroundings_.order.cache);
    }
    surroundings_.last.takeControls(session_->audio.controlValues(), surroundings_.order.ports);
    log_.finish(Clock::now());
    End end{(reason_.empty() ? exit : reason_) + (isReplaced_ ? "" : activity(now)),
            log_.lastMessage(),
            !isReplaced_,
            reason_.empty() && process_.failedToConfine(),
            {},
            {}};
    for (auto& command : pending_.takeAll()) {
        const bool isRepeatable = std::holds_alternative<bridge::Prepare>(command.message) ||
                                  std::holds_alternative<bridge::SetContextName>(command.message);
        (isRepeatable ? end.repeatable : end.lost).push_back(std::move(command));
    }
    return end;
}

std::string ServiceRun::activity(Time now) const {
    if (auto request = pending_.activity(); !request.empty()) {
        return request;
    }
    // A service that hangs in a quantum is killed `hang` after it got the quantum.
    const auto recently = surroundings_.limits.hang + std::chrono::seconds(1);
    return lastQuantum_ > 0 && now - lastQuantumTime_ < recently ? " while playing" : "";
}

}  // namespace orvalo
