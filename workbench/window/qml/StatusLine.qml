import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The figures of the running session: frames received, frame rate, FIFO
// overflows, frames the board dropped, recording, temperature.
Pane {
    id: line
    padding: 4
    leftPadding: 12
    rightPadding: 12

    readonly property var status: workbench.status

    background: Rectangle {
        color: "#eceef1"
        Rectangle {
            width: parent.width
            height: 1
            color: "#c4c4c4"
        }
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        StatusField {
            objectName: "statusFrames"
            caption: qsTr("Frames")
            value: line.status.frames
        }
        StatusField {
            objectName: "statusFrameRate"
            caption: qsTr("Rate")
            value: qsTr("%1 fps").arg(line.status.frameRate.toFixed(1))
        }
        StatusField {
            objectName: "statusFifoOverflows"
            caption: qsTr("FIFO overflows")
            value: line.status.fifoOverflows
            alert: line.status.fifoOverflows > 0
        }
        StatusField {
            objectName: "statusDropped"
            caption: qsTr("Dropped")
            // Only an SDK that counts them can tell.
            value: line.status.droppedFrames < 0 ? "n/a" : line.status.droppedFrames
            alert: line.status.droppedFrames > 0
            hint: line.status.droppedFrames < 0 ? qsTr("The SDK does not report frames the board dropped")
                                                : qsTr("Frames the board discarded because they were fetched too late")
        }
        StatusField {
            objectName: "statusRecording"
            caption: qsTr("Recording")
            value: line.status.recording ? line.status.recordingFile : qsTr("off")
            alert: line.status.recording
            alertColor: "#b3261e"
            Layout.fillWidth: true
            hint: line.status.recordingFile
        }
        StatusField {
            objectName: "statusTemperature"
            caption: qsTr("Temperature")
            value: line.status.temperature === "" ? "n/a" : line.status.temperature
            separator: false
        }
    }
}
