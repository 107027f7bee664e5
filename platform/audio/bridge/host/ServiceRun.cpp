#include "platform/audio/bridge/host/ServiceRun.h"

#include <glib.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/audio/bridge/host/PlainText.h"

namespace orvalo {

namespace {

using bridge::HostMessage;

/// Whether answering may take long: an effect may load samples.
bool isSlow(const HostMessage& message) {
    return std::holds_alternative<bridge::Instantiate>(message) ||
           std::holds_alternative<bridge::Prepare>(message) ||
           std::holds_alternative<bridge::LoadPreset>(message) ||
           std::holds_alternative<bridge::OpenPluginUI>(message) ||
           std::holds_alternative<bridge::LoadPluginUI>(message);
}

std::string inWords(std::chrono::milliseconds limit) {
    if (limit == std::chrono::seconds(1)) {
        return "a second";
    }
    const bool isWhole = limit % std::chrono::seconds(1) == std::chrono::milliseconds(0);
    return isWhole ? std::to_string(limit / std::chrono::seconds(1)) + " seconds"
                   : std::to_string(limit.count()) + " milliseconds";
}

std::string inMebibytes(std::uint64_t bytes) {
    return std::to_string(bytes >> 20U) + " MiB";
}

}  // namespace

ServiceRun::ServiceRun(const Surroundings& surroundings)
    : surroundings_(surroundings),
      process_(surroundings.order.program),
      channel_(process_.takeSocket()),
      log_(process_.takeOutput(), surroundings.order.uri, surroundings.limits.logLines),
      session_(std::make_unique<RenderSession>(SharedAudio::make(surroundings.order.layout))),
      nextPing_(Clock::now() + surroundings.limits.ping),
      nextLook_(nextPing_) {
    sendInstantiate();
}

ServiceRun::~ServiceRun() {
    // The render thread must not be left with a session that nobody answers.
    takeSessionBack();
}

void ServiceRun::sendInstantiate() {
    const auto& [order, limits, render, pluginUI, last] = surroundings_;
    bridge::HostMessage message = bridge::Instantiate{
        .number = 0,
        .uri = order.uri,
        .bundles = order.bundles,
        .stateFolder = order.stateFolder,
        .contextName = last.contextName,
        .sampleRate = last.sampleRate,
        .state = last.state,
        .controls = last.controls,
        .inputChannelCount = order.layout.inputChannelCount,
        .outputChannelCount = order.layout.outputChannelCount,
        .portCount = order.layout.portCount,
    };
    const auto number = transmit(message, session_->audio.descriptor());
    pending_.push_back({{std::move(message), 0, {}}, number, Clock::now()});
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

void ServiceRun::send(ServiceCommand command) {
    if (const auto number = transmit(command.message); number > 0) {
        pending_.push_back({std::move(command), number, Clock::now()});
    }
}

bool ServiceRun::turn(int wakeup) {
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
    if ((watched[2].revents & POLLOUT) != 0) {
        channel_.flush();
    }
    if (watched[2].revents != 0 && !receive()) {
        return false;
    }
    return isInTime();
}

bool ServiceRun::receive() {
    const auto result =
        channel_.receive([this](std::uint32_t type, std::span<const std::byte> bytes) {
            const auto message = bridge::decodeServiceMessage(type, bytes);
            return message && take(*message);
        });
    // Nothing of this kind is asked for, or kept.
    static_cast<void>(channel_.takePassed());
    if (result == MessageChannel::Result::broken) {
        return end("sent a message that makes no sense");
    }
    return result == MessageChannel::Result::waiting;
}

bool ServiceRun::take(const bridge::ServiceMessage& message) {
    return std::visit([this](const auto& record) { return take(record); }, message);
}

bool ServiceRun::take(const bridge::Done& done) {
    if (ping_ && done.number == ping_->number) {
        ping_.reset();
        return true;
    }
    if (pending_.empty() || done.number != pending_.front().number) {
        return false;
    }
    const auto pending = std::move(pending_.front());
    pending_.pop_front();
    const auto now = Clock::now();
    if (!pending_.empty()) {
        pending_.front().since = now;
    }
    if (ping_ && isSlow(pending.command.message)) {
        ping_->since = now;
    }
    if (std::holds_alternative<bridge::Instantiate>(pending.command.message)) {
        return takeInstantiated(plainText(done.error));
    }
    settle(pending, done);
    return true;
}

bool ServiceRun::takeInstantiated(const std::string& error) {
    if (!error.empty()) {
        refusal_ = error;
        reason_ = "could not be made";
        return true;
    }
    readySession_ = session_.get();
    surroundings_.render.connect(std::move(session_));
    return true;
}

void ServiceRun::settle(const Pending& pending, const bridge::Done& done) {
    const auto error = plainText(done.error);
    const auto& message = pending.command.message;
    if (error.empty()) {
        if (const auto* prepare = std::get_if<bridge::Prepare>(&message)) {
            surroundings_.last.sampleRate = prepare->sampleRate;
        } else if (const auto* context = std::get_if<bridge::SetContextName>(&message)) {
            surroundings_.last.contextName = context->name;
        }
    }
    if (pending.command.completion) {
        pending.command.completion(
            {error.empty() ? ServiceAnswer::Kind::done : ServiceAnswer::Kind::refused, error});
    }
}

bool ServiceRun::take(const bridge::State& state) {
    if (state.text.size() <= surroundings_.limits.state) {
        surroundings_.last.state = state.text;
    } else if (!std::exchange(saidStateIsTooLarge_, true)) {
        g_warning("The state of the effect <%s> takes %s, more than the %s that are kept.",
                  surroundings_.order.uri.c_str(), inMebibytes(state.text.size()).c_str(),
                  inMebibytes(surroundings_.limits.state).c_str());
    }
    return true;
}

bool ServiceRun::take(const bridge::PluginUIOpened& opened) {
    // Once for each request, before its answer.
    const bool isAsked =
        !pending_.empty() &&
        std::holds_alternative<bridge::OpenPluginUI>(pending_.front().command.message) &&
        std::exchange(openedFor_, pending_.front().number) != pending_.front().number;
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

bool ServiceRun::isInTime() {
    const auto& limits = surroundings_.limits;
    const auto now = Clock::now();
    if (!pending_.empty()) {
        const auto& front = pending_.front();
        const auto limit = isSlow(front.command.message) ? limits.request : limits.hang;
        if (now - front.since > limit) {
            return end("did not answer for " + inWords(limit));
        }
    }
    return isQuantumInTime(now) && isPingInTime(now) && isSmallEnough(now);
}

bool ServiceRun::isQuantumInTime(Time now) {
    if (readySession_ == nullptr) {
        return true;
    }
    const auto quantum = readySession_->handedOver.load(std::memory_order_relaxed);
    if (quantum != watchedQuantum_) {
        lastQuantum_ = now;
    }
    if (quantum != watchedQuantum_ || readySession_->isAnswered()) {
        watchedQuantum_ = quantum;
        watchedSince_ = now;
        return true;
    }
    const auto limit = surroundings_.limits.hang;
    return now - watchedSince_ <= limit || end("did not finish a quantum within " + inWords(limit));
}

bool ServiceRun::isPingInTime(Time now) {
    const auto& limits = surroundings_.limits;
    if (!pending_.empty() && isSlow(pending_.front().command.message)) {
        return true;
    }
    if (ping_) {
        return now - ping_->since <= limits.hang ||
               end("did not answer for " + inWords(limits.hang));
    }
    if (now >= nextPing_) {
        nextPing_ = now + limits.ping;
        bridge::HostMessage message = bridge::Ping{};
        ping_ = {transmit(message), now};
    }
    return true;
}

bool ServiceRun::isSmallEnough(Time now) {
    if (now < nextLook_) {
        return true;
    }
    const auto& limits = surroundings_.limits;
    nextLook_ = now + limits.ping;
    const auto memory = process_.residentMemory();
    return memory <= limits.memory ||
           end("took " + inMebibytes(memory) + " of memory, more than the " +
               inMebibytes(limits.memory) + " that an effect may have,");
}

bool ServiceRun::end(std::string reason) {
    reason_ = std::move(reason);
    return false;
}

void ServiceRun::takeSessionBack() {
    if (std::exchange(readySession_, nullptr) != nullptr) {
        session_ = surroundings_.render.disconnect();
    }
}

ServiceRun::End ServiceRun::finish() {
    auto& [order, limits, render, pluginUI, last] = surroundings_;
    static_cast<void>(isQuantumInTime(Clock::now()));
    takeSessionBack();
    if (reason_.empty() && !process_.endsWithin(limits.farewell)) {
        reason_ = "closed its connection";
    }
    if (reason_.empty()) {
        // What it had to say before it ended; the most it can have in the socket, and no more.
        static_cast<void>(receive());
        // It may just have said that it is ready.
        takeSessionBack();
    }
    const auto how = process_.end();
    const auto when = occasion();
    last.takeControls(session_->audio.controlValues(), order.ranges);
    log_.finish(ServiceLog::Clock::now());
    End result{(reason_.empty() ? how : reason_) + when, log_.lastMessage(), {}, {}};
    for (auto& [command, number, since] : pending_) {
        const bool isRepeatable = std::holds_alternative<bridge::Prepare>(command.message) ||
                                  std::holds_alternative<bridge::SetContextName>(command.message);
        (isRepeatable ? result.repeatable : result.lost).push_back(std::move(command));
    }
    pending_.clear();
    return result;
}

std::string ServiceRun::occasion() const {
    if (!pending_.empty()) {
        const auto& message = pending_.front().command.message;
        if (std::holds_alternative<bridge::Instantiate>(message)) {
            return " while it was made";
        }
        if (std::holds_alternative<bridge::Prepare>(message)) {
            return " while it was prepared to play";
        }
        if (std::holds_alternative<bridge::LoadPreset>(message)) {
            return " while it loaded a preset";
        }
        if (std::holds_alternative<bridge::OpenPluginUI>(message) ||
            std::holds_alternative<bridge::LoadPluginUI>(message)) {
            return " while it opened its UI";
        }
    }
    const bool isPlaying =
        watchedQuantum_ > 0 &&
        // A quantum that is never finished is the last for as long as that is waited for.
        Clock::now() - lastQuantum_ < surroundings_.limits.hang + std::chrono::seconds(1);
    return isPlaying ? " while playing" : "";
}

}  // namespace orvalo
