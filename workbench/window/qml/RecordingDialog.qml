import QtQuick 2.15
import Qt.labs.platform 1.1 as Platform

// The file dialog for recordings; a separate file so the window still opens
// on a system without the platform dialogs.
Platform.FileDialog {
    signal chosen(string path)

    title: qsTr("Open a recording")
    nameFilters: [qsTr("Recordings (*.raw.bin *.json)"), qsTr("All files (*)")]
    fileMode: Platform.FileDialog.OpenFile
    onAccepted: chosen(file.toString())
}
