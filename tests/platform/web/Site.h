#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/testing/LoopbackServer.h"

namespace orvalo::testing {

/// The response of a path.
struct Page {
    enum class Manner {
        whole,   ///< The content with its length.
        never,   ///< No response; the connection stays open.
        half,    ///< The content without its end.
        broken,  ///< No response; the connection is closed.
    };

    std::string content{};
    std::string type = "text/html";
    int status = 200;
    std::string headers{};
    Manner manner = Manner::whole;
};

/// A page with a title, by which the tests identify it, and a body.
Page titled(const std::string& title, const std::string& body = "");
/// A redirection to another path.
Page redirection(const std::string& path);

/// A web site of a few paths. Other paths have status 404.
class Site {
  public:
    explicit Site(std::map<std::string, Page> pages);

    std::string address(const std::string& path) const { return server_.address(path); }
    /// The requested paths in order.
    std::vector<std::string> requested() const { return server_.requestedPaths(); }

  private:
    void serve(const std::string& path, const LoopbackServer::Connection& connection) const;

    const std::map<std::string, Page> pages_;
    LoopbackServer server_;
};

}  // namespace orvalo::testing
