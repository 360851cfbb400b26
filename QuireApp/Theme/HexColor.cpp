#include "QuireApp/Theme/HexColor.h"

#include <algorithm>
#include <cmath>

namespace quire::HexColor {

namespace {

constexpr int most = 255;

QString component(double share)
{
    return QStringLiteral("%1").arg(int(std::lround(share * most)), 2, 16, QLatin1Char('0')).toUpper();
}

bool isHexDigit(QChar letter)
{
    const char16_t lower = letter.toLower().unicode();
    return (lower >= u'0' && lower <= u'9') || (lower >= u'a' && lower <= u'f');
}

} // namespace

QString text(const CustomAccentColor &color)
{
    const auto [red, green, blue] = CustomAccentColor::clamped(color.red, color.green, color.blue);
    return u'#' + component(red) + component(green) + component(blue);
}

std::optional<CustomAccentColor> parse(QStringView text)
{
    QStringView digits = text.trimmed();
    if (digits.startsWith(u'#')) {
        digits = digits.mid(1);
    }
    const bool isShort = digits.size() == 3;
    if ((!isShort && digits.size() != 6) || !std::all_of(digits.begin(), digits.end(), isHexDigit)) {
        return std::nullopt;
    }
    const auto share = [digits, isShort](qsizetype component) {
        const qsizetype length = isShort ? 1 : 2;
        const int number = digits.mid(component * length, length).toInt(nullptr, 16);
        return (isShort ? number * 17 : number) / double(most); // 17 repeats the digit
    };
    return CustomAccentColor{share(0), share(1), share(2)};
}

} // namespace quire::HexColor
