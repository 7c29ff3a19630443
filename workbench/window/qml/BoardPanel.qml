import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The boards the module detected, as they are plugged and unplugged, with
// Connect and Disconnect for the selected one.
ColumnLayout {
    id: panel
    spacing: 6

    readonly property var boards: workbench.boards
    readonly property bool selectedIsConnected: boardList.currentItem !== null
                                                && boardList.currentItem.boardName === boards.connectedBoard

    SectionTitle {
        text: qsTr("Boards")
        detail: boardList.count === 1 ? qsTr("1 found") : qsTr("%1 found").arg(boardList.count)
    }

    Frame {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 120
        padding: 1

        ListView {
            id: boardList
            objectName: "boardList"
            anchors.fill: parent
            clip: true
            model: panel.boards
            currentIndex: panel.boards.preferredIndex()
            boundsBehavior: Flickable.StopAtBounds

            // The list is rebuilt whenever a board comes or goes: keep a
            // board selected, the connected one first.
            onCountChanged: {
                if (currentIndex < 0 || currentIndex >= count)
                    currentIndex = panel.boards.preferredIndex()
            }

            delegate: ItemDelegate {
                id: boardDelegate
                objectName: "board_" + model.name
                readonly property string boardName: model.name
                width: ListView.view.width
                padding: 8
                // A quiet selection keeps the board's details readable.
                background: Rectangle {
                    color: boardDelegate.ListView.isCurrentItem ? "#dce8f7"
                           : boardDelegate.hovered ? "#f0f4fa" : "transparent"
                    Rectangle {
                        width: parent.width
                        height: 1
                        anchors.bottom: parent.bottom
                        color: "#e2e2e2"
                    }
                }
                onClicked: boardList.currentIndex = index
                onDoubleClicked: {
                    boardList.currentIndex = index
                    if (!model.connected)
                        panel.boards.connectBoard(model.name)
                }

                contentItem: RowLayout {
                    spacing: 8
                    Rectangle {
                        Layout.alignment: Qt.AlignTop
                        Layout.topMargin: 5
                        width: 10
                        height: 10
                        radius: 5
                        color: model.connected ? "#2e9d44" : "transparent"
                        border.color: model.connected ? "#2e9d44" : "#6a6a6a"
                        border.width: 1.5
                    }
                    ColumnLayout {
                        spacing: 1
                        Layout.fillWidth: true
                        Label {
                            text: model.name
                            font.bold: true
                            elide: Text.ElideRight
                            Layout.fillWidth: true
                        }
                        Label {
                            text: model.typeName
                            font.pixelSize: 11
                            elide: Text.ElideRight
                            Layout.fillWidth: true
                        }
                        Label {
                            text: qsTr("uuid %1").arg(model.uuid)
                            font.pixelSize: 11
                            color: "#6a6a6a"
                            elide: Text.ElideMiddle
                            Layout.fillWidth: true
                        }
                        Label {
                            objectName: "boardState"
                            text: model.connected ? qsTr("Connected") : qsTr("Not connected")
                            font.pixelSize: 11
                            color: model.connected ? "#2e7d32" : "#6a6a6a"
                        }
                    }
                }
            }

            Label {
                anchors.centerIn: parent
                width: parent.width - 24
                visible: boardList.count === 0
                text: qsTr("No board found.\nPlug one in: the list follows.")
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WordWrap
                color: "#6a6a6a"
            }
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 6
        Button {
            objectName: "connectButton"
            text: qsTr("Connect")
            Layout.fillWidth: true
            highlighted: enabled
            enabled: boardList.currentItem !== null && !panel.selectedIsConnected
            onClicked: panel.boards.connectBoard(boardList.currentItem.boardName)
        }
        Button {
            objectName: "disconnectButton"
            text: qsTr("Disconnect")
            Layout.fillWidth: true
            enabled: panel.boards.connectedBoard !== ""
            onClicked: panel.boards.disconnectBoard()
        }
    }
}
