import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import ".."

/// What is longer than its place, and moves so that the control with the focus is seen.
Flickable {
    id: flickable

    readonly property Item focused: Window.activeFocusItem

    function show(item) {
        let parent = item;
        while (parent && parent !== contentItem)
            parent = parent.parent;
        if (!parent || item === contentItem)
            return;
        const top = item.mapToItem(contentItem, 0, 0).y;
        const bottom = top + Math.min(item.height, height);
        if (top < contentY)
            contentY = Math.max(0, top - Theme.gap);
        else if (bottom > contentY + height)
            contentY = Math.min(contentHeight - height, bottom - height + Theme.gap);
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    ScrollBar.vertical: ScrollBar {}
    onFocusedChanged: if (focused && contentHeight > height) show(focused)
}
