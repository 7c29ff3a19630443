import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "CWInput.js" as Input

// Samples per antenna and frame: typed, or picked from the powers of two
// the drop-down offers. The receivers take an even count from 2 to 4094,
// within what the device tells.
ColumnLayout {
    id: field

    // The configuration (a RadarDeviceCWConfig: it judges typed values).
    property QtObject config: null
    readonly property QtObject target: config ? config.params : null
    readonly property string propertyName: "rxNumSamples"
    property QtObject tracker: null
    property real minimum: 0
    property real maximum: 0
    property int labelWidth: 170
    property string message: ""
    readonly property bool valid: message.length === 0
    readonly property var shownValue: target ? target[propertyName] : undefined
    readonly property var choices: [2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048]
    // The receivers' own bounds, narrowed by the device's limits once known.
    readonly property var range: {
        var known = Input.displayRange(minimum, maximum, 1, 0)
        return { min: known ? Math.max(2, known.min) : 2, max: known ? Math.min(4094, known.max) : 4094 }
    }

    spacing: 0

    // Choosing an entry replaces the text; while the user types, neither
    // changes under the keys.
    function reset() {
        box.currentIndex = choices.indexOf(shownValue)
        box.editText = shownValue === undefined ? "" : String(shownValue)
        message = ""
    }
    function judge(text) {
        message = config.validateField(propertyName, text)
        if (valid)
            target[propertyName] = Number(text.trim())
    }

    onShownValueChanged: if (!box.activeFocus) reset()
    onRangeChanged: if (!valid) judge(box.editText)

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
            text: qsTr("Samples per frame")
            Layout.preferredWidth: field.labelWidth
        }
        ComboBox {
            id: box
            objectName: "cw_rxNumSamples"
            editable: true
            Layout.preferredWidth: 110
            model: field.choices
            onActivated: field.judge(String(field.choices[index]))
            onAccepted: field.judge(editText)
            onActiveFocusChanged: if (!activeFocus && field.valid) field.reset()
            Connections {
                target: box.contentItem
                ignoreUnknownSignals: true
                function onTextEdited() { field.judge(box.contentItem.text) }
            }
        }
        Label {
            text: qsTr("[%1 – %2, even]").arg(field.range.min).arg(field.range.max)
            color: "#6a6a6a"
            font.pixelSize: 12
            Layout.fillWidth: true
            elide: Text.ElideRight
        }
    }
    Label {
        objectName: "cw_rxNumSamples_message"
        text: field.message
        visible: !field.valid
        color: "#b00020"
        wrapMode: Text.Wrap
        Layout.leftMargin: field.labelWidth + 6
        Layout.fillWidth: true
    }
}
