import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// Recording of the frames into the files the host's recording settings name,
// with the text copy written after the recording and its progress.
Item {
    id: page
    readonly property QtObject settings: radarView.recordingSettings
    readonly property bool recording: radarView.isRecordingActive
    readonly property bool converting: radarView.isParsingActive
    property int txtProgress: 0

    // Re-read whenever the settings or the applied configuration change.
    readonly property var files: {
        settings ? [settings.recordingPath, settings.fileName, settings.txtFile] : []
        radarView.deviceConfiguration.application
        return radarView.recordingFiles()
    }
    readonly property int frameLimit: {
        settings ? [settings.numOfFrames, settings.timeLimitOnRecording] : []
        radarView.deviceConfiguration.metrics.frameRepetitionTimeS
        return radarView.recordingFrameLimit()
    }

    Connections {
        target: radarView
        function onConvertingToTxt(progress) { page.txtProgress = progress }
        function onIsParsingActiveChanged() {
            if (radarView.isParsingActive)
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
                        objectName: "recordButton"
                        text: page.recording ? qsTr("■ Stop recording") : qsTr("● Start recording")
                        enabled: page.recording || (radarView.isActive && page.settings !== null)
                        onClicked: page.recording ? radarView.stopRecording() : radarView.startRecording()
                    }
                    Label {
                        objectName: "recordingState"
                        text: page.recording ? qsTr("Recording…")
                            : radarView.isActive ? qsTr("Ready") : qsTr("Start acquisition to record")
                        color: page.recording ? "#c62828" : "#4a4a4a"
                        font.bold: page.recording
                    }
                }
                ValueRow {
                    label: qsTr("Folder")
                    text: page.settings ? (page.settings.recordingPath || qsTr("(working folder)")) : "–"
                }
                ValueRow {
                    label: qsTr("Base name")
                    text: page.settings ? page.settings.fileName : "–"
                }
                ValueRow {
                    label: qsTr("Frames file")
                    valueObjectName: "recordingFile"
                    text: page.files.length > 1 ? page.files[1] : "–"
                }
                ValueRow {
                    label: qsTr("Files written")
                    text: page.files.map(function (path) { return path.substring(path.lastIndexOf("/") + 1) })
                                    .join(", ")
                }
                ValueRow {
                    label: qsTr("Limit")
                    valueObjectName: "recordingLimit"
                    // A limit of 0 frames never ends the recording.
                    text: page.frameLimit === 0 ? qsTr("none: records until stopped")
                        : page.settings && page.settings.timeLimitOnRecording
                          ? qsTr("by time: %1 frames at the applied frame rate").arg(page.frameLimit)
                          : qsTr("%1 frames").arg(page.frameLimit)
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
                        objectName: "txtProgress"
                        from: 0
                        to: 100
                        value: page.txtProgress
                        Layout.preferredWidth: 360
                    }
                    Label {
                        objectName: "txtProgressText"
                        text: page.converting ? qsTr("Converting: %1 %").arg(page.txtProgress)
                            : page.txtProgress >= 100 ? qsTr("Text copy written")
                            : page.txtProgress > 0 ? qsTr("Text copy ended at %1 %").arg(page.txtProgress)
                            : qsTr("Idle")
                    }
                    Button {
                        objectName: "stopTxtButton"
                        text: qsTr("Stop conversion")
                        enabled: page.converting
                        onClicked: radarView.stopParsing()
                    }
                }
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
