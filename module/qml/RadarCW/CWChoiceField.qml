import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// A CW setting chosen from the values the chip offers. The drop-down
// writes the chosen value into the parameter object; a stored value the
// list does not hold (a file of another chip) is shown as it is.
RowLayout {
    id: field

    property QtObject target: null
    property string propertyName: ""
    property alias label: labelText.text
    property string unit: ""
    // The values the parameter takes, and their texts (the values with the
    // unit when no texts are given).
    property var values: []
    property var texts: values.map(function (value) { return unit ? value + " " + unit : String(value) })
    property int labelWidth: 170
    property int fieldWidth: 190
    readonly property var shownValue: target ? target[propertyName] : undefined

    spacing: 6
    Label {
        id: labelText
        Layout.preferredWidth: field.labelWidth
        elide: Text.ElideRight
    }
    ComboBox {
        id: box
        objectName: "cw_" + field.propertyName
        Layout.preferredWidth: field.fieldWidth
        model: field.texts
        currentIndex: field.values.indexOf(field.shownValue)
        displayText: currentIndex >= 0 ? currentText
                     : field.shownValue === undefined ? "" : field.shownValue + (field.unit ? " " + field.unit : "")
        onActivated: {
            field.target[field.propertyName] = field.values[index]
            currentIndex = Qt.binding(function () { return field.values.indexOf(field.shownValue) })
        }
    }
    Item {
        Layout.fillWidth: true
    }
}
