import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// Plays a recording in place of a board: open it (dialog or typed path),
// play, pause, step one frame, stop, and the frame it stands at.
ColumnLayout {
    id: panel
    spacing: 6

    readonly property var playback: workbench.playback

    SectionTitle {
        text: qsTr("Playback")
        detail: panel.playback.ended ? qsTr("at its end")
                                     : panel.playback.paused && panel.playback.playing ? qsTr("paused")
                                     : panel.playback.playing ? qsTr("playing")
                                     : panel.playback.opened ? qsTr("ready") : ""
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 6
        TextField {
            id: fileField
            objectName: "playbackFile"
            Layout.fillWidth: true
            placeholderText: qsTr("BASE.raw.bin of a recording")
            selectByMouse: true
            text: panel.playback.file
            onAccepted: panel.playback.open(text)
            ToolTip.visible: hovered && text.length > 0
            ToolTip.text: text
        }
        Button {
            objectName: "playbackOpenButton"
            text: qsTr("Open…")
            enabled: panel.playback.available
            onClicked: {
                if (dialogLoader.item)
                    dialogLoader.item.open()
                else
                    fileField.forceActiveFocus()
            }
        }
    }

    // The platform's file dialog, when the system has the module for it;
    // without it the path is typed.
    Loader {
        id: dialogLoader
        source: "RecordingDialog.qml"
        onStatusChanged: {
            if (status === Loader.Error)
                console.warn("No file dialog: recordings are opened by typing their path")
        }
    }
    Connections {
        target: dialogLoader.item
        ignoreUnknownSignals: true
        function onChosen(path) {
            panel.playback.open(path)
        }
    }

    GridLayout {
        Layout.fillWidth: true
        columns: 4
        columnSpacing: 4
        Button {
            objectName: "playbackPlayButton"
            text: qsTr("Play")
            Layout.fillWidth: true
            enabled: panel.playback.opened && (!panel.playback.playing || panel.playback.paused || panel.playback.ended)
            onClicked: panel.playback.play()
        }
        Button {
            objectName: "playbackPauseButton"
            text: qsTr("Pause")
            Layout.fillWidth: true
            enabled: panel.playback.playing && !panel.playback.paused && !panel.playback.ended
            onClicked: panel.playback.pause()
        }
        Button {
            objectName: "playbackStepButton"
            text: qsTr("Step")
            Layout.fillWidth: true
            enabled: panel.playback.opened
            onClicked: panel.playback.step()
            ToolTip.visible: hovered
            ToolTip.text: qsTr("One frame, then pause")
        }
        Button {
            objectName: "playbackStopButton"
            text: qsTr("Stop")
            Layout.fillWidth: true
            enabled: panel.playback.opened
            onClicked: panel.playback.stop()
        }
    }

    ProgressBar {
        Layout.fillWidth: true
        from: 0
        to: Math.max(1, panel.playback.total)
        value: panel.playback.position
        visible: panel.playback.opened
    }
    Label {
        objectName: "playbackPosition"
        Layout.fillWidth: true
        text: panel.playback.opened ? qsTr("Frame %1 of %2").arg(panel.playback.position).arg(panel.playback.total)
                                    : qsTr("No recording open")
        color: panel.playback.opened ? palette.text : "#6a6a6a"
    }
}
