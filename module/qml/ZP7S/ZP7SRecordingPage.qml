import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// Recording of the ZP7 frames into the files the host's recording settings
// name (the same formats as the FMCW recordings, marked as Doppler data),
// with the text copy written after the recording and its progress.
Item {
    id: page

    property QtObject view: null
    readonly property QtObject settings: view ? view.recordingSettings : null
    readonly property bool recording: view ? view.isRecordingActive : false
    readonly property bool converting: view ? view.isParsingActive : false
    property int txtProgress: 0

    // Re-read whenever the settings or the applied frame change.
    readonly property var files: {
        if (!view)
            return []
        settings ? [settings.recordingPath, settings.fileName, settings.txtFile] : []
        return view.recordingFiles()
    }
    readonly property int frameLimit: {
        if (!view)
            return 0
        settings ? [settings.numOfFrames, settings.timeLimitOnRecording] : []
        view.deviceConfiguration.frameParams.frameRepetitionRate
        return view.recordingFrameLimit()
    }

    Connections {
        target: page.view
        function onConvertingToTxt(progress) { page.txtProgress = progress }
        function onIsParsingActiveChanged() {
            if (page.view.isParsingActive)
                page.txtProgress = 0
        }
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 12
        spacing: 10

        GroupBox {
            title: qsTr("Recording")
            Layout.preferredWidth: 720
            ColumnLayout {
                anchors.fill: parent
                spacing: 6
                RowLayout {
                    spacing: 12
                    Button {
                        objectName: "zp7RecordButton"
                        text: page.recording ? qsTr("■ Stop recording") : qsTr("● Start recording")
                        enabled: page.recording || (page.view.isActive && page.settings !== null)
                        onClicked: page.recording ? page.view.stopRecording() : page.view.startRecording()
                    }
                    Label {
                        objectName: "zp7RecordingState"
                        text: page.recording ? qsTr("Recording…")
                            : page.view.isActive ? qsTr("Ready") : qsTr("Start acquisition to record")
                        color: page.recording ? "#c62828" : "#4a4a4a"
                        font.bold: page.recording
                    }
                }
                ZP7ValueRow {
                    label: qsTr("Folder")
                    text: page.settings ? (page.settings.recordingPath || qsTr("(working folder)")) : "–"
                }
                ZP7ValueRow {
                    label: qsTr("Base name")
                    text: page.settings ? page.settings.fileName : "–"
                }
                ZP7ValueRow {
                    label: qsTr("Frames file")
                    valueObjectName: "zp7RecordingFile"
                    text: page.files.length > 1 ? page.files[1] : "–"
                }
                ZP7ValueRow {
                    label: qsTr("Files written")
                    text: page.files.map(function (path) { return path.substring(path.lastIndexOf("/") + 1) })
                                    .join(", ")
                }
                ZP7ValueRow {
                    label: qsTr("Limit")
                    valueObjectName: "zp7RecordingLimit"
                    // A limit of 0 frames never ends the recording.
                    text: page.frameLimit === 0 ? qsTr("none: records until stopped")
                        : page.settings && page.settings.timeLimitOnRecording
                          ? qsTr("by time: %1 frames at the applied frame rate").arg(page.frameLimit)
                          : qsTr("%1 frames").arg(page.frameLimit)
                }
                ZP7ValueRow {
                    label: qsTr("Content")
                    text: qsTr("I/Q of the selected channel, one sample per pulse")
                }
                Label {
                    text: qsTr("Folder, name and limit are set in the workbench's settings.")
                    color: "#6a6a6a"
                }
            }
        }

        GroupBox {
            title: qsTr("Text copy")
            Layout.preferredWidth: 720
            ColumnLayout {
                anchors.fill: parent
                spacing: 6
                Label {
                    text: page.settings && page.settings.txtFile
                          ? qsTr("A text copy of the frames is written when the recording ends.")
                          : qsTr("No text copy is written (see the workbench's settings).")
                }
                RowLayout {
                    spacing: 10
                    ProgressBar {
                        objectName: "zp7TxtProgress"
                        from: 0
                        to: 100
                        value: page.txtProgress
                        Layout.preferredWidth: 360
                    }
                    Label {
                        objectName: "zp7TxtProgressText"
                        text: page.converting ? qsTr("Converting: %1 %").arg(page.txtProgress)
                            : page.txtProgress >= 100 ? qsTr("Text copy written")
                            : page.txtProgress > 0 ? qsTr("Text copy ended at %1 %").arg(page.txtProgress)
                            : qsTr("Idle")
                    }
                    Button {
                        objectName: "zp7StopTxtButton"
                        text: qsTr("Stop conversion")
                        enabled: page.converting
                        onClicked: page.view.stopParsing()
                    }
                }
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
