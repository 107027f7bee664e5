#include <cstdlib>

#include "app/Site.h"

namespace orvalo {

namespace {

const char* chosenSite() {
    const char* site = std::getenv("ORVALO_TEST_SITE");
    return site == nullptr ? "https://orvalo.example" : site;
}

}  // namespace

const std::string makersSite = chosenSite();
const bool isSiteConfigured = std::getenv("ORVALO_TEST_SITE") != nullptr;

}  // namespace orvalo
