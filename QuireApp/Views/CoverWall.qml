// A wall of covers between a head and a foot, which scroll with it; made lazily:
// a card exists only near what is in sight.

pragma ComponentBehavior: Bound

import QtQml.Models
import QtQuick
import QtQuick.Templates as T

import Quire

FocusScope {
    id: view

    required property LibraryListModel titles
    required property Component card // a LibraryCard that hands its keys to handleKey()
    required property Item head
    required property Item foot

    readonly property bool isEmpty: grid.count === 0
    property int headGap: 26 // between the head and the wall

    readonly property int sidePadding: 16
    readonly property int columnSpacing: 28
    readonly property int rowSpacing: 18
    readonly property int cardWidth: 142
    readonly property int cardHeight: 218

    // As many columns as fit between the paddings. What is left over stands on
    // both sides, so that the wall is centred; the heading keeps its edges.
    readonly property int columns: Math.max(1, Math.floor(
        (view.width - 2 * view.sidePadding + view.columnSpacing) / grid.cellWidth))
    readonly property int cardsInSight: view.columns * Math.max(1, Math.floor(grid.height / grid.cellHeight))
    readonly property int wallWidth: view.columns * grid.cellWidth - view.columnSpacing
    readonly property int wallLeft: Math.max(view.sidePadding, Math.floor((view.width - view.wallWidth) / 2))

    function showTop() {
        grid.contentY = -grid.topMargin;
    }

    onVisibleChanged: if (view.visible) view.showTop()
    Keys.onPressed: event => bar.handleKey(event)

    // The keyboard has come to something in the foot, which may be out of sight. What
    // was pressed with the mouse stays where it is until it is let go.
    readonly property Item focused: view.Window.activeFocusItem
    onFocusedChanged: {
        let item = view.focused;
        while (item && item !== foot.children[0])
            item = item.parent;
        if (item && view.focused.focusReason !== Qt.MouseFocusReason)
            view.showInFoot(view.focused);
    }

    function showInFoot(item: Item) {
        const top = item.mapToItem(view, 0, 0).y;
        const below = top + item.height + 16 - view.height;
        const lowest = Math.max(-grid.topMargin, grid.contentHeight + grid.bottomMargin - grid.height);
        if (below > 0)
            grid.contentY = Math.min(lowest, grid.contentY + below);
        else if (top < 0)
            grid.contentY += top - 16;
    }

    // Head and foot scroll with the grid, in its margins; beside it and not in it,
    // so that Tab goes through them in the order of the eye.
    Item {
        id: head

        x: view.wallLeft
        y: 16 - (grid.contentY + grid.topMargin)
        z: 1 // the grid's margin lies over it
        width: view.wallWidth
        height: view.head.implicitHeight
        children: [view.head]
    }

    GridView {
        id: grid

        // Past the edge, if need be, by the spacing that follows no column.
        width: Math.max(view.width, view.wallLeft + view.columns * grid.cellWidth)
        height: view.height
        leftMargin: view.wallLeft
        onLeftMarginChanged: grid.contentX = -grid.leftMargin // stays where it was otherwise
        topMargin: 16 + view.head.implicitHeight + view.headGap
        // A head that grows while its top is looked at grows downwards.
        property real marginBefore: 0
        onTopMarginChanged: {
            if (Math.abs(grid.contentY + grid.marginBefore) < 1)
                view.showTop();
            grid.marginBefore = grid.topMargin;
        }
        bottomMargin: view.foot.implicitHeight - (grid.count > 0 ? view.rowSpacing : 0) // which follows the last row too
        cellWidth: view.cardWidth + view.columnSpacing
        cellHeight: view.cardHeight + view.rowSpacing
        reuseItems: true // a search that finds nothing does not cost the cards of the one after it
        cacheBuffer: 2 * cellHeight
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: false
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        model: DelegateModel {
            model: view.titles
            delegate: view.card
            onItemPooled: (index, item) => view.putAside(item as LibraryCard)
            onItemReused: (index, item) => view.bringBack(item as LibraryCard)
        }
        onCountChanged: if (grid.count > 0 && grid.currentIndex < 0) grid.currentIndex = 0

        T.ScrollBar.vertical: QuireScrollBar {
            id: bar

            parent: view
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.bottom: parent.bottom
        }
    }

    // Cards kept for other titles. Among those of the wall they would be found by screen
    // readers, and come back there in another order than that of the titles.
    Item {
        id: spares

        visible: false
    }

    function putAside(card: LibraryCard) {
        card.isSpare = true;
        card.parent = spares;
    }

    function bringBack(card: LibraryCard) {
        card.parent = grid.contentItem;
        card.isSpare = false;
    }

    Item {
        id: foot

        x: view.wallLeft
        y: grid.contentHeight - (grid.count > 0 ? view.rowSpacing : 0) - grid.contentY
        z: 1
        width: view.wallWidth
        height: view.foot.implicitHeight
        children: [view.foot]
    }

    // A card takes the arrow keys and those that turn pages; Tab goes on to what comes
    // after the grid.
    function moveFocus(step: int, from: int) {
        const row = from + step;
        if (row >= 0 && row < grid.count)
            view.focusCard(row);
    }

    function focusCard(row: int) {
        view.makeCurrent(row);
        if (grid.currentItem)
            grid.currentItem.forceActiveFocus(Qt.TabFocusReason);
    }

    function makeCurrent(index: int) {
        grid.currentIndex = index;
        if (index < view.columns)
            view.showTop(); // with the heading
        else
            grid.positionViewAtIndex(index, GridView.Contain);
    }

    function handleKey(event: var, index: int) {
        switch (event.key) {
        case Qt.Key_Left:
            view.moveFocus(-1, index);
            break;
        case Qt.Key_Right:
            view.moveFocus(1, index);
            break;
        case Qt.Key_Up:
            view.moveFocus(-view.columns, index);
            break;
        case Qt.Key_Down:
            view.moveFocus(view.columns, index);
            break;
        case Qt.Key_PageUp:
            view.focusCard(Math.max(index - view.cardsInSight, index % view.columns));
            break;
        case Qt.Key_PageDown:
            view.focusCard(Math.min(index + view.cardsInSight, grid.count - 1));
            break;
        case Qt.Key_Home:
            view.focusCard(0);
            break;
        case Qt.Key_End:
            view.focusCard(grid.count - 1);
            break;
        default:
            return;
        }
        event.accepted = true;
    }
}
