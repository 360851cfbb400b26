#include "sources/ArtworkService.h"

#include "concurrency/InBackground.h"
#include "images/CoverDecoder.h"
#include "images/PlaceholderCover.h"
#include "reliability/TransportError.h"
#include "sources/NetworkClient.h"
#include "sources/ServiceError.h"

#include <QCoroFuture>

namespace quire::ArtworkService {

namespace {

NetworkRequest downloadRequest(const QUrl &url)
{
    return {.url = url,
        .headers = {
            {QByteArrayLiteral("Accept"), QByteArrayLiteral("image/avif,image/webp,image/png,image/jpeg,*/*;q=0.5")},
            // Nothing is kept here; a cache on the way is to ask again.
            {QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("max-age=0")},
        }};
}

ServiceError notUsable()
{
    return ServiceError::message(QStringLiteral("The artwork source did not return a usable image."));
}

QCoro::Task<NetworkResponse> download(NetworkClient &network, QUrl url, std::stop_token stop)
{
    try {
        NetworkRequest request = downloadRequest(url);
        const auto answer = network.data(std::move(request), downloadTimeout, stop, longestDownload);
        auto response = co_await answer;
        co_return response;
    } catch (const TransportError &error) {
        if (error.kind() == TransportError::Kind::BodyTooLong) {
            throw notUsable();
        }
        throw;
    }
}

QFuture<bool> isUsableImage(const QByteArray &bytes)
{
    return inBackground([bytes] { return CoverDecoder::isUsableImage(bytes); });
}

} // namespace

QCoro::Task<CoverBytes> artworkData(NetworkClient &network, QUrl url, std::stop_token stop)
{
    const auto answer = download(network, std::move(url), stop);
    const auto response = co_await answer;
    if (response.status < 200 || response.status > 299) {
        throw ServiceError::http(
            response.status, QStringLiteral("The artwork source returned HTTP %1.").arg(response.status));
    }
    const auto testing = isUsableImage(response.body);
    const bool isUsable = co_await testing;
    if (!isUsable) {
        throw notUsable();
    }
    co_return CoverBytes(response.body);
}

QFuture<std::optional<CoverBytes>> generatedPlaceholder(const QString &title)
{
    return inBackground([title] { return PlaceholderCover::png(title); });
}

} // namespace quire::ArtworkService
