import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The pulse of the pulsed-Doppler board: which Tx/Rx pair pulses (one pair
// at a time, so two exclusive buttons), the Tx power level and the analog
// baseband gain, each within the device's limits.
GroupBox {
    id: pane
    // The edited configuration (a ZP7SDeviceConfig).
    property QtObject config: null
    readonly property QtObject params: config ? config.pulseConfigParams : null
    readonly property QtObject limits: config ? config.limits : null
    readonly property QtObject rx: params ? params.rxAntennas : null
    readonly property QtObject tx: params ? params.txAntennas : null
    property int labelWidth: 185

    // The pair the buttons show: Tx1Rx1 when Tx antenna 1 is on, else
    // Tx2Rx2; none while either set is empty. Reading the counts re-reads
    // it whenever a set changes.
    readonly property int shownChannel: {
        if (!rx || !tx || rx.numberOfEnabled === 0 || tx.numberOfEnabled === 0)
            return -1
        return tx.getEnabled(0) ? 0 : 1
    }
    readonly property var gainLabels: limits ? limits.abbGainLabels : []

    title: qsTr("Pulse Configuration")

    ColumnLayout {
        anchors.fill: parent
        spacing: 6

        RowLayout {
            spacing: 6
            Label {
                text: qsTr("Channel")
                Layout.preferredWidth: pane.labelWidth
            }
            ButtonGroup {
                id: channelGroup
                exclusive: true
            }
            Repeater {
                model: ["Tx1Rx1", "Tx2Rx2"]
                Button {
                    objectName: "zp7_channel_" + (index + 1)
                    text: modelData
                    checkable: true
                    // The style's checked look is faint: the pair in use stands out.
                    highlighted: checked
                    ButtonGroup.group: channelGroup
                    enabled: pane.params !== null
                    checked: pane.shownChannel === index
                    onClicked: {
                        pane.params.selectChannel(index)
                        checked = Qt.binding(function () { return pane.shownChannel === index })
                    }
                }
            }
            Item {
                Layout.fillWidth: true
            }
        }

        RowLayout {
            spacing: 6
            Label {
                text: qsTr("Tx power level")
                Layout.preferredWidth: pane.labelWidth
            }
            SpinBox {
                id: power
                objectName: "zp7_txPowerLevel"
                Layout.preferredWidth: 150
                enabled: pane.params !== null
                from: pane.limits ? pane.limits.minTxPowerLevel : 0
                to: pane.limits ? pane.limits.maxTxPowerLevel : 0
                value: pane.params ? pane.params.txPowerLevel : 0
                editable: true
                onValueModified: pane.params.txPowerLevel = value
            }
            Label {
                objectName: "zp7_txPowerLevel_range"
                text: power.to > power.from ? "[" + power.from + " – " + power.to + "]" : ""
                color: "#6a6a6a"
                font.pixelSize: 12
                Layout.fillWidth: true
            }
        }

        RowLayout {
            spacing: 6
            Label {
                text: qsTr("Baseband gain")
                Layout.preferredWidth: pane.labelWidth
            }
            ComboBox {
                id: gain
                objectName: "zp7_abbGain"
                Layout.preferredWidth: 150
                enabled: pane.params !== null && pane.gainLabels.length > 0
                model: pane.gainLabels
                // A gain the device does not offer (a file of another
                // board) is shown as its number.
                currentIndex: pane.limits && pane.params ? (pane.gainLabels, pane.limits.abbGainChoiceOf(pane.params.abbGain)) : -1
                displayText: currentIndex >= 0 ? currentText : pane.params && pane.params.abbGain > 0 ? String(pane.params.abbGain) : ""
                onActivated: {
                    pane.params.abbGain = pane.limits.abbGainValueAt(index)
                    currentIndex = Qt.binding(function () {
                        return pane.limits && pane.params ? (pane.gainLabels, pane.limits.abbGainChoiceOf(pane.params.abbGain)) : -1
                    })
                }
            }
            Label {
                text: qsTr("factor / dB")
                color: "#6a6a6a"
                font.pixelSize: 12
                Layout.fillWidth: true
            }
        }
    }
}
