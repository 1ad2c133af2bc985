import QtQuick 2.15
import QtQuick.Shapes 1.15
import ".."

/// Up to two response curves in dB, over frequencies from 20 Hz to 20 kHz.
Item {
    id: plot

    /// A ResponseCurve, with its bands as dots and its highest point.
    property var curve
    property color curveColor: Theme.series[0]
    /// Another one to compare with, or null.
    property var otherCurve: null
    property color otherColor: Theme.series[1]

    readonly property int gridStep: 6 // dB
    readonly property real most: limit(Math.max, Math.ceil, 2 * gridStep)
    readonly property real least: limit(Math.min, Math.floor, -2 * gridStep)

    /// The grid's line that both curves stay within.
    function limit(extreme, round, atLeast) {
        const levels = curve.points.concat(otherCurve ? otherCurve.points : []).map(point => point.y);
        return gridStep * round(extreme(atLeast, ...levels) / gridStep);
    }

    function xOf(frequency) {
        return area.width * curve.position(frequency);
    }

    function yOf(level) {
        return area.height * (most - level) / (most - least);
    }

    function pathOf(points) {
        return points.map(point => Qt.point(area.width * point.x, yOf(point.y)));
    }

    function frequencyText(frequency) {
        return frequency < 1000 ? qsTr("%1 Hz").arg(Math.round(frequency)) : qsTr("%1 kHz").arg((frequency / 1000).toPrecision(3));
    }

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Response: the highest point is %1 dB at %2").arg(curve.highestLevel.toFixed(1)).arg(frequencyText(curve.highestFrequency))

    Item {
        id: area

        anchors.fill: parent
        anchors.leftMargin: 44
        anchors.rightMargin: 20
        anchors.topMargin: 22 // the highest point's text may stand there
        anchors.bottomMargin: 22

        Repeater {
            model: Math.round((plot.most - plot.least) / plot.gridStep) + 1

            Rectangle {
                readonly property int level: plot.most - index * plot.gridStep

                y: Math.round(plot.yOf(level))
                width: area.width
                height: level === 0 ? 2 : 1
                color: Theme.line

                Text {
                    anchors.right: parent.left
                    anchors.rightMargin: Theme.smallGap
                    anchors.verticalCenter: parent.verticalCenter
                    text: index === 0 ? qsTr("%1 dB").arg(parent.level) : parent.level
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                }
            }
        }

        Repeater {
            model: [20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000]

            Rectangle {
                x: Math.round(plot.xOf(modelData))
                width: 1
                height: area.height
                color: Theme.line

                Text {
                    anchors.top: parent.bottom
                    anchors.topMargin: Theme.smallGap
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: modelData < 1000 ? modelData + (index === 0 ? " Hz" : "") : modelData / 1000 + "k"
                    color: Theme.faint
                    font.pixelSize: Theme.smallText
                }
            }
        }

        Shape {
            anchors.fill: parent
            visible: plot.otherCurve !== null

            ShapePath {
                strokeColor: plot.otherColor
                strokeWidth: 2
                strokeStyle: ShapePath.DashLine
                dashPattern: [4, 2]
                fillColor: "transparent"

                PathPolyline {
                    path: plot.otherCurve ? plot.pathOf(plot.otherCurve.points) : []
                }
            }
        }

        Shape {
            anchors.fill: parent

            ShapePath {
                strokeColor: plot.curveColor
                strokeWidth: 2
                joinStyle: ShapePath.RoundJoin
                fillColor: "transparent"

                PathPolyline {
                    path: plot.pathOf(plot.curve.points)
                }
            }
        }

        Repeater {
            model: plot.curve.bands

            Rectangle {
                x: plot.xOf(modelData.frequency) - width / 2
                y: plot.yOf(plot.curve.level(modelData.frequency)) - height / 2
                width: 5
                height: 5
                radius: 2.5
                color: plot.curveColor
            }
        }

        Rectangle {
            id: highest

            objectName: "highestPoint"
            x: plot.xOf(plot.curve.highestFrequency) - width / 2
            y: plot.yOf(plot.curve.highestLevel) - height / 2
            visible: plot.curve.bands.length > 0
            width: 11
            height: 11
            radius: 5.5
            color: "transparent"
            border.color: Theme.text
            border.width: 2

            Text {
                x: Math.max(-highest.x + Theme.smallGap, Math.min((highest.width - width) / 2, area.width - highest.x - width - Theme.smallGap))
                y: -height - 2
                text: qsTr("%1 dB at %2").arg(plot.curve.highestLevel.toFixed(1)).arg(plot.frequencyText(plot.curve.highestFrequency))
                color: Theme.text
                font.pixelSize: Theme.smallText
                font.bold: true
            }
        }
    }
}
