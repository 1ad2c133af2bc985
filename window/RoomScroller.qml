import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import "."

/// A layout that fills its place, or is as high as it needs to be and scrolls then, also to what has the keyboard.
Flickable {
    id: scroller

    property Item contents
    readonly property Item focused: Window.activeFocusItem

    function follow() {
        var ancestor = focused;
        while (ancestor && ancestor !== contentItem)
            ancestor = ancestor.parent;
        if (!ancestor)
            return;
        const top = focused.mapToItem(contentItem, 0, 0).y;
        if (top - Theme.gap < contentY)
            contentY = Math.max(0, top - Theme.gap);
        else if (top + focused.height + Theme.gap > contentY + height)
            contentY = Math.min(top + focused.height + Theme.gap, contentHeight) - height;
    }

    /// Later, as a layout that gets another height while it places its items leaves them where they are.
    function settle() {
        contents.height = Math.max(contents.implicitHeight, height - 2 * Theme.gap);
    }

    contentWidth: width
    contentHeight: contents ? contents.height + 2 * Theme.gap : 0
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    ScrollBar.vertical: ScrollBar {}
    onFocusedChanged: follow()
    onHeightChanged: Qt.callLater(settle)
    onContentsChanged: {
        contents.parent = contentItem;
        Qt.callLater(settle);
    }

    Connections {
        target: scroller.contents
        function onImplicitHeightChanged() { Qt.callLater(scroller.settle); }
    }
    Binding {
        target: scroller.contents
        property: "width"
        value: scroller.width - 2 * Theme.gap
    }
}
