#include "updates/QuireUpdateService.h"

#include "concurrency/Clock.h"
#include "concurrency/Detach.h"
#include "records/Text.h"
#include "updates/QuireUpdateCheckError.h"
#include "updates/UpdateDownload.h"

#include <QCoroFuture>

#include <algorithm>
#include <memory>

namespace quire {

namespace {

QUrl manifestAddress(const QUrl &endpoint)
{
    QUrl address = endpoint;
    address.setPath(QStringLiteral("/quire/version.json"));
    const bool isSpoken = address.scheme() == QStringLiteral("https") || address.scheme() == QStringLiteral("http");
    if (!isSpoken || address.host().isEmpty() || !address.isValid()) {
        throw QuireUpdateCheckError::invalidAddress();
    }
    return address;
}

QCoro::Task<> expireInTime(Clock &clock, std::weak_ptr<UpdateDownload> download, std::stop_token ended)
{
    const auto sleeping = clock.sleep(QuireUpdateService::timeout, ended);
    co_await sleeping;
    if (const auto running = download.lock(); running && !ended.stop_requested()) {
        running->expire();
    }
}

QCoro::Task<QByteArray> manifestBytes(Clock &clock, QUrl address, std::stop_token stop)
{
    // The frame owns the download: it ends with it, whoever has asked is gone or not.
    const auto download = std::make_shared<UpdateDownload>(address);
    const auto cancelDownload = [&download] { download->cancelLater(); };
    const std::stop_callback onStop(stop, cancelDownload);

    struct Ended
    {
        std::stop_source source;
        ~Ended() { source.request_stop(); }
    };
    const Ended ended;
    detach(expireInTime(clock, download, ended.source.get_token()));

    const auto body = download->body();
    co_return co_await body;
}

QList<qint64> numbersOf(QStringView version)
{
    QList<qint64> numbers;
    for (const QStringView piece : version.split(u'.', Qt::SkipEmptyParts)) {
        numbers.append(Text::decimalInteger(piece).value_or(0));
    }
    return numbers;
}

bool isNewer(const QuireUpdateManifest &manifest, const RunningVersion &running)
{
    const QString none = QStringLiteral("0");
    const auto order = QuireUpdateService::compareVersions(manifest.version, running.version.value_or(none));
    if (order == std::strong_ordering::equal) {
        return Text::decimalInteger(running.build.value_or(none)).value_or(0) < manifest.build;
    }
    return order == std::strong_ordering::greater;
}

} // namespace

QuireUpdateService::QuireUpdateService(Clock &clock, QUrl endpoint, RunningVersion running)
    : m_clock(clock)
    , m_endpoint(std::move(endpoint))
    , m_running(std::move(running))
{
}

QCoro::Task<QuireUpdateCheckResult> QuireUpdateService::check(std::stop_token stop) const
{
    const QUrl endpoint = m_endpoint;
    const RunningVersion running = m_running;
    const auto fetching = manifestBytes(m_clock, manifestAddress(endpoint), stop);
    const QByteArray bytes = co_await fetching;
    const auto manifest = QuireUpdateManifest::decode(bytes);
    manifest.validate(endpoint);
    QuireUpdateCheckResult result;
    if (isNewer(manifest, running)) {
        result.available = manifest;
    }
    co_return result;
}

std::strong_ordering QuireUpdateService::compareVersions(QStringView a, QStringView b)
{
    const QList<qint64> left = numbersOf(a);
    const QList<qint64> right = numbersOf(b);
    for (qsizetype at = 0; at < std::max(left.size(), right.size()); ++at) {
        const auto order = left.value(at) <=> right.value(at); // 0 where there is none
        if (order != std::strong_ordering::equal) {
            return order;
        }
    }
    return std::strong_ordering::equal;
}

} // namespace quire
