import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import cpp.RadarConstants 1.0

// The chip's test-signal generator: which test it injects and the tone's
// frequency. KMR7A and KMR7B only know the baseband test.
GroupBox {
    id: pane
    property QtObject config: null
    property QtObject tracker: null
    property int radarType: RadarConstants.Unknown
    readonly property QtObject params: config ? config.params : null
    readonly property QtObject limits: config ? config.limits : null
    readonly property bool fewModes: radarType === RadarConstants.KMR7A || radarType === RadarConstants.KMR7B

    title: qsTr("Test signal generator")

    ColumnLayout {
        anchors.fill: parent
        spacing: 4
        CWChoiceField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "testSignalMode"
            label: qsTr("Mode")
            values: pane.fewModes ? ["Off", "Baseband Test"]
                                  : ["Off", "Baseband Test", "Toggle TX Enable", "Toggle DAC Value", "RX Self Test"]
        }
        CWNumberField {
            Layout.fillWidth: true
            config: pane.config; propertyName: "testSignalFrequency"; tracker: pane.tracker
            label: qsTr("Frequency"); unit: "kHz"; scale: 1e3; decimals: 2
            minimum: pane.limits ? pane.limits.testSignalFrequencyMin : 0
            maximum: pane.limits ? pane.limits.testSignalFrequencyMax : 0
        }
    }
}
