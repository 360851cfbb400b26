// The button that carries the page's one chief action.

import QtQuick

import Quire

BorderedButton {
    fill: Theme.accent
    fillHovered: Theme.accentHovered
    fillPressed: Theme.accentPressed
    edge: Theme.hairline
    foreground: Theme.onAccent
}
