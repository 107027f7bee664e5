#include "bench/startup/Bundles.h"

#include <fstream>
#include <string>

namespace orvalo::bench {

namespace {

constexpr auto kManifest = R"(@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .

<urn:example:effect:NUMBER>
	a lv2:Plugin ,
		lv2:FilterPlugin ;
	lv2:binary <effect.so> ;
	rdfs:seeAlso <effect.ttl> .
)";

constexpr auto kHead = R"(@prefix doap: <http://usefulinc.com/ns/doap#> .
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .

<urn:example:effect:NUMBER>
	a lv2:Plugin ,
		lv2:FilterPlugin ;
	doap:name "Effect NUMBER" ;
	doap:license <http://opensource.org/licenses/isc> ;
	lv2:optionalFeature lv2:hardRTCapable ;
	lv2:port [
		a lv2:InputPort ,
			lv2:AudioPort ;
		lv2:index 0 ;
		lv2:symbol "in" ;
		lv2:name "In"
	] , [
		a lv2:OutputPort ,
			lv2:AudioPort ;
		lv2:index 1 ;
		lv2:symbol "out" ;
		lv2:name "Out"
	])";

constexpr auto kControl = R"( , [
		a lv2:InputPort ,
			lv2:ControlPort ;
		lv2:index NUMBER ;
		lv2:symbol "control_NUMBER" ;
		lv2:name "Control NUMBER" ;
		lv2:default 0.5 ;
		lv2:minimum 0.0 ;
		lv2:maximum 1.0
	])";

constexpr int kFirstControl = 2;
constexpr int kPorts = 10;

std::string numbered(std::string text, int number) {
    const std::string mark = "NUMBER";
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
        text.replace(at, mark.size(), std::to_string(number));
    }
    return text;
}

}  // namespace

void makeBundles(const std::filesystem::path& folder, int count) {
    for (int number = 0; number < count; ++number) {
        const auto bundle = folder / ("effect-" + std::to_string(number) + ".lv2");
        std::filesystem::create_directories(bundle);
        std::ofstream(bundle / "manifest.ttl") << numbered(kManifest, number);
        std::ofstream data(bundle / "effect.ttl");
        data << numbered(kHead, number);
        for (int port = kFirstControl; port < kPorts; ++port) {
            data << numbered(kControl, port);
        }
        data << " .\n";
    }
}

}  // namespace orvalo::bench
