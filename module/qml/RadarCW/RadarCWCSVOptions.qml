import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Qt.labs.platform 1.1 as Platform

// Where "Log one frame" writes its CSV files and how it names them: the
// folder and the file-name prefix of the CW mode's logging settings. Each
// file is named prefix_yyyyMMdd-HHmmss.
Dialog {
    id: dialog
    objectName: "cwCsvOptions"

    // The CW mode's LoggingConfiguration.
    property QtObject logging: null
    property string message: ""

    title: qsTr("CSV logging options")
    modal: true
    parent: Overlay.overlay
    x: parent ? (parent.width - width) / 2 : 0
    y: parent ? (parent.height - height) / 3 : 0
    width: 580
    padding: 12
    closePolicy: Popup.CloseOnEscape

    // Characters no file name may hold on any of the systems we run on.
    readonly property var forbidden: /[\/\\:*?"<>|]/

    onAboutToShow: {
        pathField.text = logging ? logging.loggingPath : ""
        prefixField.text = logging ? logging.loggingFileName : ""
        message = ""
    }

    function store() {
        var prefix = prefixField.text.trim()
        if (prefix.length === 0) {
            message = qsTr("The file-name prefix cannot be empty")
            return
        }
        if (forbidden.test(prefix)) {
            message = qsTr("The file-name prefix cannot hold / \\ : * ? \" < > |")
            return
        }
        var previous = logging.loggingPath
        logging.loggingPath = pathField.text.trim()
        if (!logging.checkIfLoggingPathIsValid()) {
            logging.loggingPath = previous
            message = qsTr("Path is not valid")
            return
        }
        logging.loggingFileName = prefix
        message = ""
        dialog.close()
    }

    Platform.FolderDialog {
        id: folderDialog
        title: qsTr("Folder of the CSV files")
        folder: pathField.text.length > 0 ? "file://" + pathField.text
                : Platform.StandardPaths.writableLocation(Platform.StandardPaths.HomeLocation)
        onAccepted: {
            var text = folder.toString()
            if (text.indexOf("file://") === 0)
                text = text.substring(7)
            pathField.text = decodeURIComponent(text)
        }
    }

    contentItem: ColumnLayout {
        spacing: 8
        RowLayout {
            spacing: 6
            Label {
                text: qsTr("Folder")
                Layout.preferredWidth: 130
            }
            TextField {
                id: pathField
                objectName: "cw_loggingPath"
                selectByMouse: true
                placeholderText: qsTr("(the desktop)")
                Layout.fillWidth: true
                onAccepted: prefixField.forceActiveFocus()
            }
            Button {
                objectName: "cwLoggingPathBrowse"
                text: qsTr("Browse…")
                onClicked: folderDialog.open()
            }
        }
        RowLayout {
            spacing: 6
            Label {
                text: qsTr("File-name prefix")
                Layout.preferredWidth: 130
            }
            TextField {
                id: prefixField
                objectName: "cw_loggingFileName"
                selectByMouse: true
                Layout.fillWidth: true
                onAccepted: dialog.store()
            }
        }
        Label {
            text: qsTr("Files are named %1_yyyyMMdd-HHmmss.csv").arg(prefixField.text.trim() || "…")
            color: "#6a6a6a"
            font.pixelSize: 12
        }
        Label {
            objectName: "cwCsvOptionsMessage"
            text: dialog.message
            color: "#b00020"
            // Always one line, empty or not: the dialog keeps its size when
            // a verdict shows.
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
    }

    footer: DialogButtonBox {
        Button {
            objectName: "cwCsvOptionsOkButton"
            text: qsTr("OK")
            DialogButtonBox.buttonRole: DialogButtonBox.ActionRole
            onClicked: dialog.store()
        }
        Button {
            objectName: "cwCsvOptionsCancelButton"
            text: qsTr("Cancel")
            DialogButtonBox.buttonRole: DialogButtonBox.RejectRole
        }
    }
}
