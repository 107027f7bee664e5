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
        throw NSError::posix(errno, "The event descriptor of an effect service");
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
        throw NSError::posix(error.code().value(), "The supervisor thread of an effect service");
    }
    if (const auto error = started.get()) {
        throw NSError(*error);
    }
}

// The life of the services.

void ServiceSupervisor::supervise() {
    pthread_setname_np(pthread_self(), "orvalo-effect");
    do {
        policy_.forgetDeaths();
        while (!isStopping() && runService()) {
        }
    } while (awaitRestart());
    refuseCommands();
}

bool ServiceSupervisor::awaitRestart() {
    while (!isStopping()) {
        if (!hasGivenUp()) {
            return true;
        }
        refuseCommands();
        pollfd wakeup{wakeup_.get(), POLLIN, 0};
        poll(&wakeup, 1, -1);
        drainWakeups();
    }
    return false;
}

bool ServiceSupervisor::runService() {
    std::optional<ServiceRun> run;
    try {
        run.emplace(ServiceRun::Surroundings{order_, limits_, render_, pluginUI_, last_});
    } catch (const NSError& error) {
        return handleFailedStart(error.localizedDescription());
    }
    ++process_;
    const bool becameReady = serve(*run);
    if (isStopping()) {
        return false;
    }
    const auto end = run->finish();
    const auto refusal = run->refusal();
    // Releases everything of the service before its end is announced.
    run.reset();
    if (becameReady) {
        pluginUI_.post(ServiceLost{});
    }
    return handleEnd(end, refusal);
}

bool ServiceSupervisor::serve(ServiceRun& run) {
    bool becameReady = false;
    while (!isStopping() && !run.refusal() && run.handleEvents(wakeup_.get())) {
        drainWakeups();
        if (run.isReady()) {
            if (!std::exchange(becameReady, true)) {
                announceReady(run);
            }
            if (!sendCommands(run)) {
                run.replace();
                break;
            }
        }
    }
    return becameReady;
}

void ServiceSupervisor::announceReady(const ServiceRun& run) {
    wasReady_ = true;
    pluginUI_.post(ServiceReady{process_, run.sharedAudio()});
    if (started_) {
        std::exchange(started_, {})->set_value({});
    }
}

bool ServiceSupervisor::handleFailedStart(const std::string& error) {
    if (!wasReady_) {
        failStart("The plug-in <" + order_.uri + "> cannot be used: " + error + ".");
        return false;
    }
    const bool restarts = handleDeath("could not be started again (" + error + ")", "");
    if (restarts) {
        // The system may only be short of a resource for a moment.
        waitBeforeRetry();
    }
    return restarts;
}

bool ServiceSupervisor::handleEnd(const ServiceRun::End& end,
                                  const std::optional<std::string>& refusal) {
    {
        const std::scoped_lock lock(mutex_);
        commands_.insert(commands_.begin(), end.repeatable.begin(), end.repeatable.end());
    }
    bool restarts = false;
    if (end.failedToConfine) {
        restarts = true;
    } else if (!refusal) {
        restarts = handleDeath(end.what, end.lastMessage, end.isDeath);
    } else if (wasReady_) {
        restarts = handleDeath("could not be instantiated again (" + *refusal + ")", "");
    } else {
        failStart(*refusal);
    }
    // After the log line, so that the line precedes the senders' answers.
    for (const auto& command : end.lost) {
        if (command.completion) {
            command.completion({ServiceAnswer::Kind::died, ""});
        }
    }
    return restarts;
}

bool ServiceSupervisor::handleDeath(const std::string& what, const std::string& lastMessage,
                                    bool isDeath) {
    const auto lastWords = lastMessage.empty() ? "" : " It last said: " + lastMessage;
    const bool restarts = !isDeath || policy_.mayRestartAfterDeath(RestartPolicy::Clock::now());
    if (!restarts && !wasReady_) {
        failStart("The plug-in <" + order_.uri + "> cannot be used: it " + deathsText() +
                  "; at last it " + what + "." + lastWords);
        return false;
    }
    std::string next;
    if (restarts) {
        next = wasReady_ ? "; it is started again with its last state" : "; it is started again";
    }
    g_warning("The effect <%s> %s%s.%s", order_.uri.c_str(), what.c_str(), next.c_str(),
              lastWords.c_str());
    if (!restarts) {
        giveUp();
    }
    return restarts;
}

void ServiceSupervisor::failStart(const std::string& error) {
    hasGivenUp_.store(true, std::memory_order_release);
    const auto code = static_cast<std::int64_t>(LV2ErrorCode::instantiationFailed);
    std::exchange(started_, {})->set_value(NSError("LV2", code, error));
}

void ServiceSupervisor::giveUp() {
    g_warning(
        "The effect <%s> %s and is not started again until playback starts or its UI is shown; "
        "playback goes on dry.",
        order_.uri.c_str(), deathsText().c_str());
    const std::scoped_lock lock(mutex_);
    hasGivenUp_.store(true, std::memory_order_release);
    pluginUI_.post(ServiceGivenUp{});
    render_.setGivenUp(true);
}

void ServiceSupervisor::restart() {
    {
        const std::scoped_lock lock(mutex_);
        if (!hasGivenUp()) {
            return;
        }
        hasGivenUp_.store(false, std::memory_order_release);
        pluginUI_.post(ServiceLost{});
        render_.setGivenUp(false);
    }
    wake();
}

std::string ServiceSupervisor::deathsText() const {
    return "died " + std::to_string(limits_.deaths) + " times within " +
           durationText(limits_.window);
}

// Commands.

ServiceAnswer ServiceSupervisor::perform(bridge::HostMessage message) {
    // Shared, because the caller may return while set_value() is still running.
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

std::deque<ServiceCommand> ServiceSupervisor::takeCommands() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(commands_, {});
}

bool ServiceSupervisor::sendCommands(ServiceRun& run) {
    auto commands = takeCommands();
    while (!commands.empty()) {
        auto& command = commands.front();
        if (command.process == 0 || command.process == process_) {
            if (!run.canTake(command)) {
                const std::scoped_lock lock(mutex_);
                commands_.insert(commands_.begin(), std::make_move_iterator(commands.begin()),
                                 std::make_move_iterator(commands.end()));
                return false;
            }
            run.send(std::move(command));
        }
        commands.pop_front();
    }
    return true;
}

void ServiceSupervisor::refuseCommands() {
    std::deque<ServiceCommand> refused;
    {
        const std::scoped_lock lock(mutex_);
        // After restart() the next service gets them.
        if (hasGivenUp() || isStopping()) {
            refused.swap(commands_);
        }
    }
    for (const auto& command : refused) {
        if (command.completion) {
            command.completion({ServiceAnswer::Kind::noService, ""});
        }
    }
}

// Waiting.

void ServiceSupervisor::wake() const {
    // When the write fails because the counter is full, the descriptor is readable anyway.
    static_cast<void>(eventfd_write(wakeup_.get(), 1));
}

void ServiceSupervisor::drainWakeups() const {
    eventfd_t count = 0;
    static_cast<void>(eventfd_read(wakeup_.get(), &count));
}

void ServiceSupervisor::waitBeforeRetry() const {
    const auto until = std::chrono::steady_clock::now() + limits_.retryDelay;
    pollfd wakeup{wakeup_.get(), POLLIN, 0};
    while (!isStopping() && std::chrono::steady_clock::now() < until) {
        poll(&wakeup, 1, static_cast<int>(limits_.tick.count()));
        drainWakeups();
    }
}

}  // namespace orvalo
