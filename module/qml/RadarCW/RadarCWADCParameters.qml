import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The ADC: sample time, tracking conversions, oversampling and the doubled
// MSB time. Each choice moves the sampling rate's limits, which the
// configuration recomputes (and clamps the rate into).
GroupBox {
    id: pane
    property QtObject config: null
    readonly property QtObject params: config ? config.params : null

    title: qsTr("ADC")

    ColumnLayout {
        anchors.fill: parent
        spacing: 4
        CWChoiceField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "adcSamplingTime"
            label: qsTr("Sample time"); unit: "ns"
            values: [50, 100, 200, 400]
        }
        CWChoiceField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "adcNumOfConversions"
            label: qsTr("Tracking")
            values: ["No tracking", "1 conversion", "3 conversions", "7 conversions"]
        }
        CWChoiceField {
            Layout.fillWidth: true
            target: pane.params; propertyName: "adcOversamplingFactor"
            label: qsTr("Oversampling")
            values: ["Off", "2x", "4x", "8x"]
        }
        RowLayout {
            spacing: 6
            Label {
                text: qsTr("Double MSB time")
                Layout.preferredWidth: 170
            }
            CheckBox {
                objectName: "cw_adcDoubleMSB"
                checked: pane.params ? pane.params.adcDoubleMSB : false
                onToggled: {
                    pane.params.adcDoubleMSB = checked
                    checked = Qt.binding(function () { return pane.params ? pane.params.adcDoubleMSB : false })
                }
            }
        }
    }
}
