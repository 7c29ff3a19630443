import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The frame of the pulsed-Doppler board: samples (one per pulse), the
// pulse repetition time in microseconds and the frame rate, each between
// the device's limits.
GroupBox {
    id: pane
    // The edited configuration (a ZP7SDeviceConfig).
    property QtObject config: null
    property QtObject tracker: null
    readonly property QtObject params: config ? config.frameParams : null
    readonly property QtObject limits: config ? config.limits : null

    title: qsTr("Frame Configuration")

    ColumnLayout {
        anchors.fill: parent
        spacing: 4
        ZP7NumberField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "numOfSamples"; tracker: pane.tracker
            label: qsTr("Samples per frame"); whole: true
            minimum: pane.limits ? pane.limits.minNumOfSamples : 0
            maximum: pane.limits ? pane.limits.maxNumOfSamples : 0
        }
        ZP7NumberField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "pulseRepetitionTime"; tracker: pane.tracker
            label: qsTr("Pulse repetition time"); unit: "µs"; scale: 1e-6; decimals: 1
            minimum: pane.limits ? pane.limits.minPulseRepetitionTimeS : 0
            maximum: pane.limits ? pane.limits.maxPulseRepetitionTimeS : 0
        }
        // The limits are frame repetition times: the longest gives the
        // lowest rate.
        ZP7NumberField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "frameRepetitionRate"; tracker: pane.tracker
            label: qsTr("Frame rate"); unit: "Hz"; decimals: 3
            minimum: pane.limits && pane.limits.maxFrameRepetitionTimeS > 0 ? 1 / pane.limits.maxFrameRepetitionTimeS : 0
            maximum: pane.limits && pane.limits.minFrameRepetitionTimeS > 0 ? 1 / pane.limits.minFrameRepetitionTimeS : 0
        }
    }
}
