import QtQml 2.15
import QtQuick 2.15
import ".."

/// A layout that fills its place, or is as high as it needs to be and scrolls then.
FocusFlickable {
    id: scroller

    property Item contents

    /// Later, as a layout that gets another height while it places its items leaves them where they are.
    function settle() {
        contents.height = Math.max(contents.implicitHeight, height - 2 * Theme.gap);
    }

    contentWidth: width
    contentHeight: contents ? contents.height + 2 * Theme.gap : 0
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
