import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The page of the pulsed-Doppler (ZP7) mode: the I/Q signal and the Doppler
// spectrum of the running acquisition, the pulse and frame configuration,
// the recording and what the board tells about itself, on four tabs. It
// binds to the "zp7sView" the module sets up and keeps no state of its own
// beyond what is being typed and the last message.
Item {
    id: root
    objectName: "ZP7SModule"

    implicitWidth: 1280
    implicitHeight: 800

    readonly property QtObject view: zp7sView
    property string notice: ""

    Connections {
        target: root.view
        function onEnqueueUserMessage(type, message, details) {
            root.notice = details ? message + " (" + details + ")" : message
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        TabBar {
            id: tabs
            Layout.fillWidth: true
            TabButton {
                objectName: "zp7ChartsTab"
                text: qsTr("Charts")
            }
            TabButton {
                objectName: "zp7ConfigurationTab"
                text: qsTr("Configuration")
            }
            TabButton {
                objectName: "zp7RecordingTab"
                text: root.view.isRecordingActive ? qsTr("Recording ●") : qsTr("Recording")
            }
            TabButton {
                objectName: "zp7DeviceTab"
                text: qsTr("Device")
            }
        }

        Rectangle {
            objectName: "zp7Notice"
            visible: root.notice.length > 0
            Layout.fillWidth: true
            Layout.margins: 6
            Layout.bottomMargin: 0
            implicitHeight: noticeRow.implicitHeight + 8
            color: "#fff4e0"
            border.color: "#e0b060"
            radius: 3
            RowLayout {
                id: noticeRow
                anchors.fill: parent
                anchors.margins: 4
                Label {
                    objectName: "zp7NoticeText"
                    text: root.notice
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }
                ToolButton {
                    objectName: "zp7NoticeClose"
                    text: "✕"
                    onClicked: root.notice = ""
                }
            }
        }

        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: tabs.currentIndex

            ZP7SChartsPage {
                objectName: "zp7ChartsPage"
                view: root.view
            }
            ZP7SConfigurationPage {
                objectName: "zp7ConfigurationPage"
                view: root.view
            }
            ZP7SRecordingPage {
                objectName: "zp7RecordingPage"
                view: root.view
            }
            ZP7SDevicePage {
                objectName: "zp7DevicePage"
                view: root.view
            }
        }
    }
}
