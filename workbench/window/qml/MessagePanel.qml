import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// Everything the module and the window tell the user, newest last: type,
// time, text and, on a click, the details. Clear empties the list.
Pane {
    id: panel
    padding: 0

    property bool expanded: true
    readonly property int implicitHeaderHeight: headerRow.implicitHeight + 1
    readonly property var messages: workbench.messages

    background: Rectangle {
        color: palette.base
        Rectangle {
            width: parent.width
            height: 1
            color: "#c4c4c4"
        }
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.topMargin: 1
        spacing: 0

        RowLayout {
            id: headerRow
            Layout.fillWidth: true
            Layout.leftMargin: 10
            Layout.rightMargin: 6
            spacing: 8

            ToolButton {
                objectName: "messagesToggle"
                text: panel.expanded ? "▾" : "▸"
                font.pixelSize: 12
                implicitWidth: 24
                implicitHeight: 24
                onClicked: panel.expanded = !panel.expanded
            }
            Label {
                text: qsTr("Messages")
                font.bold: true
            }
            Label {
                objectName: "messageCount"
                text: panel.messages.count === 0 ? qsTr("none")
                      : panel.messages.errorCount === 1 ? qsTr("%1 (1 error)").arg(panel.messages.count)
                      : panel.messages.errorCount > 1
                        ? qsTr("%1 (%2 errors)").arg(panel.messages.count).arg(panel.messages.errorCount)
                        : String(panel.messages.count)
                color: panel.messages.errorCount > 0 ? "#b3261e" : "#6a6a6a"
            }
            Item {
                Layout.fillWidth: true
            }
            Button {
                objectName: "clearMessagesButton"
                text: qsTr("Clear")
                flat: true
                enabled: panel.messages.count > 0
                onClicked: panel.messages.clear()
            }
        }

        ListView {
            id: messageList
            objectName: "messageList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: panel.expanded
            clip: true
            model: panel.messages
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}
            // The newest message is the one to see.
            onCountChanged: Qt.callLater(positionViewAtEnd)

            delegate: ItemDelegate {
                id: entry
                objectName: "message_" + index
                width: ListView.view.width
                padding: 4
                leftPadding: 10
                property bool open: false
                readonly property bool hasDetails: model.details !== ""
                onClicked: if (hasDetails) open = !open

                contentItem: ColumnLayout {
                    spacing: 2
                    RowLayout {
                        spacing: 8
                        Layout.fillWidth: true
                        Rectangle {
                            Layout.preferredWidth: 62
                            Layout.preferredHeight: 18
                            radius: 3
                            color: model.type === 2 ? "#fde7e6" : model.type === 1 ? "#fff3d6" : "#e3eefb"
                            border.color: model.type === 2 ? "#b3261e" : model.type === 1 ? "#a36b00" : "#2a64b0"
                            Label {
                                anchors.centerIn: parent
                                text: model.typeName
                                font.pixelSize: 11
                                font.bold: true
                                color: parent.border.color
                            }
                        }
                        Label {
                            text: model.time
                            font.pixelSize: 11
                            color: "#6a6a6a"
                        }
                        Label {
                            objectName: "messageText"
                            text: model.text
                            Layout.fillWidth: true
                            elide: Text.ElideRight
                        }
                        Label {
                            text: model.source
                            font.pixelSize: 11
                            color: "#6a6a6a"
                        }
                        Label {
                            visible: entry.hasDetails
                            text: entry.open ? qsTr("hide details") : qsTr("details")
                            font.pixelSize: 11
                            color: "#2a64b0"
                        }
                    }
                    Label {
                        objectName: "messageDetails"
                        visible: entry.open
                        text: model.details
                        wrapMode: Text.Wrap
                        textFormat: Text.PlainText
                        Layout.fillWidth: true
                        Layout.leftMargin: 70
                        font.pixelSize: 12
                        color: "#404040"
                    }
                }
            }

            Label {
                anchors.centerIn: parent
                visible: messageList.count === 0
                text: qsTr("No messages")
                color: "#6a6a6a"
            }
        }
    }
}
