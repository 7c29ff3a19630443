import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "Format.js" as Format

// The chirp and frame parameters the SDK derives from the scene; read only.
// Recalculate asks the device what the edited scene would give.
GroupBox {
    id: pane
    property QtObject parameters: null
    property bool recalculateEnabled: false
    signal recalculate()

    title: qsTr("Device parameters")

    ColumnLayout {
        anchors.fill: parent
        spacing: 2
        ValueRow {
            labelWidth: 180
            label: qsTr("Samples per chirp")
            text: pane.parameters.numSamplesPerChirp
            valueObjectName: "parameterSamplesPerChirp"
        }
        ValueRow {
            labelWidth: 180
            label: qsTr("Chirps per frame")
            text: pane.parameters.numChirpsPerFrame
            valueObjectName: "parameterChirpsPerFrame"
        }
        ValueRow {
            labelWidth: 180
            label: qsTr("Frame repetition time")
            text: Format.seconds(pane.parameters.frameRepetitionTimeS)
        }
        ValueRow {
            labelWidth: 180
            label: qsTr("Chirp repetition time")
            text: Format.seconds(pane.parameters.chirpRepetitionTimeS)
        }
        ValueRow {
            labelWidth: 180
            label: qsTr("Chirp time")
            text: Format.seconds(pane.parameters.chirpTime)
        }
        ValueRow {
            labelWidth: 180
            label: qsTr("Pulse repetition time")
            text: Format.seconds(pane.parameters.pulseRepetitionTimeS)
        }
        ValueRow {
            labelWidth: 180
            label: qsTr("RF band")
            text: Format.band(pane.parameters.lowerFrequencyHz, pane.parameters.upperFrequencyHz)
        }
        ValueRow {
            labelWidth: 180
            label: qsTr("MIMO mode")
            text: pane.parameters.mimoMode
        }
        Button {
            objectName: "recalcButton"
            text: qsTr("Recalculate")
            enabled: pane.recalculateEnabled
            Layout.alignment: Qt.AlignRight
            onClicked: pane.recalculate()
        }
    }
}
