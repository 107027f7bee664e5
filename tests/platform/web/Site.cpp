#include "tests/platform/web/Site.h"

#include <utility>

namespace orvalo::testing {

Page titled(const std::string& title, const std::string& body) {
    return {.content = "<!DOCTYPE html><title>" + title + "</title><body>" + body};
}

Page redirection(const std::string& path) {
    return {.status = 302, .headers = "Location: " + path + "\r\n"};
}

Site::Site(std::map<std::string, Page> pages)
    : pages_(std::move(pages)), server_([this](const auto& request, const auto& connection) {
          serve(request.path, connection);
      }) {}

void Site::serve(const std::string& path, const LoopbackServer::Connection& connection) const {
    const auto found = pages_.find(path);
    if (found == pages_.end()) {
        connection.answer(404, "text/plain", "");
        return;
    }
    const auto& page = found->second;
    switch (page.manner) {
        case Page::Manner::whole:
            connection.answer(page.status, page.type, page.content, page.headers);
            break;
        case Page::Manner::never:
            connection.waitForEnd();
            break;
        case Page::Manner::half:
            connection.send("HTTP/1.1 200 Answer\r\nContent-Type: " + page.type +
                            "\r\nContent-Length: " + std::to_string(2 * page.content.size()) +
                            "\r\n\r\n" + page.content);
            connection.waitForEnd();
            break;
        case Page::Manner::broken:
            break;
    }
}

}  // namespace orvalo::testing
