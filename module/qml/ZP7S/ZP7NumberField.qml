import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../RadarCW/CWInput.js" as Input

// One typed ZP7 setting: label, field, display unit and the device's range,
// with the verdict on what is typed under the field. A value reaches the
// parameter object only when it lies in the shown range; the page keeps
// Apply disabled while any field holds one that does not.
ColumnLayout {
    id: field

    // The parameter object and the name of the value in it; the object
    // names are "zp7_" + propertyName (+ "_message", "_range").
    property QtObject target: null
    property string propertyName: ""
    property alias label: labelText.text
    property string unit: ""
    // Stored value = typed value x scale (1e-6 for seconds typed in µs).
    property real scale: 1
    property int decimals: 0
    property bool whole: false
    // The device's limits in the stored unit.
    property real minimum: 0
    property real maximum: 0
    property QtObject tracker: null
    property int labelWidth: 185
    property int fieldWidth: 100
    property string message: ""
    readonly property bool valid: message.length === 0
    readonly property var shownValue: target ? target[propertyName] : undefined
    // The board's limits are single floats (0.01 s arrives as 0.0099999998):
    // six digits of them are what the board meant.
    readonly property var range: Input.displayRange(Number(minimum.toPrecision(6)), Number(maximum.toPrecision(6)),
                                                    scale, decimals)

    spacing: 0

    function reset() {
        input.text = Input.show(shownValue, scale, decimals)
        message = ""
    }

    // The typed text's fault, or nothing when it can be stored.
    function verdict(text) {
        var typed = String(text).trim()
        if (typed.length === 0)
            return qsTr("Value cannot be empty")
        if (!Input.isPlainNumber(typed))
            return qsTr("Text must be valid number")
        var number = Number(typed)
        if (whole && scale === 1 && Math.round(number) !== number)
            return qsTr("Value must be a whole number")
        // Compared as shown, so a bound typed as shown is accepted.
        if (range && (number < range.min - 1e-9 || number > range.max + 1e-9))
            return qsTr("Value %1 not in expected range: [%2 - %3] %4").arg(typed)
                .arg(range.min.toFixed(decimals)).arg(range.max.toFixed(decimals)).arg(unit).trim()
        return ""
    }

    function judge() {
        message = verdict(input.text)
        if (valid)
            target[propertyName] = Input.toStored(input.text, scale, whole)
    }

    onShownValueChanged: if (!input.activeFocus) reset()
    // Limits follow the other settings (the pulses must fit in the frame):
    // new ones may turn what is typed right or wrong.
    onRangeChanged: if (input.activeFocus || !valid) judge()

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
            objectName: "zp7_" + field.propertyName
            Layout.preferredWidth: field.fieldWidth
            selectByMouse: true
            enabled: field.enabled && field.target !== null
            color: field.valid ? palette.text : "#b00020"
            onTextEdited: field.judge()
            // Shows what the object keeps once the typing is over.
            onActiveFocusChanged: if (!activeFocus && field.valid) field.reset()
        }
        Label {
            text: field.unit
            Layout.preferredWidth: 30
        }
        Label {
            objectName: input.objectName + "_range"
            text: Input.rangeText(field.range, field.decimals)
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
