// Text in the reader's font. Sizes are those of the type scale: 10, 11, 12, 13,
// 14, 15, 16, 18, 21, 22, 24 and 27.

import QtQuick

import Quire

Text {
    property int size: 13
    property int weight: Font.Normal

    font.family: Theme.fontFamily
    font.pixelSize: size
    font.weight: weight
    color: Theme.ink
    // Middles capitals in their line, so that words stand level with symbols and
    // in the middle of buttons, whatever the font leaves above and below them.
    topPadding: Math.max(0, Theme.capitalsDrop(font.family, size))
    bottomPadding: Math.max(0, -Theme.capitalsDrop(font.family, size))
    lineHeight: wrapMode === Text.NoWrap ? 1 : 1.3
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
