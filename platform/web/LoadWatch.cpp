#include "platform/web/LoadWatch.h"

#include <utility>

#include "platform/foundation/Timer.h"
#include "platform/foundation/URLRequest.h"
#include "platform/web/WebKit.h"

namespace orvalo {

struct LoadWatch::Signals {
    static void loadChanged(WebKitWebView* /*view*/, WebKitLoadEvent event, gpointer watch) {
        auto* self = static_cast<LoadWatch*>(watch);
        switch (event) {
            case WEBKIT_LOAD_STARTED:
            case WEBKIT_LOAD_REDIRECTED:
                self->address_ = self->announced_;
                self->isCommitted_ = false;
                self->restart();
                break;
            case WEBKIT_LOAD_COMMITTED:
                self->isCommitted_ = true;
                self->restart();
                break;
            case WEBKIT_LOAD_FINISHED:
                self->stop(State::idle);
                break;
        }
    }

    static void progressed(WebKitWebView* /*view*/, GParamSpec* /*property*/, gpointer watch) {
        auto* self = static_cast<LoadWatch*>(watch);
        if (self->state_ == State::counting) {
            self->restart();
        }
    }
};

LoadWatch::LoadWatch(WebKitWebView* view) : view_(view), interval_(URLRequest::defaultTimeout) {
    g_signal_connect(view_, "load-changed", G_CALLBACK(Signals::loadChanged), this);
    g_signal_connect(view_, "notify::estimated-load-progress", G_CALLBACK(Signals::progressed),
                     this);
}

LoadWatch::~LoadWatch() {
    g_signal_handlers_disconnect_by_data(view_, this);
    stop(State::idle);
}

void LoadWatch::setInterval(double seconds) {
    interval_ = seconds;
}

void LoadWatch::announce(std::string address) {
    announced_ = std::move(address);
}

void LoadWatch::pause() {
    if (state_ == State::counting) {
        stop(State::paused);
    }
}

void LoadWatch::resume() {
    if (state_ == State::paused) {
        restart();
    }
}

void LoadWatch::restart() {
    stop(State::counting);
    timer_ = Timer::scheduledTimer(interval_, [this](const auto&) { expire(); });
}

void LoadWatch::stop(State state) {
    state_ = state;
    if (timer_) {
        timer_->invalidate();
        timer_.reset();
    }
}

void LoadWatch::expire() {
    stop(State::idle);
    g_warning("%s sent nothing for %g s; its load was stopped.", address_.c_str(), interval_);
    stopLoading();
}

void LoadWatch::stopEmptyLoad() {
    if (state_ != State::idle && !isCommitted_) {
        stop(State::idle);
        stopLoading();
    }
}

void LoadWatch::stopLoading() {
    lateWebKit(webkit_web_view_stop_loading)(view_);
    if (!isCommitted_ && onStopped) {
        onStopped(address_);
    }
}

}  // namespace orvalo
