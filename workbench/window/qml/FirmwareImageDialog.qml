import QtQuick 2.15
import Qt.labs.platform 1.1 as Platform

// The file dialog for a firmware image; a separate file so the window still
// opens on a system without the platform dialogs.
Platform.FileDialog {
    signal chosen(string path)

    title: qsTr("Firmware image to write")
    nameFilters: [qsTr("Firmware images (*.bin)"), qsTr("All files (*)")]
    fileMode: Platform.FileDialog.OpenFile
    onAccepted: chosen(file.toString())
}
