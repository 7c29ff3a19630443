import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import cpp.RadarConstants 1.0

// The receive baseband: high-pass gain and cut-off, band-pass amplifier
// gain and the anti-alias filter. KMR7A and KMR7B have no 160 kHz high pass
// and no anti-alias choice.
GroupBox {
    id: pane
    property QtObject config: null
    property int radarType: RadarConstants.Unknown
    readonly property QtObject params: config ? config.params : null
    readonly property bool smallBaseband: radarType === RadarConstants.KMR7A || radarType === RadarConstants.KMR7B

    title: qsTr("Baseband")

    ColumnLayout {
        anchors.fill: parent
        spacing: 4
        CWChoiceField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "basebandGainHighPass"
            label: qsTr("High-pass gain"); unit: "dB"
            values: [18, 30]
        }
        CWChoiceField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "basebandHpCutoffFreq"
            label: qsTr("High-pass cut-off"); unit: "kHz"
            values: pane.smallBaseband ? [20, 45, 70, 80] : [20, 45, 70, 80, 160]
        }
        CWChoiceField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "basebandGainAmplifier"
            label: qsTr("Amplifier gain"); unit: "dB"
            values: [0, 5, 10, 15, 20, 25, 30]
        }
        CWChoiceField {
            Layout.fillWidth: true
            visible: !pane.smallBaseband
            target: pane.params; propertyName: "basebandAafCutoffFreq"
            label: qsTr("Anti-alias cut-off"); unit: "kHz"
            values: [600, 1000]
        }
    }
}
