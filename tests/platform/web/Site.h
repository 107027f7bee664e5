#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/testing/LoopbackServer.h"

namespace orvalo::testing {

/// What a path of the site answers.
struct Page {
    enum class Manner {
        whole,   ///< The answer, with its length.
        never,   ///< Nothing, and the connection stays open.
        half,    ///< The content without its end.
        broken,  ///< Nothing, and the connection is closed.
    };

    std::string content{};
    std::string type = "text/html";
    int status = 200;
    std::string headers{};
    Manner manner = Manner::whole;
};

/// A page with a title, which is how the tests know it, and a body.
Page titled(const std::string& title, const std::string& body = "");
/// An answer that leads to another path.
Page redirection(const std::string& path);

/// A web site of a few paths; all others answer with status 404.
class Site {
  public:
    explicit Site(std::map<std::string, Page> pages);

    std::string address(const std::string& path) const { return server_.address(path); }
    /// The paths that were asked for, in order.
    std::vector<std::string> requested() const { return server_.requestedPaths(); }

  private:
    void serve(const std::string& path, const LoopbackServer::Connection& connection) const;

    const std::map<std::string, Page> pages_;
    LoopbackServer server_;
};

}  // namespace orvalo::testing
