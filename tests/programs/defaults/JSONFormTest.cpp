#include "programs/defaults/format/JSONForm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/programs/defaults/FormFixtures.h"

namespace orvalo::testing {
namespace {

using ::testing::StartsWith;

std::string domainError(const std::string& text) {
    return errorOf([&] { jsonDomain(text); });
}

TEST(JSONForm, EveryKindIsReadAsItWasWritten) {
    const auto domain = everyKind();
    EXPECT_EQ(jsonDomain(jsonText(domain)), domain);
    EXPECT_EQ(jsonValue(jsonText(PropertyList(domain))), PropertyList(domain));
    for (const auto& [key, value] : domain) {
        EXPECT_EQ(jsonValue(jsonText(value)), value) << key;
    }
    const auto strange = jsonValue(jsonText(PropertyList(std::nan(""))));
    EXPECT_TRUE(strange.as<double>() != nullptr && std::isnan(*strange.as<double>()));
}

TEST(JSONForm, ADomainIsNeverAForm) {
    const Dictionary domain{{"$date", "2026-11-21T08:30:00Z"}};
    EXPECT_EQ(jsonText(domain), "{\n  \"$date\": \"2026-11-21T08:30:00Z\"\n}");
    EXPECT_EQ(jsonDomain(jsonText(domain)), domain);
}

TEST(JSONForm, TheDeepestValueOfTheStoreIsReadAsItWasWritten) {
    const Dictionary domain{{"deep", deepestValue()}};
    EXPECT_EQ(jsonDomain(jsonText(domain)), domain);
}

TEST(JSONForm, EveryKindHasItsText) {
    EXPECT_EQ(jsonText(PropertyList(true)), "true");
    EXPECT_EQ(jsonText(PropertyList(-5)), "-5");
    EXPECT_EQ(jsonText(PropertyList(5.0)), "5.0");
    EXPECT_EQ(jsonText(PropertyList(-0.0)), "-0.0");
    EXPECT_EQ(jsonText(PropertyList(1e300)), "1e+300");
    EXPECT_EQ(jsonText(PropertyList("é\"\\\n")), R"("é\"\\\n")");
    EXPECT_EQ(jsonText(PropertyList(std::numeric_limits<double>::infinity())),
              "{\n  \"$real\": \"inf\"\n}");
    EXPECT_EQ(jsonText(PropertyList(Data{0xFB, 0xFF})), "{\n  \"$data\": \"+/8=\"\n}");
    EXPECT_EQ(jsonText(PropertyList(PropertyList::Date{})),
              "{\n  \"$date\": \"1970-01-01T00:00:00Z\"\n}");
    EXPECT_EQ(jsonText(PropertyList(Dictionary{{"$x", 1}})),
              "{\n  \"$dictionary\": {\n    \"$x\": 1\n  }\n}");
    EXPECT_EQ(jsonText(PropertyList(List{1, List{}, Dictionary{}})), "[\n  1,\n  [],\n  {}\n]");
}

TEST(JSONForm, ControlCharactersAreEscaped) {
    const std::string text = "\x01\x1b[2J\x7f\u0080\u009b\u00a0\n";
    EXPECT_EQ(jsonText(PropertyList(text)), "\"\\u0001\\u001b[2J\\u007f\\u0080\\u009b\u00a0\\n\"");
    EXPECT_EQ(jsonValue(jsonText(PropertyList(text))), PropertyList(text));
}

TEST(JSONForm, NumbersWithoutPointAndExponentAreIntegers) {
    EXPECT_EQ(jsonValue("5"), PropertyList(5));
    EXPECT_EQ(jsonValue("5.0"), PropertyList(5.0));
    EXPECT_EQ(jsonValue("5e0"), PropertyList(5.0));
    EXPECT_EQ(jsonValue("5E0"), PropertyList(5.0));
    EXPECT_EQ(jsonValue("-9223372036854775808"), PropertyList(INT64_MIN));
    EXPECT_EQ(errorOf([] { jsonValue("9223372036854775808"); }),
              "the number 9223372036854775808 has more than 64 bits.");
    EXPECT_EQ(jsonValue("99999999999999999999999"), PropertyList(1e23));
    EXPECT_EQ(errorOf([] { jsonValue("1e400"); }), "number overflow parsing '1e400'.");
}

TEST(JSONForm, TextThatIsNotJSONIsRefusedWithItsLine) {
    EXPECT_THAT(domainError(""), StartsWith("line 1, column 1: "));
    EXPECT_THAT(domainError("{\n  \"a\": 1,\n}"), StartsWith("line 3, column 1: "));
    EXPECT_THAT(domainError("{} {}"), StartsWith("line 1, column 4: "));
    EXPECT_THAT(domainError("{\"a\": 'x'}"), StartsWith("line 1, column 7: "));
    EXPECT_THAT(domainError("{\"\xff\": 1}"), StartsWith("line 1, column 3: "));
    EXPECT_LT(domainError("{\"" + std::string(100'000, 'x') + "\n").size(), 250U);
}

TEST(JSONForm, ValuesOfNoKindAreRefusedWithTheirKey) {
    EXPECT_EQ(domainError(R"({"a": null})"), "'a': null is no value of a domain.");
    EXPECT_EQ(domainError(R"({"a": {"b": [1, null]}})"), "'a': null is no value of a domain.");
    EXPECT_EQ(domainError("[]"), "it holds no object of keys and values.");
    EXPECT_EQ(domainError("5"), "it holds no object of keys and values.");
}

TEST(JSONForm, UnknownFormsAreRefusedWithTheirKey) {
    for (const auto* form : {R"({"$date": "yesterday"})", R"({"$date": 5})", R"({"$data": "?"})",
                             R"({"$real": "1.5x"})", R"({"$real": 1.5})", R"({"$dictionary": []})",
                             R"({"$x": 1})", R"({"$": {}})"}) {
        const auto name = std::string(form).substr(2, std::string(form).find(':') - 3);
        EXPECT_EQ(domainError("{\"a\": [0, " + std::string(form) + "]}"),
                  "'a': this is no form of '" + name + "'; see orvalo-defaults(1).");
    }
    EXPECT_EQ(domainError(R"({"a": {"$dictionary": {"$b": {"$date": 5}}}})"),
              "'a': this is no form of '$date'; see orvalo-defaults(1).");
}

TEST(JSONForm, DeepNestingIsRefused) {
    const auto nested = [](std::size_t depth) {
        return "{\"a\":" + std::string(depth, '[') + std::string(depth, ']') + "}";
    };
    EXPECT_EQ(domainError(nested(200)), "no error");
    EXPECT_EQ(domainError(nested(201)), "it is nested too deeply.");
    EXPECT_EQ(domainError(nested(1'000'000)), "it is nested too deeply.");
}

TEST(JSONForm, DatesKeepTheirMicroseconds) {
    const PropertyList::Date date{std::chrono::seconds(1'700'000'000)};
    for (int fraction = 0; fraction < 1'000'000; fraction += 97) {
        const PropertyList value(date + std::chrono::microseconds(fraction));
        ASSERT_EQ(jsonValue(jsonText(value)), value) << fraction;
    }
}

TEST(JSONForm, ALongQuotationIsCut) {
    EXPECT_EQ(inQuotes("a"), "'a'");
    EXPECT_EQ(inQuotes(std::string(60, 'x')), "'" + std::string(60, 'x') + "'");
    EXPECT_EQ(inQuotes(std::string(61, 'x')), "'" + std::string(60, 'x') + "...'");
}

}  // namespace
}  // namespace orvalo::testing
