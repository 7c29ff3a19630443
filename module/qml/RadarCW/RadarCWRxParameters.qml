import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The receivers of the CW mode: antennas, samples per frame and the
// sampling rate, whose limits follow the ADC settings.
GroupBox {
    id: pane
    property QtObject config: null
    property QtObject deviceInfo: null
    property QtObject tracker: null
    readonly property QtObject params: config ? config.params : null
    readonly property QtObject limits: config ? config.limits : null

    title: qsTr("Receivers")

    ColumnLayout {
        anchors.fill: parent
        spacing: 4
        CWAntennaRow {
            Layout.fillWidth: true
            label: qsTr("Rx antennas")
            kind: "Rx"
            antennas: pane.config ? pane.config.rxAntennas : null
            count: pane.deviceInfo ? pane.deviceInfo.numRxAntennas : 0
        }
        CWSamplesField {
            Layout.fillWidth: true
            config: pane.config
            tracker: pane.tracker
            minimum: pane.limits ? pane.limits.rxNumSamplesMin : 0
            maximum: pane.limits ? pane.limits.rxNumSamplesMax : 0
        }
        CWNumberField {
            Layout.fillWidth: true
            config: pane.config; propertyName: "samplingRate"; tracker: pane.tracker
            label: qsTr("Sampling rate"); unit: "kHz"; scale: 1e3; decimals: 2; whole: true
            minimum: pane.limits ? pane.limits.samplingRateMin : 0
            maximum: pane.limits ? pane.limits.samplingRateMax : 0
        }
    }
}
