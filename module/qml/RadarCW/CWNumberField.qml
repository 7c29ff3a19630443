import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "CWInput.js" as Input

// One typed CW setting: label, field, display unit and the device's range,
// with the verdict on what is typed under the field. Only accepted values
// reach the parameter object; the page keeps Apply disabled while any field
// holds a value it does not accept.
ColumnLayout {
    id: field

    // The configuration (a RadarDeviceCWConfig: it judges typed values)
    // and the parameter's name; the object names are "cw_" + propertyName
    // (+ "_message").
    property QtObject config: null
    readonly property QtObject target: config ? config.params : null
    property string propertyName: ""
    property alias label: labelText.text
    property string unit: ""
    // Stored value = typed value x scale (1e9 for a frequency typed in GHz).
    property real scale: 1
    property int decimals: 0
    // The parameter holds whole numbers (it is stored rounded).
    property bool whole: false
    // The device's limits in the parameter's unit, as the range shown
    // beside the field.
    property real minimum: 0
    property real maximum: 0
    property QtObject tracker: null
    property int labelWidth: 170
    property int fieldWidth: 90
    property string message: ""
    readonly property bool valid: message.length === 0
    readonly property var shownValue: target ? target[propertyName] : undefined
    readonly property var range: Input.displayRange(minimum, maximum, scale, decimals)

    spacing: 0

    function reset() {
        input.text = Input.show(shownValue, scale, decimals)
        message = ""
    }
    // The configuration's verdict on the value in the parameter's unit; a
    // range it refuses is told in the unit the user typed.
    function judge() {
        var verdict = config.validateField(propertyName, Input.storedText(input.text, scale, whole))
        if (verdict.length > 0 && scale !== 1 && range && Input.isPlainNumber(input.text) && Number(input.text) >= 0)
            verdict = qsTr("Value %1 not in expected range: [%2 - %3] %4").arg(input.text.trim())
                .arg(range.min.toFixed(decimals)).arg(range.max.toFixed(decimals)).arg(unit)
        message = verdict
        if (valid)
            target[propertyName] = Input.toStored(input.text, scale, whole)
    }

    onShownValueChanged: if (!input.activeFocus) reset()
    // New limits (the sampling rate's follow the ADC settings) may turn
    // what is typed right or wrong.
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
            objectName: "cw_" + field.propertyName
            Layout.preferredWidth: field.fieldWidth
            selectByMouse: true
            enabled: field.enabled
            color: field.valid ? palette.text : "#b00020"
            onTextEdited: field.judge()
            // Shows what the object keeps once the typing is over.
            onActiveFocusChanged: if (!activeFocus && field.valid) text = Input.show(field.shownValue, field.scale,
                                                                                     field.decimals)
        }
        Label {
            text: field.unit
            Layout.preferredWidth: 34
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
