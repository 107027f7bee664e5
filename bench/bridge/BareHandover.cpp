#include "bench/bridge/BareHandover.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <new>
#include <system_error>

#include "platform/audio/bridge/wire/Futex.h"

namespace orvalo::bench {

namespace {

Futex::Deadline never() {
    return std::chrono::steady_clock::now() + std::chrono::hours(1);
}

}  // namespace

BareHandover::BareHandover() {
    void* memory =
        mmap(nullptr, sizeof(Words), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::system_error(errno, std::generic_category(), "mmap");
    }
    words_ = new (memory) Words{};
    process_ = fork();
    if (process_ < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (process_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        answer(*words_);
    }
}

BareHandover::~BareHandover() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    munmap(words_, sizeof(Words));
}

void BareHandover::run() noexcept {
    const auto number = words_->request.load() + 1;
    words_->request.store(number);
    Futex::wake(words_->request);
    while (words_->response.load() != number) {
        Futex::wait(words_->response, number - 1, never());
    }
}

void BareHandover::answer(Words& words) noexcept {
    for (std::uint32_t answered = 0;;) {
        const auto request = words.request.load();
        if (request == answered) {
            Futex::wait(words.request, answered, never());
            continue;
        }
        answered = request;
        words.response.store(answered);
        Futex::wake(words.response);
    }
}

}  // namespace orvalo::bench
