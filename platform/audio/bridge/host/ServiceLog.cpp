#include "platform/audio/bridge/host/ServiceLog.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/audio/bridge/host/PlainText.h"

namespace orvalo {

namespace {

constexpr std::size_t kPiece = 4096;
constexpr int kPiecesAtOnce = 8;
constexpr int kPiecesAtEnd = 256;
constexpr std::size_t kLongestLine = 2000;

}  // namespace

void ServiceLog::read(Clock::time_point now) {
    for (int piece = 0; piece < kPiecesAtOnce && readSome(now); ++piece) {
    }
}

void ServiceLog::finish(Clock::time_point now) {
    for (int piece = 0; piece < kPiecesAtEnd && readSome(now); ++piece) {
    }
    endLine(now);
    logOmitted();
}

bool ServiceLog::readSome(Clock::time_point now) {
    if (!pipe_) {
        return false;
    }
    std::array<char, kPiece> piece{};
    const auto count = ::read(pipe_.get(), piece.data(), piece.size());
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
        pipe_ = FileDescriptor();
    }
    if (count <= 0) {
        return false;
    }
    for (std::string_view rest(piece.data(), static_cast<std::size_t>(count)); !rest.empty();) {
        const auto end = std::min(rest.find('\n'), rest.size());
        // Twice the limit, so that plainText() and not this line cuts between characters.
        line_.append(rest.substr(0, std::min(end, 2 * kLongestLine - line_.size())));
        if (end == rest.size()) {
            break;
        }
        endLine(now);
        rest.remove_prefix(end + 1);
    }
    return true;
}

void ServiceLog::endLine(Clock::time_point now) {
    auto text = plainText(line_, kLongestLine);
    line_.clear();
    if (text.empty()) {
        return;
    }
    if (now - secondBegan_ >= std::chrono::seconds(1)) {
        logOmitted();
        secondBegan_ = now;
        linesThisSecond_ = 0;
    }
    if (linesThisSecond_ < linesPerSecond_) {
        ++linesThisSecond_;
        const auto name = "<" + uri_ + ">: ";
        // The plug-in's own messages carry the URI already.
        g_message("%s%s", text.starts_with(name) ? "" : name.c_str(), text.c_str());
    } else {
        ++omitted_;
    }
    lastMessage_ = std::move(text);
}

void ServiceLog::logOmitted() {
    if (omitted_ > 0) {
        g_warning("The effect <%s> exceeds the limit of log lines; %u lines are left out.",
                  uri_.c_str(), omitted_);
        omitted_ = 0;
    }
}

}  // namespace orvalo
