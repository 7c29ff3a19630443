import QtQuick 2.15
import QtQuick.Window 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The workbench's main window: boards and playback on the left, the active
// mode's page (or the host's settings, or the baseboards' flashers) in the
// middle, the messages below it and the status line at the bottom.
ApplicationWindow {
    id: window
    objectName: "workbenchWindow"
    title: qsTr("Tavrin Workbench")
    width: 1440
    height: 900
    minimumWidth: 1024
    minimumHeight: 640
    visible: true

    property bool showSettings: false
    property bool showFlashers: false
    readonly property bool boardConnected: workbench.boards.connectedBoard !== ""
    // The board whose family picks the page: the connected one, or none.
    readonly property int activeShieldType: boardConnected ? workbench.boards.connectedShieldType : 0

    onClosing: function (close) {
        close.accepted = workbench.finishSession()
    }

    header: ToolBar {
        objectName: "toolBar"
        topPadding: 4
        bottomPadding: 4

        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 12
            anchors.rightMargin: 8
            spacing: 10

            Label {
                text: qsTr("Tavrin Workbench")
                font.bold: true
                font.pixelSize: 15
            }
            ToolSeparator {}
            Label {
                text: qsTr("Mode")
            }
            ComboBox {
                id: modeSelector
                objectName: "modeSelector"
                Layout.preferredWidth: 150
                model: radarCoordinator.submodules
                // A mode is chosen for a board: one that is connected, or one
                // the last mode could not open.
                enabled: window.boardConnected || workbench.boards.refusedBoard !== ""
                currentIndex: model.indexOf(radarCoordinator.userMode)
                displayText: radarCoordinator.userMode
                onActivated: function (index) {
                    workbench.boards.selectMode(textAt(index))
                    currentIndex = Qt.binding(function () {
                        return modeSelector.model.indexOf(radarCoordinator.userMode)
                    })
                }
                ToolTip.visible: hovered && !enabled
                ToolTip.text: qsTr("Connect a board to choose its mode")
            }
            Label {
                objectName: "sourceLabel"
                text: window.boardConnected
                      ? qsTr("%1 connected").arg(workbench.boards.connectedBoard)
                      : workbench.playback.opened ? qsTr("Playing back a recording")
                                                  : qsTr("No board connected")
                color: window.boardConnected || workbench.playback.opened ? palette.text : "#6a6a6a"
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
            ToolButton {
                objectName: "flashersButton"
                // A job running out of sight is still shown.
                text: window.showFlashers ? qsTr("Back to the radar")
                      : workbench.flashers.list.busy ? qsTr("Flashers: flashing…") : qsTr("Flashers")
                checkable: true
                checked: window.showFlashers
                onClicked: {
                    window.showFlashers = checked
                    if (checked)
                        window.showSettings = false
                }
                ToolTip.visible: hovered
                ToolTip.text: qsTr("Update the firmware of the radar baseboards")
            }
            ToolButton {
                objectName: "settingsButton"
                text: window.showSettings ? qsTr("Back to the radar") : qsTr("Settings")
                checkable: true
                checked: window.showSettings
                onClicked: {
                    window.showSettings = checked
                    if (checked)
                        window.showFlashers = false
                }
            }
        }
    }

    footer: StatusLine {
        objectName: "statusLine"
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        // Boards and playback.
        Pane {
            Layout.fillHeight: true
            Layout.preferredWidth: 290
            padding: 10
            background: Rectangle {
                color: palette.window
                Rectangle {
                    anchors.right: parent.right
                    width: 1
                    height: parent.height
                    color: "#c4c4c4"
                }
            }

            ColumnLayout {
                anchors.fill: parent
                spacing: 12

                BoardPanel {
                    id: boardPanel
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                }
                PlaybackPanel {
                    Layout.fillWidth: true
                }
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0

            StackLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                currentIndex: window.showSettings ? 1 : window.showFlashers ? 2 : 0

                Loader {
                    id: modulePage
                    objectName: "modulePage"
                    // A recording plays on the page of the boards that make it.
                    source: !window.boardConnected && workbench.playback.opened
                            ? workbench.pages.pageForPlayback(radarCoordinator.userMode, workbench.playback.playbackName)
                            : workbench.pages.pageFor(radarCoordinator.userMode, window.activeShieldType)
                    asynchronous: false
                    onStatusChanged: {
                        if (status === Loader.Error)
                            workbench.messages.add(2, qsTr("The page of the %1 mode cannot be shown")
                                                   .arg(radarCoordinator.userMode), source.toString())
                    }
                }
                SettingsPage {
                    objectName: "settingsPage"
                }
                FlasherPage {
                    objectName: "flasherPage"
                }
            }

            MessagePanel {
                Layout.fillWidth: true
                Layout.preferredHeight: expanded ? 170 : implicitHeaderHeight
            }
        }
    }

    // Shown while the window waits for a text copy before it closes.
    Popup {
        objectName: "closingPopup"
        anchors.centerIn: parent
        modal: true
        closePolicy: Popup.NoAutoClose
        visible: workbench.closingReason !== ""
        padding: 20

        ColumnLayout {
            spacing: 12
            Label {
                text: workbench.closingReason
                wrapMode: Text.WordWrap
                Layout.maximumWidth: 420
            }
            Button {
                visible: !workbench.closingWaitsForFlashing
                text: qsTr("Stop the text copy and close")
                Layout.alignment: Qt.AlignRight
                onClicked: workbench.abandonTextCopy()
            }
            RowLayout {
                visible: workbench.closingWaitsForFlashing
                Layout.alignment: Qt.AlignRight
                spacing: 8
                Button {
                    objectName: "keepOpenButton"
                    text: qsTr("Keep the window open")
                    onClicked: workbench.cancelClosing()
                }
                Button {
                    objectName: "closeWhileFlashingButton"
                    text: qsTr("Close without waiting")
                    onClicked: workbench.closeWithoutFlashing()
                }
            }
        }
    }
}
