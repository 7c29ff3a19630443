import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The enabled antennas of one kind, one box per antenna of the board. The
// antenna object may correct a choice (keep one enabled): the boxes show
// what it keeps.
RowLayout {
    id: row
    property QtObject antennas: null
    property int count: 0
    // "Rx" or "Tx": the boxes' texts and object names ("cw_rx_1").
    property string kind: "Rx"
    property alias label: labelText.text
    property int labelWidth: 170

    spacing: 6
    Label {
        id: labelText
        Layout.preferredWidth: row.labelWidth
    }
    Label {
        visible: row.count === 0
        text: qsTr("Connect a board")
        color: "#6a6a6a"
    }
    Repeater {
        model: row.antennas ? row.count : 0
        CheckBox {
            objectName: "cw_" + row.kind.toLowerCase() + "_" + (index + 1)
            text: row.kind + (index + 1)
            checked: row.antennas.numberOfEnabled, row.antennas.getEnabled(index)
            onToggled: {
                row.antennas.setEnabled(index, checked)
                checked = Qt.binding(function () {
                    return row.antennas.numberOfEnabled, row.antennas.getEnabled(index)
                })
            }
        }
    }
    Item {
        Layout.fillWidth: true
    }
}
