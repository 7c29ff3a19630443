import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// One figure of the status line: a quiet caption and its value.
RowLayout {
    id: field
    property string caption
    property var value
    property bool alert: false
    property color alertColor: "#a36b00"
    property bool separator: true
    property string hint
    // The value as shown, for tests and tool tips.
    readonly property string text: caption + " " + valueLabel.text
    spacing: 6

    Label {
        text: field.caption
        color: "#6a6a6a"
        font.pixelSize: 12
    }
    Label {
        id: valueLabel
        text: field.value === undefined ? "" : String(field.value)
        font.pixelSize: 12
        font.bold: true
        color: field.alert ? field.alertColor : palette.text
        elide: Text.ElideMiddle
        Layout.fillWidth: field.Layout.fillWidth
        Layout.minimumWidth: 24

        MouseArea {
            id: hover
            anchors.fill: parent
            hoverEnabled: field.hint !== ""
        }
        ToolTip.visible: hover.containsMouse
        ToolTip.text: field.hint
    }
    Rectangle {
        visible: field.separator
        Layout.leftMargin: 8
        Layout.rightMargin: 10
        width: 1
        height: 14
        color: "#c4c4c4"
    }
}
