import QtQuick 2.15
import QtQuick.Controls 2.15
import "."

/// The delay of an output in ms, in steps of a tenth. One is chosen with each step, or when the text was entered.
SpinBox {
    id: box

    property real delay

    readonly property int perMillisecond: 10

    signal chosen(real delay)

    implicitWidth: 96
    implicitHeight: 26
    font.pixelSize: Theme.smallText
    from: 0
    to: 100 * perMillisecond
    value: Math.round(delay * perMillisecond)
    editable: true
    validator: DoubleValidator {
        bottom: 0
        top: box.to / box.perMillisecond
        decimals: 1
        locale: "C"
        notation: DoubleValidator.StandardNotation
    }
    textFromValue: function (value) { return (value / perMillisecond).toFixed(1); }
    valueFromText: function (text) { return Math.round(parseFloat(text) * perMillisecond); }
    onValueModified: {
        const wanted = value / perMillisecond;
        value = Qt.binding(() => Math.round(box.delay * box.perMillisecond)); // what the car makes of it
        chosen(wanted);
    }
}
