import QtQuick 2.15
import Qt.labs.platform 1.1 as Platform

// The folder dialog for recordings; a separate file so the window still
// opens on a system without the platform dialogs.
Platform.FolderDialog {
    signal chosen(string path)

    title: qsTr("Folder for recordings")
    onAccepted: {
        const url = folder.toString()
        chosen(url.startsWith("file://") ? decodeURIComponent(url.substring(7)) : url)
    }
}
