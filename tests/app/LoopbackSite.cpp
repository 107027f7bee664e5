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

const std::string makersSite = testing::loopbackSite().address("");
const bool isSiteConfigured = true;

}  // namespace orvalo
