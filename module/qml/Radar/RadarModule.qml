import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The page of the FMCW standard mode: live charts, the configuration, the
// recording and what the board tells about itself, on four tabs. It binds to
// the "radarView" the module sets up and keeps no state of its own.
Item {
    id: root
    objectName: "RadarModule"

    implicitWidth: 1280
    implicitHeight: 800

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        TabBar {
            id: tabs
            Layout.fillWidth: true
            TabButton {
                objectName: "chartsTab"
                text: qsTr("Charts")
            }
            TabButton {
                objectName: "configurationTab"
                text: qsTr("Configuration")
            }
            TabButton {
                objectName: "recordingTab"
                text: radarView.isRecordingActive ? qsTr("Recording ●") : qsTr("Recording")
            }
            TabButton {
                objectName: "deviceTab"
                text: qsTr("Device")
            }
        }

        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: tabs.currentIndex

            ChartsPage {
                objectName: "chartsPage"
            }
            ConfigurationPage {
                objectName: "configurationPage"
            }
            RecordingPage {
                objectName: "recordingPage"
            }
            DevicePage {
                objectName: "devicePage"
            }
        }
    }
}
