pragma Singleton
import QtQuick 2.15

/// Colours and sizes of the window, light and dark. Controls take theirs from the palette that is made of these.
QtObject {
    property bool dark: false

    readonly property color window: dark ? "#1f2225" : "#f2f3f4"
    readonly property color panel: dark ? "#292d31" : "#ffffff"
    readonly property color field: dark ? "#181a1d" : "#ffffff"
    readonly property color line: dark ? "#454b51" : "#c5cace"
    readonly property color text: dark ? "#eceff1" : "#1c2023"
    /// Second in importance, still 4.5 to 1 against panel.
    readonly property color faint: dark ? "#a9b2ba" : "#59636c"
    readonly property color accent: dark ? "#5aa9e6" : "#1766a6"
    /// On accent. A name that begins with "on" would be a signal handler's, and the colour black.
    readonly property color accentText: dark ? "#10151a" : "#ffffff"
    readonly property color good: dark ? "#6cc486" : "#1f7a3a"
    readonly property color warning: dark ? "#e5b454" : "#8a5a00"
    readonly property color bad: dark ? "#f0827a" : "#b3261e"
    /// Lines of several things in one picture, in this order.
    readonly property var series: dark ? ["#5aa9e6", "#e5b454", "#6cc486", "#d18ce0", "#f0827a", "#59c9c1"]
                                       : ["#1766a6", "#a86500", "#1f7a3a", "#7b3f98", "#b3261e", "#0c7a73"]

    readonly property int gap: 8
    readonly property int smallGap: 4
    readonly property int smallText: 12
    readonly property int plainText: 14
    readonly property int largeText: 20
    readonly property string numbers: "monospace"
}
