#pragma once

#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "platform/foundation/loading/URLSession.h"

namespace orvalo::testing {

/// The result of a load of the shared session.
struct Loaded {
    URLResult result;
    std::thread::id thread;  ///< The completion's thread.

    bool isContents() const { return std::holds_alternative<URLContents>(result); }
    const Data& data() const { return std::get<URLContents>(result).data; }
    std::string text() const { return {data().begin(), data().end()}; }
    const NSError& error() const { return std::get<NSError>(result); }
    const URLResponse& response() const { return *std::get<URLContents>(result).response; }
    /// -1 when the response is not of a web server.
    std::int64_t status() const {
        const auto* http = dynamic_cast<const HTTPURLResponse*>(&response());
        return http ? http->statusCode : -1;
    }
};

inline Loaded load(const URLRequest& request) {
    // Shared, because the completion may outlive this function.
    const auto promise = std::make_shared<std::promise<Loaded>>();
    auto future = promise->get_future();
    URLSession::shared()->data(request, [promise](URLResult result) {
        promise->set_value({std::move(result), std::this_thread::get_id()});
    });
    return future.get();
}

inline Loaded load(const std::string& address, double timeoutInterval = 60) {
    return load(URLRequest{.url = URL::string(address), .timeoutInterval = timeoutInterval});
}

}  // namespace orvalo::testing
