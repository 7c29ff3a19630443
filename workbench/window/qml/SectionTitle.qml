import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The title of a panel, with a quieter note on the right.
RowLayout {
    property alias text: title.text
    property alias detail: note.text
    Layout.fillWidth: true
    spacing: 6

    Label {
        id: title
        font.bold: true
        font.pixelSize: 13
    }
    Item {
        Layout.fillWidth: true
    }
    Label {
        id: note
        font.pixelSize: 11
        color: "#6a6a6a"
    }
}
