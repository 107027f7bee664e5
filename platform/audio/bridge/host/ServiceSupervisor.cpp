#include "platform/audio/bridge/host/ServiceSupervisor.h"

#include <glib.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>

#include <cerrno>
#include <iterator>
#include <memory>
#include <system_error>
#include <utility>

#include "platform/audio/lv2/LV2Error.h"

namespace orvalo {

namespace {

std::string inWords(unsigned deaths, std::chrono::seconds window) {
    return std::to_string(deaths) + " times within " +
           (window == std::chrono::minutes(1) ? "a minute"
                                              : std::to_string(window.count()) + " seconds");
}

}  // namespace

ServiceSupervisor::ServiceSupervisor(ServiceOrder order, const BridgeLimits& limits,
                                     BridgedRender& render, PluginUIChannel& pluginUI,
                                     LastState last)
    : order_(std::move(order)),
      limits_(limits),
      render_(render),
      pluginUI_(pluginUI),
      wakeup_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      last_(std::move(last)),
      policy_(limits.deaths, limits.window) {
    if (!wakeup_) {
        throw NSError::posix(errno, "The process of an effect");
    }
}

ServiceSupervisor::~ServiceSupervisor() {
    isStopping_.store(true, std::memory_order_release);
    wake();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void ServiceSupervisor::start() {
    started_.emplace();
    auto started = started_->get_future();
    try {
        thread_ = std::thread([this] { supervise(); });
    } catch (const std::system_error& error) {
        throw NSError::posix(error.code().value(), "The thread of an effect's process");
    }
    if (const auto error = started.get()) {
        throw NSError(*error);
    }
}

ServiceAnswer ServiceSupervisor::perform(bridge::HostMessage message) {
    // Held by both sides: this one may go on while the other still tells of the value.
    const auto promise = std::make_shared<std::promise<ServiceAnswer>>();
    auto answer = promise->get_future();
    post({std::move(message), 0,
          [promise](const ServiceAnswer& given) { promise->set_value(given); }});
    return answer.get();
}

void ServiceSupervisor::post(ServiceCommand command) {
    {
        const std::scoped_lock lock(mutex_);
        commands_.push_back(std::move(command));
    }
    wake();
}

void ServiceSupervisor::wake() const {
    // Full is as good as raised.
    static_cast<void>(eventfd_write(wakeup_.get(), 1));
}

void ServiceSupervisor::fallAsleep() const {
    eventfd_t count = 0;
    static_cast<void>(eventfd_read(wakeup_.get(), &count));
}

void ServiceSupervisor::rest() const {
    const auto until = std::chrono::steady_clock::now() + limits_.rest;
    pollfd wakeup{wakeup_.get(), POLLIN, 0};
    while (!isStopping() && std::chrono::steady_clock::now() < until) {
        fallAsleep();
        poll(&wakeup, 1, static_cast<int>(limits_.tick.count()));
    }
}

std::deque<ServiceCommand> ServiceSupervisor::takeCommands() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(commands_, {});
}

void ServiceSupervisor::supervise() {
    pthread_setname_np(pthread_self(), "orvalo-effect");
    while (!isStopping() && runOnce()) {
    }
    while (!isStopping()) {
        fallAsleep();
        remember(takeCommands());
        pollfd wakeup{wakeup_.get(), POLLIN, 0};
        poll(&wakeup, 1, -1);
    }
    remember(takeCommands());
}

bool ServiceSupervisor::runOnce() {
    std::optional<ServiceRun> run;
    try {
        run.emplace(ServiceRun::Surroundings{order_, limits_, render_, pluginUI_, last_});
    } catch (const NSError& error) {
        if (wasReady_) {
            const bool goesOn =
                takeDeath("could not be started again (" + error.localizedDescription() + ")", "");
            if (goesOn) {
                // What is short now may not be in a while.
                rest();
            }
            return goesOn;
        }
        return takeRefusal("The plug-in <" + order_.uri +
                           "> cannot be used: " + error.localizedDescription() + ".");
    }
    ++process_;
    bool isReady = false;
    while (!isStopping() && !run->refusal() && run->turn(wakeup_.get())) {
        fallAsleep();
        if (run->isReady()) {
            if (!std::exchange(isReady, true)) {
                becomeReady();
            }
            sendCommands(*run);
        }
    }
    if (isStopping()) {
        return false;
    }
    auto end = run->finish();
    const auto refusal = run->refusal();
    // Nothing of the process is left when others hear of its end.
    run.reset();
    if (isReady) {
        pluginUI_.post(ServiceLost{});
    }
    return takeEnd(std::move(end), refusal);
}

void ServiceSupervisor::becomeReady() {
    wasReady_ = true;
    pluginUI_.post(ServiceReady{process_});
    if (started_) {
        std::exchange(started_, {})->set_value({});
    }
}

void ServiceSupervisor::sendCommands(ServiceRun& run) {
    for (auto& command : takeCommands()) {
        if (command.process == 0 || command.process == process_) {
            run.send(std::move(command));
        }
    }
}

bool ServiceSupervisor::takeEnd(ServiceRun::End end, const std::optional<std::string>& refusal) {
    {
        const std::scoped_lock lock(mutex_);
        commands_.insert(commands_.begin(), std::make_move_iterator(end.repeatable.begin()),
                         std::make_move_iterator(end.repeatable.end()));
    }
    bool isLast = false;
    if (!refusal) {
        isLast = !takeDeath(end.what, end.lastMessage);
    } else if (wasReady_) {
        isLast = !takeDeath("could not be made again (" + *refusal + ")", "");
    } else {
        isLast = !takeRefusal(*refusal);
    }
    // Only now, that who waited for them finds the reason in the log.
    for (const auto& command : end.lost) {
        if (command.completion) {
            command.completion({ServiceAnswer::Kind::died, ""});
        }
    }
    return !isLast;
}

bool ServiceSupervisor::takeRefusal(const std::string& why) {
    hasGivenUp_.store(true, std::memory_order_release);
    std::exchange(started_, {})
        ->set_value(
            NSError("LV2", static_cast<std::int64_t>(LV2ErrorCode::instantiationFailed), why));
    return false;
}

bool ServiceSupervisor::takeDeath(const std::string& what, const std::string& lastMessage) {
    const auto saying = lastMessage.empty() ? std::string() : " It last said: " + lastMessage;
    const bool isLast = !policy_.mayRestartAfterDeath(RestartPolicy::Clock::now());
    if (isLast && !wasReady_) {
        return takeRefusal("The plug-in <" + order_.uri + "> cannot be used: it died " +
                           inWords(limits_.deaths, limits_.window) + "; at last it " + what + "." +
                           saying);
    }
    const char* next = "";
    if (!isLast) {
        next = wasReady_ ? "; it is started again with its last state" : "; it is started again";
    }
    g_warning("The effect <%s> %s%s.%s", order_.uri.c_str(), what.c_str(), next, saying.c_str());
    if (isLast) {
        giveUp();
    }
    return !isLast;
}

void ServiceSupervisor::giveUp() {
    // Said before anybody can see it.
    g_warning(
        "The effect <%s> died %s and is not started again; its input passes through unchanged.",
        order_.uri.c_str(), inWords(limits_.deaths, limits_.window).c_str());
    hasGivenUp_.store(true, std::memory_order_release);
    pluginUI_.post(ServiceGivenUp{});
    render_.giveUp();
}

void ServiceSupervisor::remember(const std::deque<ServiceCommand>& commands) {
    for (const auto& command : commands) {
        if (command.completion) {
            command.completion({ServiceAnswer::Kind::remembered, ""});
        }
    }
}

}  // namespace orvalo
