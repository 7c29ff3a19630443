import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// A read-only value with its label.
RowLayout {
    property alias label: labelText.text
    property alias text: valueText.text
    property alias valueObjectName: valueText.objectName
    property int labelWidth: 180

    spacing: 6
    Label {
        id: labelText
        Layout.preferredWidth: parent.labelWidth
        elide: Text.ElideRight
        color: "#4a4a4a"
    }
    Label {
        id: valueText
        Layout.fillWidth: true
        elide: Text.ElideRight
        font.bold: true
    }
}
