// The notes of a title that is shown.

import QtQuick

import Quire

ManualTextArea {
    spacing: 6
    titleWeight: Font.DemiBold
    textSize: 14
    inset: 7
    edge: Theme.hairline
}
