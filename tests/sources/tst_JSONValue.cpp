#include "sources/JSONValue.h"

#include "testing/ThrownFailure.h"

#include <gmock/gmock.h>

#include <limits>

using namespace quire;
using quire::testing::thrownBy;
using Kind = JSONDecodingError::Kind;

namespace {

struct Person
{
    std::optional<QString> name;
    std::optional<qint64> age;

    bool operator==(const Person &) const = default;
};

Person person(const JSONValue &value)
{
    return {value.optional(u"name", &JSONValue::text), value.optional(u"age", &JSONValue::integer)};
}

// What the member "m" of the object reads as.
template<typename Decode>
auto member(const QByteArray &value, Decode decode)
{
    return JSONValue::parse("{\"m\": " + value + "}").required(u"m", decode);
}

template<typename Decode>
std::optional<JSONDecodingError> memberFailure(const QByteArray &value, Decode decode)
{
    return thrownBy<JSONDecodingError>([&] { member(value, decode); });
}

std::optional<JSONDecodingError> parseFailure(const QByteArray &document)
{
    return thrownBy<JSONDecodingError>([&] { JSONValue::parse(document); });
}

QByteArray listOfNulls(qsizetype count)
{
    QByteArray document = "[null";
    for (qsizetype at = 1; at < count; ++at) {
        document += ",null";
    }
    return document + "]";
}

} // namespace

// Types. ------------------------------------------------------------------------

TEST(JSONValue, ATextIsAStringAndNothingElse)
{
    EXPECT_EQ(member("\"Zoë\"", &JSONValue::text), QStringLiteral("Zoë"));
    EXPECT_EQ(member("\"\"", &JSONValue::text), QString());
    for (const char *other : {"1", "true", "null", "[]", "{}"}) {
        EXPECT_EQ(memberFailure(other, &JSONValue::text)->kind(), Kind::WrongType) << other;
    }
}

TEST(JSONValue, AnIntegerIsANumberWithoutAFractionThatFits)
{
    EXPECT_EQ(member("3", &JSONValue::integer), 3);
    EXPECT_EQ(member("-0", &JSONValue::integer), 0);
    EXPECT_EQ(member("3.0", &JSONValue::integer), 3);
    EXPECT_EQ(member("1e3", &JSONValue::integer), 1000);
    EXPECT_EQ(member("9223372036854775807", &JSONValue::integer), std::numeric_limits<qint64>::max());
    for (const char *other : {"3.5", "9223372036854775808", "1e300", "\"3\"", "true", "null", "[3]", "{}"}) {
        EXPECT_EQ(memberFailure(other, &JSONValue::integer)->kind(), Kind::WrongType) << other;
    }
}

TEST(JSONValue, ARealIsAnyNumber)
{
    EXPECT_EQ(member("4.5", &JSONValue::real), 4.5);
    EXPECT_EQ(member("4", &JSONValue::real), 4.0);
    for (const char *other : {"\"4.5\"", "true", "null", "[]", "{}"}) {
        EXPECT_EQ(memberFailure(other, &JSONValue::real)->kind(), Kind::WrongType) << other;
    }
}

TEST(JSONValue, AListIsDecodedInItsOrder)
{
    EXPECT_EQ(member("[\"b\", \"a\", \"b\"]", JSONValue::listOf(&JSONValue::text)),
        QStringList({QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_TRUE(member("[]", JSONValue::listOf(&JSONValue::text)).isEmpty());
    for (const char *other : {"{}", "\"a\"", "null", "1"}) {
        EXPECT_EQ(memberFailure(other, JSONValue::listOf(&JSONValue::text))->kind(), Kind::WrongType) << other;
    }
}

TEST(JSONValue, AMapHasEveryMember)
{
    const QMap<QString, QString> expected{
        {QStringLiteral("500"), QStringLiteral("a")}, {QStringLiteral("large"), QStringLiteral("b")}};
    EXPECT_EQ(member("{\"500\": \"a\", \"large\": \"b\"}", JSONValue::mapOf(&JSONValue::text)), expected);
    for (const char *other : {"[]", "\"a\"", "null", "1"}) {
        EXPECT_EQ(memberFailure(other, JSONValue::mapOf(&JSONValue::text))->kind(), Kind::WrongType) << other;
    }
}

// Members. ----------------------------------------------------------------------

TEST(JSONValue, AnOptionalMemberMayBeAbsentOrNull)
{
    EXPECT_EQ(person(JSONValue::parse("{}")), Person());
    EXPECT_EQ(person(JSONValue::parse("{\"name\": null, \"age\": null}")), Person());
    EXPECT_EQ(person(JSONValue::parse("{\"name\": \"Ann\", \"age\": 7, \"other\": [true]}")),
        (Person{QStringLiteral("Ann"), 7}));
}

TEST(JSONValue, AMemberOfTheWrongTypeSpoilsTheWholeValue)
{
    EXPECT_EQ(memberFailure("[{\"name\": \"Ann\"}, {\"name\": 5}]", JSONValue::listOf(person))->path(),
        QStringLiteral("m[1].name"));
    EXPECT_EQ(memberFailure("{\"a\": {\"age\": 1.5}}", JSONValue::mapOf(person))->path(), QStringLiteral("m.a.age"));
}

TEST(JSONValue, ARequiredMemberMustBeThereAndNotNull)
{
    const auto missing
        = thrownBy<JSONDecodingError>([] { JSONValue::parse("{\"M\": 1}").required(u"m", &JSONValue::integer); });
    EXPECT_EQ(missing->kind(), Kind::MissingMember);
    EXPECT_EQ(missing->path(), QStringLiteral("m"));
    EXPECT_EQ(memberFailure("null", &JSONValue::integer)->kind(), Kind::WrongType);
}

TEST(JSONValue, OnlyAnObjectHasMembers)
{
    for (const char *other : {"5", "\"x\"", "[]", "null", "true"}) {
        EXPECT_EQ(memberFailure(other, person)->kind(), Kind::WrongType) << other;
    }
    EXPECT_EQ(thrownBy<JSONDecodingError>([] { JSONValue::parse("[]").required(u"m", &JSONValue::text); })->kind(),
        Kind::WrongType);
}

TEST(JSONValue, OfTwoMembersOfOneNameTheLaterStands)
{
    EXPECT_EQ(JSONValue::parse("{\"m\": 1, \"m\": 2}").required(u"m", &JSONValue::integer), 2);
}

// Documents. --------------------------------------------------------------------

TEST(JSONValue, WhatIsNoJsonFailsWithTheParsersCode)
{
    for (const char *document :
        {"", "  ", "{", "[1,]", "<html></html>", "{\"m\": 1} x", "{\"m\": \"\xff\"}", "'m'", "nan"}) {
        const auto failure = parseFailure(document);
        EXPECT_EQ(failure->kind(), Kind::Syntax) << document;
        EXPECT_NE(failure->code(), QJsonParseError::NoError) << document;
    }
}

TEST(JSONValue, ANestingOfMoreThanAThousandEndsTheParse)
{
    const qsizetype depth = 100'000;
    EXPECT_EQ(parseFailure(QByteArray(depth, '['))->code(), QJsonParseError::DeepNesting);
    QByteArray objects;
    for (qsizetype at = 0; at < depth; ++at) {
        objects += "{\"a\":";
    }
    EXPECT_EQ(parseFailure(objects)->code(), QJsonParseError::DeepNesting);
}

TEST(JSONValue, ADocumentOfTooManyValuesIsRefused)
{
    EXPECT_EQ(parseFailure(listOfNulls(JSONValue::maximumValues))->kind(), Kind::TooManyValues); // and the list itself
    EXPECT_NO_THROW(JSONValue::parse(listOfNulls(JSONValue::maximumValues - 1)));
}

TEST(JSONValue, WhatATextHoldsCountsAsOneValue)
{
    const QByteArray text = "\"" + QByteArray(2 * JSONValue::maximumValues, ',') + R"(\"[{,")";
    EXPECT_EQ(member(text, &JSONValue::text).size(), 2 * JSONValue::maximumValues + 4);
}

// Words. ------------------------------------------------------------------------

TEST(JSONDecodingError, TellsWhatIsWrongAndWhere)
{
    EXPECT_STREQ(
        parseFailure("[1")->what(), "The data is not readable as JSON: invalid termination by number (at byte 2).");
    EXPECT_STREQ(memberFailure("[{\"name\": 5}]", JSONValue::listOf(person))->what(),
        "The data is not in the expected form: “m[0].name” is not a text.");
    EXPECT_STREQ(thrownBy<JSONDecodingError>([] { JSONValue::parse("[]").required(u"m", person); })->what(),
        "The data is not in the expected form: it is not an object.");
    EXPECT_STREQ(JSONDecodingError::missingMember().within(QStringLiteral("docs")).what(),
        "The data is not in the expected form: “docs” is missing.");
    EXPECT_STREQ(JSONDecodingError::tooManyValues().what(), "The data holds too many values to be read.");
}
