// Brings into sight what the keyboard has come to on a page that scrolls. What was
// pressed with the mouse stays where it is until it is let go.

import QtQuick

Item {
    id: follower

    required property Flickable page

    readonly property int room: 16 // around it
    readonly property Item focused: follower.page.Window.activeFocusItem

    function isOnPage(item: Item): bool {
        let ancestor = item;
        while (ancestor && ancestor !== follower.page.contentItem)
            ancestor = ancestor.parent;
        return ancestor !== null;
    }

    function isPressed(item: var): bool {
        return item.focusReason === Qt.MouseFocusReason;
    }

    function follow() {
        const page = follower.page;
        const item = follower.focused;
        if (!item || follower.isPressed(item) || !follower.isOnPage(item))
            return;
        const top = item.mapToItem(page.contentItem, 0, 0).y - follower.room;
        const bottom = top + item.height + 2 * follower.room;
        const lowest = Math.max(page.originY, page.originY + page.contentHeight - page.height);
        if (top < page.contentY)
            page.contentY = Math.max(page.originY, top);
        else if (bottom > page.contentY + page.height)
            page.contentY = Math.min(lowest, bottom - page.height);
    }

    onFocusedChanged: follower.follow()
}
