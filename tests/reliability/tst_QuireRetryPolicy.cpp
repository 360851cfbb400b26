#include "reliability/QuireRetryPolicy.h"

#include "concurrency/Cancelled.h"
#include "persistence/database/DatabaseError.h"
#include "reliability/HttpFailure.h"
#include "reliability/QuireReliabilityError.h"
#include "reliability/TransportError.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quire {

namespace {

using Kind = TransportError::Kind;

// A service's failure as the policy sees it.
class ServiceFailure final : public HttpFailure
{
public:
    explicit ServiceFailure(std::optional<int> status)
        : m_status(status)
    {
    }
    std::optional<int> httpStatus() const override { return m_status; }
    QString description() const override { return QStringLiteral("The service failed."); }

private:
    std::optional<int> m_status;
};

bool isTransient(Kind kind)
{
    return QuireRetryPolicy::isTransient(TransportError(kind, 0, QString()));
}

bool isTransient(std::optional<int> status)
{
    return QuireRetryPolicy::isTransient(ServiceFailure(status));
}

TEST(QuireRetryPolicy, TheSevenPassingTransportFailuresAreTransient)
{
    for (const Kind kind :
        {Kind::TimedOut, Kind::CannotFindHost, Kind::CannotConnectToHost, Kind::NetworkConnectionLost,
            Kind::DnsLookupFailed, Kind::NotConnectedToInternet, Kind::ResourceUnavailable}) {
        EXPECT_TRUE(isTransient(kind)) << int(kind);
    }
}

TEST(QuireRetryPolicy, OtherTransportFailuresAreNot)
{
    for (const Kind kind : {Kind::BodyTooLong, Kind::TooManyRedirects, Kind::Other}) {
        EXPECT_FALSE(isTransient(kind)) << int(kind);
    }
}

TEST(QuireRetryPolicy, OfHttpStatuses408And429AndThe500sAreTransient)
{
    for (int status = -1; status <= 700; ++status) {
        const bool expected = status == 408 || status == 429 || (status >= 500 && status <= 599);
        EXPECT_EQ(isTransient(status), expected) << status;
    }
    EXPECT_FALSE(isTransient(404));
    EXPECT_TRUE(isTransient(503));
    EXPECT_FALSE(isTransient(600));
}

TEST(QuireRetryPolicy, AServiceFailureWithoutAStatusIsNot)
{
    EXPECT_FALSE(isTransient(std::nullopt));
}

TEST(QuireRetryPolicy, ACancellationIsNot)
{
    EXPECT_FALSE(QuireRetryPolicy::isTransient(Cancelled()));
}

TEST(QuireRetryPolicy, NothingElseIs)
{
    EXPECT_FALSE(QuireRetryPolicy::isTransient(QuireReliabilityError::invalidImport(QStringLiteral("503"))));
    EXPECT_FALSE(QuireRetryPolicy::isTransient(DatabaseError(DatabaseError::Kind::LibraryBusy)));
    EXPECT_FALSE(QuireRetryPolicy::isTransient(std::runtime_error("timed out")));
    EXPECT_FALSE(QuireRetryPolicy::isTransient(std::bad_alloc()));
}

} // namespace

} // namespace quire
