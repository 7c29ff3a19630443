import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The baseboards' flashers, as the module finds them on the serial ports
// (also boards waiting in their bootloader): each one's status, and for the
// selected one the image to write, Flash, the progress with its phase, the
// job's messages as they come and how it ended.
Pane {
    id: page
    padding: 16

    readonly property var control: workbench.flashers
    readonly property var flashers: workbench.flashers.list
    readonly property var current: flasherList.currentItem
    readonly property bool running: current !== null && current.outcome === "running"
    // The flasher the user picked, kept while the list is rebuilt around it.
    property string selectedName: ""
    // Images the user chose, by flasher; the others write their newest image.
    property var chosenImages: ({})

    function outcomeColour(outcome) {
        return outcome === "success" ? "#2e7d32" : outcome === "failure" ? "#b3261e"
             : outcome === "running" ? "#2a64b0" : "#6a6a6a"
    }
    function outcomeBackground(outcome) {
        return outcome === "success" ? "#e6f4ea" : outcome === "failure" ? "#fde7e6"
             : outcome === "running" ? "#e3eefb" : "#f0f0f0"
    }
    // What each status means, beside its name.
    function statusText(statusName) {
        const meanings = {
            "NOT_STARTED": qsTr("no job has run on this board"),
            "NO_DEVICE": qsTr("the baseboard was not found"),
            "STARTED": qsTr("activating the bootloader"),
            "BOOTLOADER": qsTr("the board answered in its bootloader"),
            "BOOTLOADER_FAILURE": qsTr("the bootloader could not be activated"),
            "FLASHING": qsTr("the image is being written"),
            "FLASHING_FAILURE": qsTr("writing the image failed"),
            "FINISHED_SUCCESS": qsTr("the board runs the new firmware"),
            "FINISHED_FAILURE": qsTr("the job failed"),
            "TIMEOUT": qsTr("the job exceeded its time limit")
        }
        return meanings[statusName] ? statusName + ": " + meanings[statusName] : statusName
    }
    function imageFor(item) {
        if (!item)
            return ""
        const chosen = chosenImages[item.flasherName]
        return chosen !== undefined ? chosen : item.image
    }
    function choose(path) {
        if (!current)
            return
        var images = Object.assign({}, chosenImages)
        images[current.flasherName] = path.startsWith("file://") ? decodeURIComponent(path.substring(7)) : path
        chosenImages = images
    }
    function select(index) {
        flasherList.currentIndex = index
        selectedName = flasherList.currentItem ? flasherList.currentItem.flasherName : ""
    }

    Connections {
        target: page.flashers
        // Boards come and go: the picked flasher stays picked while it is there.
        function onModelReset() {
            Qt.callLater(function () {
                const index = page.flashers.indexOf(page.selectedName)
                flasherList.currentIndex = index >= 0 ? index : (flasherList.count > 0 ? 0 : -1)
            })
        }
    }

    RowLayout {
        anchors.fill: parent
        spacing: 16

        // The flashers.
        ColumnLayout {
            Layout.preferredWidth: 280
            Layout.fillHeight: true
            spacing: 6

            SectionTitle {
                text: qsTr("Baseboards")
                detail: flasherList.count === 1 ? qsTr("1 found") : qsTr("%1 found").arg(flasherList.count)
            }
            Frame {
                Layout.fillWidth: true
                Layout.fillHeight: true
                padding: 1

                ListView {
                    id: flasherList
                    objectName: "flasherList"
                    anchors.fill: parent
                    clip: true
                    model: page.flashers
                    boundsBehavior: Flickable.StopAtBounds

                    delegate: ItemDelegate {
                        id: flasherDelegate
                        objectName: "flasher_" + model.name
                        readonly property string flasherName: model.name
                        readonly property string statusName: model.statusName
                        readonly property string outcome: model.outcome
                        readonly property int progress: model.progress
                        readonly property string phase: model.phase
                        readonly property string message: model.message
                        readonly property var messages: model.messages
                        readonly property string image: model.image
                        readonly property string folder: model.folder
                        width: ListView.view.width
                        padding: 8
                        background: Rectangle {
                            color: flasherDelegate.ListView.isCurrentItem ? "#dce8f7"
                                   : flasherDelegate.hovered ? "#f0f4fa" : "transparent"
                            Rectangle {
                                width: parent.width
                                height: 1
                                anchors.bottom: parent.bottom
                                color: "#e2e2e2"
                            }
                        }
                        onClicked: page.select(index)

                        contentItem: ColumnLayout {
                            spacing: 4
                            RowLayout {
                                Layout.fillWidth: true
                                spacing: 8
                                Label {
                                    text: model.name
                                    font.bold: true
                                    elide: Text.ElideRight
                                    Layout.fillWidth: true
                                }
                                Rectangle {
                                    Layout.preferredWidth: stateText.implicitWidth + 12
                                    Layout.preferredHeight: 18
                                    radius: 3
                                    color: page.outcomeBackground(model.outcome)
                                    border.color: page.outcomeColour(model.outcome)
                                    Label {
                                        id: stateText
                                        objectName: "flasherState"
                                        anchors.centerIn: parent
                                        text: model.statusName
                                        font.pixelSize: 10
                                        font.bold: true
                                        color: parent.border.color
                                    }
                                }
                            }
                            ProgressBar {
                                Layout.fillWidth: true
                                visible: model.outcome === "running"
                                from: 0
                                to: 100
                                value: model.progress
                            }
                        }
                    }

                    Label {
                        anchors.centerIn: parent
                        width: parent.width - 24
                        visible: flasherList.count === 0
                        text: qsTr("No baseboard found.\nPlug one in, also in its bootloader: the list follows.")
                        horizontalAlignment: Text.AlignHCenter
                        wrapMode: Text.WordWrap
                        color: "#6a6a6a"
                    }
                }
            }
        }

        // The selected flasher.
        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 10
            enabled: page.current !== null

            SectionTitle {
                text: page.current ? page.current.flasherName : qsTr("No baseboard selected")
                detail: page.current ? qsTr("firmware folder %1").arg(page.current.folder) : ""
            }

            RowLayout {
                Layout.fillWidth: true
                spacing: 6
                Label {
                    text: qsTr("Image")
                    color: "#4a4a4a"
                    Layout.preferredWidth: 60
                }
                TextField {
                    id: imageField
                    objectName: "flasherImage"
                    Layout.fillWidth: true
                    selectByMouse: true
                    enabled: !page.running
                    placeholderText: qsTr("No image in the firmware folder: choose one")
                    text: page.imageFor(page.current)
                    onTextEdited: page.choose(text)
                    ToolTip.visible: hovered && text.length > 0
                    ToolTip.text: text
                }
                Button {
                    objectName: "flasherChooseImage"
                    text: qsTr("Choose image…")
                    enabled: !page.running
                    onClicked: {
                        if (dialogLoader.item) {
                            if (page.current)
                                dialogLoader.item.folder = "file://" + page.current.folder
                            dialogLoader.item.open()
                        } else {
                            imageField.forceActiveFocus()
                        }
                    }
                }
            }

            Label {
                objectName: "flasherDisconnectNote"
                Layout.fillWidth: true
                visible: workbench.boards.connectedBoard !== "" && !page.running
                text: qsTr("%1 is connected: flashing disconnects it first, since a board in its bootloader "
                           + "leaves the device list.").arg(workbench.boards.connectedBoard)
                wrapMode: Text.WordWrap
                font.pixelSize: 12
                color: "#a36b00"
            }

            // Flash, and the job's progress with its phase.
            RowLayout {
                Layout.fillWidth: true
                spacing: 10
                Button {
                    Layout.preferredWidth: 110
                    objectName: "flashButton"
                    text: qsTr("Flash")
                    highlighted: enabled
                    // One job per board at a time.
                    enabled: page.current !== null && !page.running && imageField.text.trim() !== ""
                    onClicked: page.control.flash(page.current.flasherName, imageField.text)
                }
                ProgressBar {
                    objectName: "flasherProgress"
                    Layout.fillWidth: true
                    from: 0
                    to: 100
                    value: page.current ? page.current.progress : 0
                }
                Label {
                    objectName: "flasherPhase"
                    Layout.preferredWidth: 150
                    text: !page.current ? ""
                          : page.running ? qsTr("%1 %2 %").arg(page.current.phase || qsTr("Starting"))
                                                         .arg(page.current.progress)
                          : qsTr("%1 %").arg(page.current.progress)
                    font.bold: page.running
                }
            }

            // How the job stands or ended.
            Rectangle {
                id: resultBox
                objectName: "flasherResult"
                Layout.fillWidth: true
                Layout.preferredHeight: resultColumn.implicitHeight + 16
                radius: 4
                readonly property string outcome: page.current ? page.current.outcome : "idle"
                color: page.outcomeBackground(outcome)
                border.color: page.outcomeColour(outcome)

                ColumnLayout {
                    id: resultColumn
                    anchors.fill: parent
                    anchors.margins: 8
                    spacing: 2
                    Label {
                        objectName: "flasherStatus"
                        text: page.current ? page.statusText(page.current.statusName) : ""
                        font.bold: true
                        color: page.outcomeColour(resultBox.outcome)
                        Layout.fillWidth: true
                        elide: Text.ElideRight
                    }
                    Label {
                        objectName: "flasherMessage"
                        // While the job runs the bar and the list below tell more.
                        visible: text !== "" && !page.running
                        text: page.current ? page.current.message : ""
                        Layout.fillWidth: true
                        wrapMode: Text.Wrap
                        textFormat: Text.PlainText
                    }
                }
            }

            SectionTitle {
                text: qsTr("Messages of the job")
                detail: page.current && page.current.messages.length > 0 ? String(page.current.messages.length) : ""
            }
            Frame {
                Layout.fillWidth: true
                Layout.fillHeight: true
                padding: 1

                ListView {
                    id: messageList
                    objectName: "flasherMessages"
                    anchors.fill: parent
                    clip: true
                    model: page.current ? page.current.messages : []
                    boundsBehavior: Flickable.StopAtBounds
                    ScrollBar.vertical: ScrollBar {}
                    onCountChanged: Qt.callLater(positionViewAtEnd)
                    delegate: Label {
                        width: ListView.view.width
                        leftPadding: 10
                        rightPadding: 10
                        topPadding: 3
                        bottomPadding: 3
                        text: modelData
                        font.family: "monospace"
                        font.pixelSize: 12
                        wrapMode: Text.Wrap
                        color: modelData.startsWith("ERROR") ? "#b3261e"
                               : modelData === "EXIT: successful" ? "#2e7d32" : palette.text
                    }
                    Label {
                        anchors.centerIn: parent
                        visible: messageList.count === 0
                        text: qsTr("No job has run on this board since the window opened")
                        color: "#6a6a6a"
                    }
                }
            }
        }
    }

    // The platform's file dialog, when the system has the module for it;
    // without it the path is typed.
    Loader {
        id: dialogLoader
        source: "FirmwareImageDialog.qml"
        onStatusChanged: {
            if (status === Loader.Error)
                console.warn("No file dialog: firmware images are chosen by typing their path")
        }
    }
    Connections {
        target: dialogLoader.item
        ignoreUnknownSignals: true
        function onChosen(path) {
            page.choose(path)
        }
    }
}
