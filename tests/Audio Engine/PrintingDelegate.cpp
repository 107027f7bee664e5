#include "tests/Audio Engine/PrintingDelegate.h"

#include "platform/foundation/Print.h"
#include "platform/foundation/RunLoop.h"

namespace orvalo::testing {

namespace {

thread_local std::string threadName;

void say(const std::string& notification) {
    std::string where = threadName;
    if (where.empty()) {
        where = RunLoop::isMainThread() ? "main" : "global";
    }
    print("[" + where + "] " + notification);
}

}  // namespace

void PrintingDelegate::nameThisThread(const std::string& name) {
    threadName = name;
}

void PrintingDelegate::onPlayerStateChanged(bool playing) {
    say(std::string("onPlayerStateChanged(playing: ") + (playing ? "true" : "false") + ")");
}

void PrintingDelegate::onFileSelect(const std::string& file) {
    say("onFileSelect(file: " + file + ")");
}

void PrintingDelegate::onLoop(std::int64_t count) {
    say("onLoop(count: " + std::to_string(count) + ")");
}

void PrintingDelegate::onFoundComponent(const std::shared_ptr<AVAudioUnit>& unit) {
    {
        const std::lock_guard lock(mutex_);
        found_ = unit;
    }
    say(unit ? "onFoundComponent(unit: present)" : "onFoundComponent(unit: absent)");
}

std::shared_ptr<AVAudioUnit> PrintingDelegate::found() const {
    const std::lock_guard lock(mutex_);
    return found_;
}

void PrintingDelegate::onEngineInitialized() {
    say("onEngineInitialized()");
}

}  // namespace orvalo::testing
