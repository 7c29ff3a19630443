import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// One typed setting: its label, the field, the unit and the device's range,
// and under the field the module's verdict on what is typed. Only values the
// module accepts reach the settings object; the page keeps Apply disabled
// while any field holds a value it does not accept.
ColumnLayout {
    id: field

    // The settings object and the QML name of the value in it.
    property QtObject target: null
    property string propertyName: ""
    // The field as RadarDeviceConfiguration.validateField names it.
    property string fieldName: ""
    // The object names are namePrefix + propertyName (+ "_message").
    property string namePrefix: "metric_"
    property alias label: labelText.text
    property string unit: ""
    property string rangeText: ""
    property bool whole: false
    // Shown instead of the object's property, with writeValue storing an
    // accepted value, for values that are not a plain property (a segment).
    property var shownValue: target ? target[propertyName] : undefined
    property var writeValue: function (number) { target[propertyName] = number }
    // Counts the page's fields holding an unacceptable value.
    property QtObject tracker: null
    property int labelWidth: 175
    property int fieldWidth: 130
    property string message: ""
    readonly property bool valid: message.length === 0

    spacing: 0

    function format(number) {
        if (number === undefined || number === null)
            return ""
        // Single-precision settings show no digits beyond what they hold.
        return whole ? String(number) : String(Number(Number(number).toPrecision(7)))
    }
    // Shows the stored value again and forgets what was typed.
    function reset() {
        input.text = format(shownValue)
        message = ""
    }

    onShownValueChanged: if (!input.activeFocus) reset()
    // Whether this field is among the tracker's invalid ones.
    property bool counted: false
    function count(invalid) {
        if (!tracker || invalid === counted)
            return
        counted = invalid
        tracker.invalid += invalid ? 1 : -1
    }
    onValidChanged: count(!valid)
    Component.onCompleted: reset()
    Component.onDestruction: count(false)

    // Revert, defaults and loading replace what was typed, valid or not.
    Connections {
        target: field.tracker
        function onResetAll() { field.reset() }
    }

    RowLayout {
        spacing: 6
        Label {
            id: labelText
            Layout.preferredWidth: field.labelWidth
            elide: Text.ElideRight
        }
        TextField {
            id: input
            objectName: field.namePrefix + field.propertyName
            Layout.preferredWidth: field.fieldWidth
            selectByMouse: true
            color: field.valid ? palette.text : "#b00020"
            onTextEdited: {
                field.message = radarView.guiConfiguration.validateField(field.fieldName, text)
                if (field.valid)
                    field.writeValue(Number(text))
            }
            // The stored value may differ from what was typed (the maximum
            // range keeps one decimal): show it once the typing is over.
            onActiveFocusChanged: if (!activeFocus && field.valid) text = field.format(field.shownValue)
        }
        Label {
            text: field.unit
            Layout.preferredWidth: 36
        }
        Label {
            text: field.rangeText
            visible: text.length > 0
            color: "#6a6a6a"
            font.pixelSize: 12
            Layout.fillWidth: true
            elide: Text.ElideRight
        }
    }
    Label {
        objectName: input.objectName + "_message"
        text: field.message
        visible: !field.valid
        color: "#b00020"
        wrapMode: Text.Wrap
        Layout.leftMargin: field.labelWidth + 6
        Layout.fillWidth: true
    }
}
