import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The transmitter of the CW mode: carrier frequency, DAC code (the output
// power), the share of each second the carrier is on, and the antennas.
GroupBox {
    id: pane
    property QtObject config: null
    property QtObject deviceInfo: null
    property QtObject tracker: null
    readonly property QtObject params: config ? config.params : null
    readonly property QtObject limits: config ? config.limits : null

    title: qsTr("Transmitter")

    ColumnLayout {
        anchors.fill: parent
        spacing: 4
        CWNumberField {
            Layout.fillWidth: true
            config: pane.config; propertyName: "rfCenterFrequency"; tracker: pane.tracker
            label: qsTr("Centre frequency"); unit: "GHz"; scale: 1e9; decimals: 2
            minimum: pane.limits ? pane.limits.rfCenterFrequencyMin : 0
            maximum: pane.limits ? pane.limits.rfCenterFrequencyMax : 0
        }
        RowLayout {
            spacing: 6
            Layout.fillWidth: true
            Label {
                text: qsTr("DAC")
                Layout.preferredWidth: 170
            }
            Slider {
                id: dacSlider
                objectName: "cw_dac"
                Layout.fillWidth: true
                from: pane.limits ? pane.limits.dacMin : 0
                to: pane.limits && pane.limits.dacMax > pane.limits.dacMin ? pane.limits.dacMax : from + 1
                stepSize: 1
                snapMode: Slider.SnapAlways
                value: pane.params ? pane.params.dac : 0
                onMoved: pane.params.dac = Math.round(value)
            }
            Label {
                objectName: "cw_dac_value"
                text: pane.params ? pane.params.dac : "–"
                horizontalAlignment: Text.AlignRight
                Layout.preferredWidth: 36
            }
        }
        CWNumberField {
            Layout.fillWidth: true
            config: pane.config; propertyName: "dutyCycle"; tracker: pane.tracker
            label: qsTr("Duty cycle"); unit: "%"; whole: true
            minimum: 0; maximum: 100
        }
        CWAntennaRow {
            Layout.fillWidth: true
            label: qsTr("Tx antennas")
            kind: "Tx"
            antennas: pane.config ? pane.config.txAntennas : null
            count: pane.deviceInfo ? pane.deviceInfo.numTxAntennas : 0
        }
    }
}
