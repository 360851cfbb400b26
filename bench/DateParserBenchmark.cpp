// Each of the seven forms of dates, read by DateParser, by Qt from the same
// pattern, and by the quickest call of Qt that takes the text at all (its fixed
// ISO and RFC 2822 readers, where there is one).

#include "records/DateParser.h"

#include <benchmark/benchmark.h>

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <functional>
#include <random>

namespace quire {

namespace {

constexpr int textCount = 1'000;

struct Form
{
    const char *name;
    std::function<QString(const QDateTime &)> write;
    QString pattern;
    std::function<QDateTime(const QString &)> readQuickest;
};

QString offsetText(const QDateTime &moment)
{
    const int minutes = moment.offsetFromUtc() / 60;
    return QStringLiteral("%1%2%3")
        .arg(QLatin1Char(minutes < 0 ? '-' : '+'))
        .arg(std::abs(minutes) / 60, 2, 10, QLatin1Char('0'))
        .arg(std::abs(minutes) % 60, 2, 10, QLatin1Char('0'));
}

QDateTime readRfc(const QString &text)
{
    return QDateTime::fromString(text, Qt::RFC2822Date);
}

QDateTime readIso(const QString &text)
{
    return QDateTime::fromString(text, Qt::ISODateWithMs);
}

const std::vector<Form> &forms()
{
    static const QLocale english = QLocale::c();
    static const std::vector<Form> list{
        {"internet_fraction", [](const QDateTime &m) { return m.toString(Qt::ISODateWithMs); },
            QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzzt"), readIso},
        {"internet", [](const QDateTime &m) { return m.toString(Qt::ISODate); }, QStringLiteral("yyyy-MM-ddTHH:mm:sst"),
            readIso},
        {"feed",
            [](const QDateTime &m) { return english.toString(m, u"ddd, dd MMM yyyy HH:mm:ss") + u' ' + offsetText(m); },
            QStringLiteral("ddd, dd MMM yyyy HH:mm:ss t"), readRfc},
        {"year_last",
            [](const QDateTime &m) {
                return english.toString(m, u"ddd MMM dd HH:mm:ss") + u' ' + offsetText(m) + m.toString(u" yyyy");
            },
            QStringLiteral("ddd MMM dd HH:mm:ss t yyyy"), nullptr},
        {"local_time", [](const QDateTime &m) { return m.toString(u"yyyy-MM-dd HH:mm:ss"); },
            QStringLiteral("yyyy-MM-dd HH:mm:ss"), readIso},
        {"local_date", [](const QDateTime &m) { return m.toString(u"yyyy-MM-dd"); }, QStringLiteral("yyyy-MM-dd"),
            readIso},
        {"month_first", [](const QDateTime &m) { return english.toString(m, u"MMM dd, yyyy"); },
            QStringLiteral("MMM dd, yyyy"), nullptr},
    };
    return list;
}

// Moments of the last decades, the same in every run.
std::vector<QString> textsOf(const Form &form)
{
    std::mt19937_64 random(20'261'121);
    std::uniform_int_distribution<qint64> milliseconds(631'152'000'000, 1'795'000'000'000);
    std::vector<QString> texts;
    for (int i = 0; i < textCount; ++i) {
        const int offset = static_cast<int>(random() % 48) * 1'800 - 12 * 3'600;
        texts.push_back(form.write(QDateTime::fromMSecsSinceEpoch(milliseconds(random), Qt::OffsetFromUTC, offset)));
    }
    return texts;
}

template<typename Read>
void readAll(benchmark::State &state, const Form &form, Read read)
{
    const std::vector<QString> texts = textsOf(form);
    qint64 unread = 0;
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &text : texts) {
            unread += read(text) ? 0 : 1;
        }
    }
    if (unread > 0) {
        state.SkipWithError("a text was not read");
    }
    state.SetItemsProcessed(state.iterations() * textCount);
}

const bool registered = [] {
    for (const Form &form : forms()) {
        const std::string name = form.name;
        benchmark::RegisterBenchmark(("DateParser/" + name).c_str(), [&form](benchmark::State &state) {
            readAll(state, form, [](const QString &text) {
                const auto instant = DateParser::date(text);
                benchmark::DoNotOptimize(instant);
                return instant.has_value();
            });
        });
        const auto byQt = [](auto read) {
            return [read](const QString &text) {
                const QDateTime moment = read(text);
                benchmark::DoNotOptimize(moment.toMSecsSinceEpoch());
                return moment.isValid();
            };
        };
        benchmark::RegisterBenchmark(("DateParser_Qt/" + name).c_str(), [&form, byQt](benchmark::State &state) {
            static const QLocale english = QLocale::c();
            readAll(state, form, byQt([&form](const QString &text) { return english.toDateTime(text, form.pattern); }));
        });
        if (form.readQuickest) {
            benchmark::RegisterBenchmark(("DateParser_QtFixed/" + name).c_str(),
                [&form, byQt](benchmark::State &state) { readAll(state, form, byQt(form.readQuickest)); });
        }
    }
    return true;
}();

} // namespace

} // namespace quire
