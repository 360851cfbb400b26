#include "sources/ServiceURL.h"

#include "sources/ServiceError.h"
#include "testing/ThrownFailure.h"

#include <gtest/gtest.h>

using namespace quire;
using quire::testing::thrownBy;

namespace {

const QUrl endpoint(QStringLiteral("http://127.0.0.1:8080"));

} // namespace

TEST(ServiceURL, ARequestHasItsItemsInTheirOrder)
{
    EXPECT_EQ(ServiceURL::request(endpoint, QStringLiteral("/search.json"),
                  {{QStringLiteral("q"), QStringLiteral("dune")}, {QStringLiteral("limit"), QStringLiteral("8")}})
                  .toEncoded(),
        "http://127.0.0.1:8080/search.json?q=dune&limit=8");
}

TEST(ServiceURL, NoCharacterOfAValueIsTakenForAnother)
{
    EXPECT_EQ(ServiceURL::request(
                  endpoint, QStringLiteral("/p"), {{QStringLiteral("q"), QStringLiteral("C++ & #1 = é%41?/")}})
                  .toEncoded(),
        "http://127.0.0.1:8080/p?q=C%2B%2B%20%26%20%231%20%3D%20%C3%A9%2541%3F%2F");
}

TEST(ServiceURL, APathIsEscapedToo)
{
    EXPECT_EQ(ServiceURL::request(endpoint, QStringLiteral("/a b?c#d%41"), {}).path(QUrl::FullyEncoded),
        QStringLiteral("/a%20b%3Fc%23d%2541"));
}

TEST(ServiceURL, AnEndpointThatCouldNotBeReadGivesNoRequestAndNoAddress)
{
    const auto failure = thrownBy<ServiceError>([] { ServiceURL::request({}, QStringLiteral("/p"), {}); });
    EXPECT_EQ(failure->kind(), ServiceError::Kind::InvalidURL);
    EXPECT_EQ(ServiceURL::address({}, QStringLiteral("/p")), std::nullopt);
}

TEST(ServiceURL, AnAddressKeepsItsPathAsItStands)
{
    EXPECT_EQ(ServiceURL::address(endpoint, QStringLiteral("/b/id/0-L.jpg?default=false"))->text(),
        QStringLiteral("http://127.0.0.1:8080/b/id/0-L.jpg?default=false"));
    EXPECT_EQ(ServiceURL::address(endpoint, QStringLiteral("/pd/a b")), std::nullopt);
}
