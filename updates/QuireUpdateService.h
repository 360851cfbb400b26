// QuireUpdateService asks the update host whether there is a newer Quire. It
// reads one small manifest, distrusts it, and compares it with what is running.
// Nothing is downloaded or installed: the answer names a web page to open. When
// to ask and what the reader sees are not its concern.
//
// Thread: the interface thread, with its event loop. Holds no state: checks that
// overlap do not disturb each other, and one may outlive the service.

#pragma once

#include "updates/QuireUpdateManifest.h"

#include <QCoroTask>
#include <QString>
#include <QUrl>

#include <chrono>
#include <compare>
#include <optional>
#include <stop_token>

namespace quire {

class Clock;

// Of the running program; what is absent counts as "0".
struct RunningVersion
{
    std::optional<QString> version; // "1.2.3"
    std::optional<QString> build; // a whole number
};

// A newer version is available, or this one is current.
struct QuireUpdateCheckResult
{
    std::optional<QuireUpdateManifest> available; // absent: current

    bool isCurrent() const { return !available; }

    bool operator==(const QuireUpdateCheckResult &) const = default;
};

class QuireUpdateService
{
public:
    // For a whole check, redirects and a slow body included.
    static constexpr std::chrono::seconds timeout{15};

    // clock: outlives every check. endpoint: scheme and authority of the update
    // host, which the download page must be on too.
    QuireUpdateService(Clock &clock, QUrl endpoint, RunningVersion running);

    // One check, never repeated by itself. Throws Cancelled as soon as `stop` is
    // requested; QuireUpdateCheckError for an answer that is refused;
    // TransportError for what never became one; JSONDecodingError for one that
    // is no manifest.
    QCoro::Task<QuireUpdateCheckResult> check(std::stop_token stop = {}) const;

    // Compares two versions number by number: "1.10" is greater than "1.9", and
    // "1.2" the same as "1.2.0". A piece that is no number counts as 0.
    static std::strong_ordering compareVersions(QStringView a, QStringView b);

private:
    Clock &m_clock;
    QUrl m_endpoint;
    RunningVersion m_running;
};

} // namespace quire
