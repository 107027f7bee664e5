#include "programs/defaults/format/XMLForm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "tests/programs/defaults/FormFixtures.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string plist(const std::string& content) {
    return "<plist version=\"1.0\">" + content + "</plist>";
}

std::string domainTrouble(const std::string& text) {
    return trouble([&] { xmlDomain(text); });
}

/// The value of one element, in a domain of one key.
PropertyList element(const std::string& content) {
    return xmlDomain(plist("<dict><key>k</key>" + content + "</dict>")).at("k");
}

TEST(XMLForm, EveryKindComesBackAsItWas) {
    EXPECT_EQ(xmlDomain(xmlText(everyKind())), everyKind());
    const auto strange = xmlDomain(xmlText({{"k", std::nan("")}})).at("k");
    EXPECT_TRUE(strange.as<double>() != nullptr && std::isnan(*strange.as<double>()));
}

TEST(XMLForm, IsTheUsualDocument) {
    EXPECT_EQ(xmlText({{"a<", "b&]]>"},
                       {"list", List{1, 1.0, true, false, Data{1}, PropertyList::Date{}}},
                       {"none", Dictionary{}}}),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>a&lt;</key>
	<string>b&amp;]]&gt;</string>
	<key>list</key>
	<array>
		<integer>1</integer>
		<real>1</real>
		<true/>
		<false/>
		<data>AQ==</data>
		<date>1970-01-01T00:00:00Z</date>
	</array>
	<key>none</key>
	<dict>
	</dict>
</dict>
</plist>
)");
}

TEST(XMLForm, InfinityHasItsUsualNameAndSign) {
    const auto infinity = std::numeric_limits<double>::infinity();
    const auto text = xmlText({{"k", List{infinity, -infinity}}});
    EXPECT_THAT(text, HasSubstr("<real>+infinity</real>\n\t\t<real>-infinity</real>"));
}

TEST(XMLForm, WhatXMLCannotCarryIsRefused) {
    const std::string end = "; JSON can.";
    EXPECT_EQ(trouble([] {
                  xmlText({{"k", "a\x1b"}});
              }),
              "'k': XML cannot carry the character '\\u001b'" + end);
    EXPECT_EQ(trouble([] {
                  xmlText({{"k", List{Dictionary{{"x\x01", 1}}}}});
              }),
              "'x\\u0001': XML cannot carry the character '\\u0001'" + end);
    EXPECT_EQ(trouble([] {
                  xmlText({{"k", "\uFFFE"}});
              }),
              "'k': XML cannot carry the character '\uFFFE'" + end);
    EXPECT_EQ(trouble([] {
                  xmlText({{"k", "\uFFFF"}});
              }),
              "'k': XML cannot carry the character '\uFFFF'" + end);
    EXPECT_EQ(trouble([] {
                  xmlText({{"k", std::string("a\0b", 3)}});
              }),
              "'k': XML cannot carry the character '\\u0000'" + end);
    EXPECT_EQ(trouble([] { xmlText({{"k", "\x7f\u0080\t\n\r"}}); }), "no error");
}

TEST(XMLForm, OtherWritersAreUnderstood) {
    EXPECT_EQ(element("<string>a&#10;b<![CDATA[<c>]]>&quot;&apos;</string>"),
              PropertyList("a\nb<c>\"'"));
    EXPECT_EQ(element("<string/>"), PropertyList(""));
    EXPECT_EQ(element("<string>a\r\nb\rc&#13;</string>"), PropertyList("a\nb\nc\r"));
    EXPECT_EQ(element("<integer> +5\r\n</integer>"), PropertyList(5));
    EXPECT_EQ(element("<real>1e3</real>"), PropertyList(1000.0));
    EXPECT_EQ(element("<real> 1.5\n</real>"), PropertyList(1.5));
    EXPECT_EQ(element("<date>\t1970-01-01T00:00:00Z </date>"), PropertyList(PropertyList::Date{}));
    EXPECT_EQ(element("<true></true>"), PropertyList(true));
    EXPECT_EQ(element("<false>\n</false>"), PropertyList(false));
    EXPECT_EQ(element("<data>\n\tAQ\n\t==\n</data>"), PropertyList(Data{1}));
    EXPECT_EQ(element("<!-- a --><array/>"), PropertyList(List{}));
    EXPECT_EQ(xmlDomain("\xEF\xBB\xBF<?xml version='1.0'?>\n" + plist(" <dict/> ") + "\n"),
              Dictionary{});
}

TEST(XMLForm, WhatIsNoDomainIsRefused) {
    EXPECT_EQ(domainTrouble(plist("<array/>")), "it holds no dictionary of keys and values.");
    EXPECT_EQ(domainTrouble(plist("")), "there is no value.");
    EXPECT_EQ(domainTrouble(plist("<dict/>\n<dict/>")),
              "line 2: there is more than one value at the top.");
    EXPECT_THAT(domainTrouble(""), HasSubstr("line 1"));
    EXPECT_EQ(domainTrouble("<dict/>"), "line 1: <dict> stands outside of the element plist.");
    EXPECT_THAT(domainTrouble(plist("<dict/>") + plist("<dict/>")), StartsWith("line 1: "));
}

TEST(XMLForm, TroubleIsNamedWithItsLine) {
    const auto inside = [](const std::string& content) {
        return domainTrouble("<plist>\n<dict>\n" + content + "\n</dict></plist>");
    };
    const std::vector<std::pair<std::string, std::string>> troubles{
        {"<foo/>", "line 3: <foo> is no element of a property list."},
        {"<key>a</key><integer>12abc</integer>", "line 3: 'a': '12abc' is no value of <integer>."},
        {"<key>a</key><integer>9223372036854775808</integer>",
         "line 3: 'a': '9223372036854775808' is no value of <integer>."},
        {"<key>a</key><date>2001</date>", "line 3: 'a': '2001' is no value of <date>."},
        {"<key>a</key><data>?</data>", "line 3: 'a': '?' is no value of <data>."},
        {"<key>a</key><real>x</real>", "line 3: 'a': 'x' is no value of <real>."},
        {"<key>a</key><true>1</true>", "line 3: 'a': '1' is no value of <true>."},
        {"<key>a</key>\n<key>b</key>", "line 4: 'a': the key has no value."},
        {"<key>a</key>", "line 4: 'a': the key has no value."},
        {"<true/>", "line 3: a value has no key."},
        {"<array/>", "line 3: a value has no key."},
        {"<key>a</key><array><key>b</key></array>",
         "line 3: 'a', element 1: a key stands outside of a dictionary."},
        {"<key>a</key><true/><key>a</key><true/>", "line 3: the key 'a' stands twice."},
        {"<key>a</key>text<true/>",
         "line 3: 'a': the text 'text' stands in no element of its own."},
        {"<key>a<true/></key>", "line 3: <true> stands in the text of another element."}};
    for (const auto& [content, line] : troubles) {
        EXPECT_EQ(inside(content), line);
    }
    for (const auto* content : {"<key>a</string>", "<key>&lol;</key>"}) {
        EXPECT_THAT(inside(content), StartsWith("line 3: "));
    }
    EXPECT_THAT(domainTrouble("<plist>\n<dict>"), StartsWith("line 2: "));
    EXPECT_LT(inside("<" + std::string(100'000, 'x') + "/>").size(), 250U);
}

TEST(XMLForm, BytesThatAreNoTextAreNamedWithTheirLineAlone) {
    const CapturedOutput errors(2);
    for (const std::string bad :
         {"<key>\xff</key>", "<intM\xcbger>0</integer>", "<!-- \xff -->", "<key>\xed\xa0\x80</key>",
          "<string><![CDATA[<a\xff]]></string><string>a</string></dict></dict>"}) {
        EXPECT_EQ(domainTrouble("<plist>\r\n<dict>\r\n" + bad + "</dict></plist>"),
                  "line 3: it is not UTF-8 or holds a NUL.")
            << bad;
    }
    EXPECT_EQ(domainTrouble(std::string("<plist>\n\0</plist>", 17)),
              "line 2: it is not UTF-8 or holds a NUL.");
    EXPECT_EQ(errors.text(), "");
}

TEST(XMLForm, NestingHasAnEnd) {
    const auto nested = [](std::size_t depth) {
        std::string text;
        for (std::size_t count = 0; count < depth; ++count) {
            text += "<array>";
        }
        for (std::size_t count = 0; count < depth; ++count) {
            text += "</array>";
        }
        return domainTrouble(plist("<dict><key>k</key>" + text + "</dict>"));
    };
    EXPECT_EQ(nested(256), "no error");
    EXPECT_THAT(nested(257), HasSubstr("nested too deeply."));
}

}  // namespace
}  // namespace orvalo::testing
