#include "core/support/json.h"

#include <gtest/gtest.h>

namespace corvane {

namespace {

std::string reprinted(const std::string& text) {
    const auto result = JsonValue::parse(text);
    return result.value ? result.value->prettyPrinted() : result.error;
}

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

} // namespace

TEST(Json, NumbersStayAsWritten) {
    for (const char* number :
         {"0", "-0", "7", "-7", "1.0", "-0.0", "1.10", "1E+05", "1e-7", "9223372036854775807",
          "-9223372036854775808", "18446744073709551615", "18446744073709551616",
          "123456789012345678901234567890", "0.1000000000000000055511151231257827"}) {
        EXPECT_EQ(reprinted(number), number);
    }
    EXPECT_EQ(JsonValue::parse("-0").value->integer(), 0);
    EXPECT_EQ(JsonValue::parse("4094").value->integer(), 4094);
    for (const char* other : {"1.0", "1e3", "9223372036854775808", "\"1\"", "true"}) {
        EXPECT_EQ(JsonValue::parse(other).value->integer(), std::nullopt) << other;
    }
}

TEST(Json, PrintsSortedAndIndented) {
    EXPECT_EQ(reprinted(R"({"b":[1,{"é":null}],"a":{},"B":[],"é":true,"z":"x"})"),
              "{\n  \"B\": [],\n  \"a\": {},\n  \"b\": [\n    1,\n    {\n      \"é\": null\n    }\n  ],\n"
              "  \"z\": \"x\",\n  \"é\": true\n}");
}

TEST(Json, StringsAreEscapedNoMoreThanNeeded) {
    EXPECT_EQ(reprinted(R"("\/\u00e9\ud83c\udf9b\u007f\u0001\u001f\b\f\n\r\t\"\\\u0000")"),
              "\"/é🎛\x7F\\u0001\\u001f\\b\\f\\n\\r\\t\\\"\\\\\\u0000\"");
    EXPECT_EQ(JsonValue("a\xFFz").prettyPrinted(), "\"a\uFFFDz\"");
}

TEST(Json, TheLastOfEqualKeysWins) {
    EXPECT_EQ(reprinted(R"({"b":1,"a":2,"b":3,"a":4,"b":5,"c":6})"),
              "{\n  \"a\": 4,\n  \"b\": 5,\n  \"c\": 6\n}");
}

TEST(Json, ObjectsFindAndChange) {
    JsonValue::Object object{{"b", 1}, {"a", "x"}};
    object["c"] = true;
    object.emplace("a", "kept out");
    object.insert_or_assign("b", JsonValue());
    EXPECT_EQ(*object.find("a")->second.string(), "x");
    EXPECT_TRUE(object.find("b")->second.isNull());
    EXPECT_EQ(object.find("aa"), object.end());
    EXPECT_EQ(object.erase("a"), 1U);
    EXPECT_EQ(object.erase("a"), 0U);
    EXPECT_EQ(object, (JsonValue::Object{{"c", true}, {"b", JsonValue()}}));
}

TEST(Json, FaultsAreSentences) {
    EXPECT_EQ(reprinted(""), "The file is empty.");
    EXPECT_EQ(reprinted("\xEF\xBB\xBF \n"), "The file is empty.");
    EXPECT_EQ(reprinted("{\n  \"a\": 1,\n  \"é\": tru\n}"), "The file isn't valid JSON (line 3, column 11).");
    EXPECT_EQ(reprinted("[1] x"), "The file isn't valid JSON (line 1, column 5).");
    EXPECT_EQ(reprinted("[1, 2"), "The file isn't valid JSON: it ends too early.");
    EXPECT_EQ(reprinted("[\"a\xFF\"]"), "The file isn't valid UTF-8 text (line 1, column 4).");
    EXPECT_EQ(reprinted("[1e999]"), "The file holds a number that is too large (line 1, column 6).");
    EXPECT_EQ(reprinted(std::string("[1]\0[2]", 7)), "The file isn't valid JSON (line 1, column 4).");
    for (const char* bad : {"{'a':1}", "[1,]", "{\"a\":1,}", "// x\n1", "NaN", "01", "+1", ".5",
                            "\"\\ud800\"", "\"\t\"", "[1 2]", "\xFE\xFF", "\xEF\xBB"}) {
        EXPECT_FALSE(JsonValue::parse(bad).value) << bad;
    }
}

TEST(Json, AByteOrderMarkIsSkipped) {
    EXPECT_EQ(reprinted("\xEF\xBB\xBF[]"), "[]");
}

TEST(Json, DepthIsCapped) {
    const auto deepest = JsonValue::parse(nested(512));
    ASSERT_TRUE(deepest.value);
    EXPECT_EQ(JsonValue::parse(deepest.value->prettyPrinted()).value, deepest.value);
    EXPECT_EQ(reprinted(nested(513)), "The file is nested more than 512 levels deep.");
    EXPECT_FALSE(JsonValue::parse(std::string(10'000'000, '[')).value);
}

} // namespace corvane
