// A few quiet sentences below the fields that they speak of.

import QtQuick

import Quire

QuireText {
    width: parent ? parent.width : 0
    size: 11
    color: Theme.secondary
    wrapMode: Text.Wrap
}
