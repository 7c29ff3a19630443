import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The receive and transmit antennas of the scene. The antenna objects keep
// at least one antenna of each kind and one transmitter at a time; the
// boxes only show what they hold.
GroupBox {
    id: pane
    property QtObject metrics: null
    property QtObject deviceInfo: null
    readonly property int rxCount: deviceInfo ? deviceInfo.numRxAntennas : 0
    readonly property int txCount: deviceInfo ? deviceInfo.numTxAntennas : 0

    title: qsTr("Antennas")

    ColumnLayout {
        anchors.fill: parent
        spacing: 2
        Label {
            visible: pane.rxCount === 0
            text: qsTr("Connect a board to choose its antennas.")
            color: "#6a6a6a"
        }
        RowLayout {
            visible: pane.rxCount > 0
            Label {
                text: qsTr("Receive")
                Layout.preferredWidth: 80
            }
            Repeater {
                model: pane.rxCount
                CheckBox {
                    id: rxBox
                    objectName: "rx_" + (index + 1)
                    text: "Rx" + (index + 1)
                    checked: pane.metrics.rx.numberOfEnabled, pane.metrics.rx.getEnabled(index)
                    onToggled: {
                        pane.metrics.rx.setEnabled(index, checked)
                        // The object may keep an antenna the box let go.
                        checked = Qt.binding(function () {
                            return pane.metrics.rx.numberOfEnabled, pane.metrics.rx.getEnabled(index)
                        })
                    }
                }
            }
        }
        RowLayout {
            visible: pane.txCount > 0
            Label {
                text: qsTr("Transmit")
                Layout.preferredWidth: 80
            }
            Repeater {
                model: pane.txCount
                RadioButton {
                    objectName: "tx_" + (index + 1)
                    text: "Tx" + (index + 1)
                    autoExclusive: false
                    checked: pane.metrics.tx.numberOfEnabled, pane.metrics.tx.getEnabled(index)
                    onToggled: {
                        pane.metrics.tx.setEnabled(index, true)
                        checked = Qt.binding(function () {
                            return pane.metrics.tx.numberOfEnabled, pane.metrics.tx.getEnabled(index)
                        })
                    }
                }
            }
        }
    }
}
