#include "sources/AudibleImages.h"

#include "records/Text.h"

namespace quire::AudibleImages {

std::optional<Url> largest(const QMap<QString, QString> &imagesBySize)
{
    std::optional<Url> best;
    qint64 bestSize = 0;
    for (auto at = imagesBySize.begin(); at != imagesBySize.end(); ++at) {
        const auto size = Text::decimalInteger(at.key());
        if (size && (!best || *size > bestSize)) {
            if (auto url = Url::parse(at.value())) {
                best = std::move(url);
                bestSize = *size;
            }
        }
    }
    return best;
}

} // namespace quire::AudibleImages
