#include "core/AudibleStatistics.h"

#include "records/Text.h"

#include <QSet>

namespace quire {

AudibleStatistics makeAudibleStatistics(const QList<Audiobook> &audiobooks)
{
    AudibleStatistics statistics;
    QSet<QString> series;
    statistics.total = audiobooks.size();
    for (const Audiobook &audiobook : audiobooks) {
        if (audiobook.status.isEmpty() || audiobook.status == u"read") {
            ++statistics.read;
        } else if (audiobook.status == u"reading") {
            ++statistics.reading;
        } else if (audiobook.status == u"to-read") {
            ++statistics.toRead;
        }
        if (const auto name = Text::nonEmptyValue(audiobook.series)) {
            series.insert(*name);
        }
    }
    statistics.seriesCount = series.size();
    return statistics;
}

} // namespace quire
