// The wall of covers, made lazily: a card exists only near what is in sight.
// Books come in pages; audiobooks all at once.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

FocusScope {
    id: view

    required property LibraryViewModel library

    readonly property int sidePadding: 24
    readonly property int columnSpacing: 28
    readonly property int rowSpacing: 18
    readonly property int cardWidth: 142
    readonly property int cardHeight: 218

    signal bookPageChanged

    function showTop() {
        grid.positionViewAtBeginning();
    }

    // The page in words: a new one is looked at from its top, whoever turned it.
    readonly property string page: view.library.pageDescription
    onPageChanged: view.bookPageChanged()

    GridView {
        id: grid

        anchors.fill: parent
        // Columns are as many as fit between the paddings; the rest of the last
        // cell is spacing that nothing follows.
        anchors.rightMargin: view.sidePadding - (grid.cellWidth - view.cardWidth - view.sidePadding)
        cellWidth: view.cardWidth + view.columnSpacing
        cellHeight: view.cardHeight + view.rowSpacing
        cacheBuffer: 2 * cellHeight
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: false
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        model: view.library.showsBooks ? view.library.books : view.library.audiobooks
        delegate: view.library.showsBooks ? bookDelegate : audiobookDelegate
        onCountChanged: if (grid.count > 0 && grid.currentIndex < 0) grid.currentIndex = 0

        QuireScrollBar {
            id: scrollBar

            parent: view
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            orientation: Qt.Vertical
            size: grid.visibleArea.heightRatio
            position: grid.visibleArea.yPosition
            active: grid.moving || scrollBar.hovered || scrollBar.pressed
            onPositionChanged: if (scrollBar.pressed) grid.contentY = scrollBar.position * grid.contentHeight + grid.originY
        }

        header: Item {
            width: view.width
            height: controls.implicitHeight + 42

            LibraryControlsView {
                id: controls

                x: view.sidePadding
                y: 16
                width: parent.width - 2 * view.sidePadding
                library: view.library
            }
        }

        footer: LibraryPagingRow {
            width: view.width
            library: view.library
        }
    }

    // A card takes the arrow keys; Tab goes on to what comes after the grid.
    function moveFocus(step: int, from: int) {
        const row = from + step;
        if (row < 0 || row >= grid.count)
            return;
        grid.currentIndex = row;
        grid.positionViewAtIndex(row, GridView.Contain);
        if (grid.currentItem)
            grid.currentItem.focusCard();
    }

    function handleKey(event: var, index: int) {
        const columns = Math.max(1, Math.floor(grid.width / grid.cellWidth));
        switch (event.key) {
        case Qt.Key_Left:
            view.moveFocus(-1, index);
            break;
        case Qt.Key_Right:
            view.moveFocus(1, index);
            break;
        case Qt.Key_Up:
            view.moveFocus(-columns, index);
            break;
        case Qt.Key_Down:
            view.moveFocus(columns, index);
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    Component {
        id: bookDelegate

        Item {
            id: bookCell

            required property int index
            required property double rowId
            required property string title
            required property coverSource cover
            required property string accessibleName

            function focusCard() {
                bookCard.forceActiveFocus(Qt.TabFocusReason);
            }

            width: grid.cellWidth
            height: grid.cellHeight

            BookCard {
                id: bookCard

                x: view.sidePadding
                width: view.cardWidth
                height: view.cardHeight
                title: bookCell.title
                cover: bookCell.cover
                accessibleName: bookCell.accessibleName
                onClicked: {
                    grid.currentIndex = bookCell.index;
                    view.library.openBook(bookCell.rowId);
                }
                Keys.onPressed: event => view.handleKey(event, bookCell.index)
            }
        }
    }

    Component {
        id: audiobookDelegate

        Item {
            id: audioCell

            required property int index
            required property double rowId
            required property string title
            required property coverSource cover
            required property string accessibleName

            function focusCard() {
                audioCard.forceActiveFocus(Qt.TabFocusReason);
            }

            width: grid.cellWidth
            height: grid.cellHeight

            AudiobookCard {
                id: audioCard

                x: view.sidePadding
                width: view.cardWidth
                height: view.cardHeight
                title: audioCell.title
                cover: audioCell.cover
                accessibleName: audioCell.accessibleName
                onClicked: {
                    grid.currentIndex = audioCell.index;
                    view.library.openAudiobook(audioCell.rowId);
                }
                Keys.onPressed: event => view.handleKey(event, audioCell.index)
            }
        }
    }
}
