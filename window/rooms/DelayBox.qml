import QtQuick 2.15
import QtQuick.Controls 2.15
import ".."

/// The delay of an output in the platform's unit, in steps of a tenth. One is chosen with each step, or when the text was entered.
SpinBox {
    id: box

    property real delay

    readonly property int stepsPerUnit: 10

    signal chosen(real delay)

    implicitWidth: 96
    implicitHeight: 26
    font.pixelSize: Theme.smallText
    from: 0
    to: 100 * stepsPerUnit
    value: Math.round(delay * stepsPerUnit)
    editable: true
    validator: DoubleValidator {
        bottom: 0
        top: box.to / box.stepsPerUnit
        decimals: 1
        locale: "C"
        notation: DoubleValidator.StandardNotation
    }
    textFromValue: function (value) { return (value / stepsPerUnit).toFixed(1); }
    valueFromText: function (text) { return Math.round(parseFloat(text) * stepsPerUnit); }
    onValueModified: {
        const wanted = value / stepsPerUnit;
        value = Qt.binding(() => Math.round(box.delay * box.stepsPerUnit)); // what the car makes of it
        chosen(wanted);
    }
}
