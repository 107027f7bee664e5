// A service without an effect: halves its input, and misbehaves as the effect's URI says:
// "urn:fake:<how>:<when>", optionally with ":always". when: the number of the quantum; 0 for
// Instantiate. Without ":always" only the first service misbehaves, which gets no state. "delay"
// has a latency of 5000 frames.

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/Futex.h"
#include "platform/audio/bridge/wire/MessageChannel.h"
#include "platform/audio/bridge/wire/SharedAudio.h"
#include "platform/audio/bridge/wire/SharedEvents.h"
#include "platform/foundation/FileDescriptor.h"

namespace {

using namespace orvalo;

constexpr int kSocket = 3;
constexpr std::size_t kFakeLatency = 5000;  // Frames.

void say(const std::string& text) {
    static_cast<void>(!write(STDERR_FILENO, text.data(), text.size()));
}

/// Waits until the host has sent that many messages of the shortest kind, and reads none.
void awaitMessages(int count) {
    const auto ping = bridge::encode(bridge::HostMessage(bridge::Ping{}));
    for (int bytes = 0; bytes < count * static_cast<int>(ping.size());) {
        ioctl(kSocket, FIONREAD, &bytes);
        sched_yield();
    }
}

[[noreturn]] void sleepForEver() {
    for (;;) {
        pause();
    }
}

/// The behaviour that the URI requests.
struct Role {
    explicit Role(const bridge::Instantiate& request) {
        std::istringstream text(request.uri);
        std::string part;
        std::getline(text, part, ':');
        std::getline(text, part, ':');
        std::getline(text, how, ':');
        text >> when;
        const bool isAlways = request.uri.ends_with(":always");
        if (!isAlways && !request.state.empty()) {
            how = "half";
        }
    }

    std::string how;
    std::uint32_t when = 0;
};

class FakeService {
  public:
    FakeService() : channel_(FileDescriptor(kSocket)) {}

    void run() {
        for (;;) {
            pollfd socket{kSocket, POLLIN, 0};
            if (channel_.isWaiting()) {
                socket.events |= POLLOUT;
            }
            poll(&socket, 1, -1);
            channel_.flush();
            const auto result = channel_.receive([this](auto type, auto bytes) {
                const auto message = bridge::decodeHostMessage(type, bytes);
                if (!message) {
                    return false;
                }
                std::visit([this](const auto& record) { this->take(record); }, *message);
                return true;
            });
            if (result != MessageChannel::Result::waiting) {
                isDeaf_ ? sleepForEver() : std::_Exit(0);
            }
        }
    }

  private:
    void take(const bridge::Instantiate& request) {
        role_.emplace(request);
        std::ostringstream line;
        line << "made at " << request.sampleRate << " in '" << request.contextName << "' with '"
             << request.state << "'";
        for (const auto& control : request.controls) {
            line << " " << control.port << "=" << control.value;
        }
        say(line.str() + "\n");
        audio_.emplace(SharedAudio::map(
            channel_.takePassed(),
            {request.inputChannelCount, request.outputChannelCount, request.portCount}));
        if (role_->when == 0) {
            misbehave();
        }
        if (role_->how == "refuse" && role_->when == 0) {
            return answer(request.number, "The plug-in <" + request.uri + "> says no.");
        }
        state_ = request.state.empty() ? "first" : request.state + "+";
        send(bridge::State{state_});
        for (std::uint32_t port = 0; port < request.portCount; ++port) {
            audio_->controlValues()[port].store(0.25F * static_cast<float>(port + 1));
        }
        if (role_->how == "early") {
            audio_->control().response.store(7);  // Of a quantum that it has not got.
        }
        std::thread([this] { render(); }).detach();
        answer(request.number);
        if (role_->how == "last-words") {
            raise(SIGKILL);
        }
    }
    void take(const bridge::Prepare& request) {
        if (request.sampleRate == 22050.0 && role_->how != "half") {
            raise(SIGKILL);
        }
        if (request.sampleRate == 8000.0 || request.sampleRate == 8001.0) {
            awaitMessages(1);
        }
        const bool isKnown = request.sampleRate != 1.0 && request.sampleRate != 8001.0;
        answer(request.number, isKnown ? "" : "no such rate");
    }
    void take(const bridge::SetContextName& request) { answer(request.number); }
    void take(const bridge::LoadPreset& request) {
        if (request.uri == "urn:preset:deadly") {
            raise(SIGKILL);
        }
        if (request.uri == "urn:preset:stuck") {
            sleepForEver();
        }
        state_ = request.uri;
        if (request.uri == "urn:preset:slow") {
            sendSlowly(bridge::State{state_});
        } else {
            send(bridge::State{state_});
        }
        answer(request.number, request.uri == "urn:preset:none" ? "no such preset" : "");
    }
    void take(const bridge::Ping& request) {
        if (role_->how != "mute" || answered_ < role_->when) {
            answer(request.number);
        }
    }
    void take(const bridge::OpenPluginUI& request) {
        if (request.display == "refuse") {
            return answer(request.number, "No\x01\xFF UI.");
        }
        if (request.display == "hang") {
            sleepForEver();
        }
        send(bridge::PluginUIOpened{request.window + 1});
        if (request.display == "twice") {
            send(bridge::PluginUIOpened{request.window + 2});
        }
        answer(request.number);
        if (request.display == "hang-later") {
            sleepForEver();
        }
        if (request.display == "hang-until-closed") {
            awaitMessages(2);  // A ping and ClosePluginUI.
        }
    }
    void take(const bridge::ResizePluginUI& request) {
        send(bridge::PluginUIResizeRequest{request.width, request.height});
    }
    void take(const bridge::ShowPluginUI& request) {
        if (request.isVisible) {
            send(bridge::PluginUIClosed{"it has been shown"});
        } else {
            send(bridge::PluginUIOutdated{});
        }
    }
    void take(const bridge::SetControl& request) {
        audio_->controlValues()[request.control.port].store(request.control.value);
    }
    template <typename Request>
    void take(const Request& request) {
        answer(request.number);
    }
    void take(const bridge::LoadPluginUI& request) {
        if (role_->how == "hang-ui") {
            sleepForEver();
        }
        answer(request.number);
    }

    void answer(std::uint32_t number, const std::string& error = "") {
        send(bridge::Done{number, error});
    }
    void send(const bridge::ServiceMessage& message) { channel_.send(bridge::encode(message)); }

    void render() {
        auto& control = audio_->control();
        for (;;) {
            std::uint32_t request = control.request.load(std::memory_order_acquire);
            while (request == answered_) {
                Futex::wait(control.request, request,
                            std::chrono::steady_clock::now() + std::chrono::seconds(1));
                request = control.request.load(std::memory_order_acquire);
            }
            process(control.frameCount.load(), request);
            if (request == role_->when) {
                misbehave();
            }
            answered_ = request;
            control.response.store(request, std::memory_order_release);
            Futex::wake(control.response);
        }
    }

    void process(std::uint32_t frames, std::uint32_t number) {
        const auto input = audio_->input(frames);
        const auto output = audio_->output(frames);
        const std::size_t delay = role_->how == "delay" ? kFakeLatency : 0;
        for (std::uint32_t channel = 0; channel < output.channelCount; ++channel) {
            auto& line = lines_.at(channel);
            line.resize(delay);
            for (std::uint32_t frame = 0; frame < frames; ++frame) {
                line.push_back(0.5F * input.channels[channel][frame]);
                output.channels[channel][frame] = line.front();
                line.pop_front();
            }
        }
        SharedEventWriter writer(audio_->events());
        const std::array bytes{std::byte{0x90}, std::byte{60},
                               static_cast<std::byte>(number % 128)};
        writer.write({.frame = 1, .cable = 0, .bytes = bytes});
        audio_->control().eventBytes.store(writer.used());
        for (auto& latency : audio_->control().latencies) {
            latency.store(static_cast<std::uint32_t>(delay));
        }
    }

    /// Sends past the channel, which belongs to the main thread.
    static void sendWhole(const std::vector<std::byte>& bytes) {
        for (std::size_t sent = 0; sent < bytes.size();) {
            pollfd socket{kSocket, POLLOUT, 0};
            poll(&socket, 1, -1);
            const auto count = write(kSocket, bytes.data() + sent, bytes.size() - sent);
            sent += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
    }
    static void sendWhole(const bridge::ServiceMessage& message) {
        sendWhole(bridge::encode(message));
    }

    /// Sends a message in two seconds.
    static void sendSlowly(const bridge::ServiceMessage& message) {
        const auto bytes = bridge::encode(message);
        const auto pause = std::chrono::milliseconds(2000) / bytes.size();
        for (const auto byte : bytes) {
            sendWhole(std::vector{byte});
            std::this_thread::sleep_for(pause);
        }
    }

    /// Sends a head and a body of size bytes, whatever the head says.
    static void sendRaw(bridge::Head head, std::size_t size) {
        const auto sound = bridge::encode(bridge::ServiceMessage(bridge::State{}));
        std::memcpy(&head.version, sound.data(), sizeof(head.version));
        std::vector<std::byte> bytes(sizeof(head) + size, std::byte{0xA5});
        std::memcpy(bytes.data(), &head, sizeof(head));
        sendWhole(bytes);
    }

    void misbehave() {
        const std::map<std::string, std::function<void()>> ways{
            // Ways to end.
            {"segv", [] { raise(SIGSEGV); }},
            {"abort",
             [] {
                 say("assertion 'x > 0' failed\n");
                 std::abort();
             }},
            {"exit", [] { std::_Exit(3); }},
            {"hang", [] { sleepForEver(); }},
            {"late", [] { std::this_thread::sleep_for(std::chrono::milliseconds(300)); }},
            {"deaf", [this] { hangUp(); }},
            {"deaf-hang",
             [this] {
                 hangUp();
                 sleepForEver();
             }},
            {"leak", [this] { leak_.assign(std::size_t{256} << 20U, 1); }},
            {"other-group",
             [this] {
                 setpgid(0, getpgid(getppid()));
                 prctl(PR_SET_PDEATHSIG, 0);
                 isDeaf_ = true;
             }},
            {"child", [] { say("child " + std::to_string(makeChild()) + "\n"); }},
            // Invalid messages.
            {"garbage", [] { sendRaw({.type = 0, .length = 3}, 3); }},
            {"huge-length", [] { sendRaw({.type = 0, .length = 0xFFFFFFFF}, 100); }},
            {"unknown-type", [] { sendRaw({.type = 1000, .length = 0}, 0); }},
            {"other-version", [] { static_cast<void>(!write(kSocket, "0123456789ab", 12)); }},
            {"unasked-done",
             [] {
                 sendWhole(bridge::Done{4711, ""});
             }},
            {"unasked-opened", [] { sendWhole(bridge::PluginUIOpened{1}); }},
            {"unasked-closed", [] { sendWhole(bridge::PluginUIClosed{"it says so"}); }},
            {"unasked-outdated", [] { sendWhole(bridge::PluginUIOutdated{}); }},
            {"presets",
             [] {
                 const std::vector<bridge::ControlValue> values{{0, 0.5F}};
                 sendWhole(bridge::WritePreset{"good.preset.lv2", "Good", "", values});
                 sendWhole(bridge::WritePreset{"gone.preset.lv2", "Gone", "", values});
                 sendWhole(bridge::RemovePreset{"gone.preset.lv2"});
                 sendWhole(bridge::WritePreset{"../evil.lv2", "Evil", "", values});
                 sendWhole(bridge::WritePreset{"evil.lv2", "Evil", "", {{7, 0.5F}}});
                 sendWhole(bridge::RemovePreset{"../../evil.lv2"});
                 std::_Exit(3);
             }},
            {"huge-state", [] { sendWhole(bridge::State{std::string(2U << 20U, 's')}); }},
            {"bad-state", [] { sendWhole(bridge::State{std::string("\0\xFF garbage", 10)}); }},
            // Invalid shared memory.
            {"many-events", [this] { audio_->control().eventBytes.store(0xFFFFFFFF); }},
            {"odd-events",
             [this] {
                 std::memset(audio_->events().data(), 0xFF, audio_->events().size());
                 audio_->control().eventBytes.store(SharedAudio::kEventAreaSize);
             }},
            {"far-cable", [this] { audio_->events()[sizeof(std::uint32_t)] = std::byte{200}; }},
            {"latency", [this] { audio_->control().latencies[0].store(7); }},
            {"endless-latency", [this] { audio_->control().latencies[0].store(0xFFFFFFFF); }},
            // The two spans before are complete.
            {"third-span",
             [this] {
                 audio_->control().rendered.store(2 * kMaximumFramesToRender);
                 raise(SIGSEGV);
             }},
            {"far-span",
             [this] {
                 audio_->control().rendered.store(0xFFFFFFFF);
                 raise(SIGSEGV);
             }},
            {"slow-spans",
             [this] {
                 for (std::uint32_t done = 0; done < audio_->control().frameCount;
                      done += kMaximumFramesToRender) {
                     audio_->control().rendered.store(done + 1);
                     std::this_thread::sleep_for(std::chrono::milliseconds(400));
                 }
             }},
            {"far-answer",
             [this] {
                 audio_->control().response.store(role_->when + 100);
                 Futex::wake(audio_->control().response);
                 sleepForEver();
             }},
            {"odd-controls",
             [this] {
                 auto values = audio_->controlValues();
                 values[0].store(std::strtof("nan", nullptr));
                 values[1].store(1e30F);
                 raise(SIGKILL);
             }},
            {"unscheduled", [this] { audio_->control().schedulingError.store(EPERM); }},
            // Odd output.
            {"flood",
             [] {
                 for (int line = 0; line < 3000; ++line) {
                     say("flood " + std::to_string(line) + "\n");
                 }
             }},
            {"long-line", [] { say(std::string(100000, 'l') + "\nand another\n"); }},
            {"odd-line",
             [] {
                 say("a\x1B[31m b\xFF"
                     "c\r\n\n\n  \n");
             }},
        };
        if (const auto way = ways.find(role_->how); way != ways.end()) {
            way->second();
        }
    }

    void hangUp() {
        isDeaf_ = true;
        shutdown(kSocket, SHUT_RDWR);
    }

    static pid_t makeChild() {
        const auto child = fork();
        if (child == 0) {
            sleepForEver();
        }
        return child;
    }

    MessageChannel channel_;
    std::optional<Role> role_;
    std::optional<SharedAudio> audio_;
    std::string state_;
    std::vector<char> leak_;
    std::array<std::deque<float>, 2> lines_;  // By channel.
    std::atomic<std::uint32_t> answered_{0};
    std::atomic<bool> isDeaf_{false};
};

}  // namespace

int main(int argc, char** argv) {
    // A sanitizer would handle these signals itself.
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL}) {
        std::signal(signal, SIG_DFL);
    }
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_DUMPABLE, 0);
    if (argc != 2 || std::to_string(getppid()) != argv[1]) {
        return 1;
    }
    FakeService().run();
}
