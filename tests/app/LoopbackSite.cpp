#include "tests/app/LoopbackSite.h"

#include "app/Site.h"

namespace orvalo {

namespace testing {

Site& loopbackSite() {
    static Site site{{{"/", titled("Information",
                                   "<a href='/new' target='_blank'>new</a>"
                                   "<script>document.querySelector('a').click()</script>")},
                      {"/DYNAMICS/", titled("Help", "<h1>Help</h1>")}}};
    return site;
}

}  // namespace testing

namespace {

std::string loopbackAddress() {
    auto address = testing::loopbackSite().address("/");
    address.pop_back();
    return address;
}

}  // namespace

const std::string makersSite = loopbackAddress();
const bool isSiteConfigured = true;

}  // namespace orvalo
