import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The host's settings (chart refresh, recording, log files) and the
// module's chart settings. Every change is saved to the settings file.
ScrollView {
    id: page
    clip: true
    contentWidth: availableWidth

    readonly property var core: workbench.coreSettings
    readonly property var recording: workbench.recordingSettings
    readonly property var logs: workbench.logs
    readonly property var chartSettings: typeof radarView !== "undefined" && radarView ? radarView.userSettings : null

    // The spectrum settings are shared by the modes; the running one takes
    // them over into its processing (the pulsed-Doppler mode's Doppler FFT
    // while such a board runs).
    function applySpectrumSettings() {
        var view = workbench.activeView
        if (view && typeof view.applyRangeSpectrumConfigurationRuntime === "function")
            view.applyRangeSpectrumConfigurationRuntime()
    }

    // A number typed into a field, applied when it parses and lies within
    // the field's limits; otherwise the field shows what is in force.
    component NumberField: TextField {
        property real from: 0
        property real to: 1e9
        property real current: 0
        property int places: 0
        signal picked(real value)
        text: current.toFixed(places)
        selectByMouse: true
        horizontalAlignment: Text.AlignRight
        Layout.preferredWidth: 90
        validator: DoubleValidator { bottom: from; top: to; decimals: places }
        onEditingFinished: {
            var typed = Number(text)
            if (acceptableInput && !isNaN(typed))
                picked(typed)
            text = Qt.binding(function () { return current.toFixed(places) })
        }
    }

    component Caption: Label {
        Layout.alignment: Qt.AlignRight | Qt.AlignVCenter
        color: "#404040"
    }

    component Note: Label {
        Layout.columnSpan: 2
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
        font.pixelSize: 11
        color: "#6a6a6a"
    }

    ColumnLayout {
        width: page.availableWidth
        spacing: 14

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 16
            Layout.bottomMargin: 0
            Label {
                text: qsTr("Settings")
                font.pixelSize: 18
                font.bold: true
            }
            Item { Layout.fillWidth: true }
            Label {
                text: qsTr("Saved to %1 as you change them").arg(workbench.settingsPath)
                color: "#6a6a6a"
                font.pixelSize: 11
                elide: Text.ElideMiddle
                Layout.maximumWidth: 520
            }
        }

        GridLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 16
            Layout.rightMargin: 16
            Layout.bottomMargin: 16
            columns: page.availableWidth > 980 ? 2 : 1
            columnSpacing: 14
            rowSpacing: 14

            GroupBox {
                title: qsTr("Charts")
                Layout.fillWidth: true
                Layout.preferredWidth: 100
                Layout.alignment: Qt.AlignTop

                GridLayout {
                    anchors.fill: parent
                    columns: 2
                    columnSpacing: 10
                    Caption { text: qsTr("Refresh interval") }
                    RowLayout {
                        SpinBox {
                            objectName: "refreshIntervalField"
                            from: workbench.minRefreshMs
                            to: workbench.maxRefreshMs
                            stepSize: 10
                            editable: true
                            value: page.core.minimumRefreshInterval
                            onValueModified: page.core.minimumRefreshInterval = value
                        }
                        Label { text: qsTr("ms") }
                    }
                    Note {
                        text: qsTr("The charts are redrawn at most this often; every frame is still processed and recorded.")
                    }
                }
            }

            GroupBox {
                title: qsTr("Recording")
                Layout.fillWidth: true
                Layout.preferredWidth: 100
                Layout.alignment: Qt.AlignTop
                Layout.rowSpan: 2

                GridLayout {
                    anchors.fill: parent
                    columns: 2
                    columnSpacing: 10

                    Caption { text: qsTr("Folder") }
                    RowLayout {
                        Layout.fillWidth: true
                        TextField {
                            id: folderField
                            objectName: "recordingFolderField"
                            Layout.fillWidth: true
                            Layout.preferredWidth: 160
                            text: page.recording.recordingPath
                            selectByMouse: true
                            onEditingFinished: page.recording.recordingPath = text
                        }
                        Button {
                            text: qsTr("Browse…")
                            enabled: folderDialog.item !== null
                            onClicked: folderDialog.item.open()
                        }
                    }
                    Caption { text: qsTr("File name") }
                    TextField {
                        objectName: "recordingNameField"
                        Layout.fillWidth: true
                        Layout.preferredWidth: 160
                        text: page.recording.fileName
                        selectByMouse: true
                        validator: RegularExpressionValidator { regularExpression: /[^\/\\]+/ }
                        onEditingFinished: page.recording.fileName = text
                    }
                    Note {
                        text: qsTr("Writes %1.json and %1.raw.bin").arg(page.recording.fileName)
                    }

                    Caption { text: qsTr("Limit") }
                    RowLayout {
                        RadioButton {
                            objectName: "limitFramesButton"
                            text: qsTr("Frames")
                            checked: !page.recording.timeLimitOnRecording
                            onToggled: page.recording.timeLimitOnRecording = !checked
                        }
                        RadioButton {
                            objectName: "limitTimeButton"
                            text: qsTr("Duration")
                            checked: page.recording.timeLimitOnRecording
                            onToggled: page.recording.timeLimitOnRecording = checked
                        }
                    }
                    Caption {
                        text: page.recording.timeLimitOnRecording ? qsTr("Duration") : qsTr("Frames")
                    }
                    RowLayout {
                        SpinBox {
                            objectName: "recordingFramesField"
                            visible: !page.recording.timeLimitOnRecording
                            from: 1
                            to: 10000000
                            editable: true
                            value: page.recording.numOfFrames
                            onValueModified: page.recording.numOfFrames = value
                        }
                        Repeater {
                            id: duration
                            model: [qsTr("h"), qsTr("min"), qsTr("s")]
                            property var parts: workbench.recordingDuration()
                            RowLayout {
                                visible: page.recording.timeLimitOnRecording
                                SpinBox {
                                    from: 0
                                    to: index === 0 ? 999 : 59
                                    editable: true
                                    value: duration.parts[index]
                                    onValueModified: {
                                        const parts = duration.parts.slice()
                                        parts[index] = value
                                        workbench.setRecordingDuration(parts[0], parts[1], parts[2])
                                        duration.parts = workbench.recordingDuration()
                                    }
                                }
                                Label { text: modelData }
                            }
                        }
                    }
                    Caption { text: qsTr("Text copy") }
                    CheckBox {
                        objectName: "recordingTxtBox"
                        text: qsTr("Also write %1.raw.txt").arg(page.recording.fileName)
                        checked: page.recording.txtFile
                        onToggled: page.recording.txtFile = checked
                    }
                }
            }

            GroupBox {
                title: qsTr("Log files")
                Layout.fillWidth: true
                Layout.preferredWidth: 100
                Layout.alignment: Qt.AlignTop

                GridLayout {
                    anchors.fill: parent
                    columns: 2
                    columnSpacing: 10

                    Caption { text: qsTr("Folder") }
                    Label {
                        objectName: "logDirectory"
                        text: page.logs.directory
                        elide: Text.ElideMiddle
                        Layout.fillWidth: true
                        Layout.preferredWidth: 160
                    }
                    Caption { text: qsTr("Now") }
                    Label {
                        objectName: "logFileCount"
                        text: page.logs.fileCount === 1 ? qsTr("1 file, %1").arg(page.logs.totalSize)
                                                         : qsTr("%1 files, %2").arg(page.logs.fileCount).arg(page.logs.totalSize)
                    }
                    Caption { text: qsTr("Clean up") }
                    RowLayout {
                        CheckBox {
                            objectName: "autoClearLogsBox"
                            text: qsTr("Delete log files older than")
                            checked: page.logs.logging.autoClearLogs
                            onToggled: {
                                page.logs.logging.autoClearLogs = checked
                                page.logs.refresh()
                            }
                        }
                        ComboBox {
                            objectName: "clearLimitSelector"
                            model: page.logs.logging.clearOptions
                            textRole: "text"
                            currentIndex: {
                                for (let i = 0; i < model.length; ++i) {
                                    if (model[i].text === page.logs.logging.clearLimit)
                                        return i
                                }
                                return -1
                            }
                            onActivated: function (index) {
                                page.logs.logging.clearLimit = model[index].text
                            }
                        }
                    }
                    Item { width: 1; height: 1 }
                    RowLayout {
                        Button {
                            objectName: "clearOldLogsButton"
                            text: qsTr("Delete old files now")
                            onClicked: page.logs.clearOld()
                        }
                        Button {
                            objectName: "clearAllLogsButton"
                            text: qsTr("Delete all log files")
                            onClicked: page.logs.clearAll()
                        }
                    }
                    Note {
                        text: qsTr("Automatic clean-up runs at every start. A file system that does not keep creation times keeps its files: their age is unknown.")
                    }
                }
            }

            GroupBox {
                title: qsTr("Module charts")
                Layout.fillWidth: true
                Layout.preferredWidth: 100
                Layout.alignment: Qt.AlignTop
                Layout.columnSpan: parent.columns
                enabled: page.chartSettings !== null

                GridLayout {
                    anchors.fill: parent
                    columns: 6
                    columnSpacing: 10

                    Label {
                        text: qsTr("Range spectrum")
                        font.bold: true
                        Layout.columnSpan: 2
                    }
                    Label {
                        text: qsTr("Time domain")
                        font.bold: true
                        Layout.columnSpan: 2
                    }
                    Label {
                        text: qsTr("Range-Doppler map")
                        font.bold: true
                        Layout.columnSpan: 2
                    }

                    Caption { text: qsTr("FFT size") }
                    ComboBox {
                        objectName: "rangeSpectrumFftSize"
                        model: [256, 512, 1024, 2048, 4096, 8192]
                        currentIndex: page.chartSettings ? model.indexOf(page.chartSettings.rangeSpectrum.fftSize) : -1
                        displayText: page.chartSettings ? page.chartSettings.rangeSpectrum.fftSize : ""
                        onActivated: function (index) {
                            page.chartSettings.rangeSpectrum.fftSize = model[index]
                            page.applySpectrumSettings()
                        }
                    }
                    Caption { text: qsTr("Y min") }
                    NumberField {
                        objectName: "timeDomainYMin"
                        from: -10; to: 10; places: 2
                        current: page.chartSettings ? page.chartSettings.timeDomain.axisYMin : 0
                        onPicked: page.chartSettings.timeDomain.axisYMin = value
                    }
                    Caption { text: qsTr("Range FFT size") }
                    ComboBox {
                        objectName: "rangeDopplerRangeFft"
                        model: [256, 512, 1024, 2048, 4096]
                        currentIndex: page.chartSettings ? model.indexOf(page.chartSettings.rangeDoppler.rangeFftSize) : -1
                        displayText: page.chartSettings ? page.chartSettings.rangeDoppler.rangeFftSize : ""
                        onActivated: function (index) {
                            page.chartSettings.rangeDoppler.rangeFftSize = model[index]
                            radarView.applyRangeDopplerMapConfigurationRuntime()
                        }
                    }

                    Caption { text: qsTr("Magnitude") }
                    ComboBox {
                        objectName: "rangeSpectrumScale"
                        model: [qsTr("dB (20 log)"), qsTr("Linear")]
                        currentIndex: page.chartSettings && page.chartSettings.rangeSpectrum.isLinearFftMagnitude ? 1 : 0
                        onActivated: function (index) {
                            page.chartSettings.rangeSpectrum.isLinearFftMagnitude = index === 1
                            page.applySpectrumSettings()
                        }
                    }
                    Caption { text: qsTr("Y max") }
                    NumberField {
                        objectName: "timeDomainYMax"
                        from: -10; to: 10; places: 2
                        current: page.chartSettings ? page.chartSettings.timeDomain.axisYMax : 1
                        onPicked: page.chartSettings.timeDomain.axisYMax = value
                    }
                    Caption { text: qsTr("Doppler FFT size") }
                    ComboBox {
                        objectName: "rangeDopplerDopplerFft"
                        model: [256, 512, 1024, 2048]
                        currentIndex: page.chartSettings ? model.indexOf(page.chartSettings.rangeDoppler.dopplerFftSize) : -1
                        displayText: page.chartSettings ? page.chartSettings.rangeDoppler.dopplerFftSize : ""
                        onActivated: function (index) {
                            page.chartSettings.rangeDoppler.dopplerFftSize = model[index]
                            radarView.applyRangeDopplerMapConfigurationRuntime()
                        }
                    }

                    Caption { text: qsTr("Y max") }
                    NumberField {
                        objectName: "rangeSpectrumYMax"
                        from: -200; to: 200; places: 1
                        current: page.chartSettings ? page.chartSettings.rangeSpectrum.axisYMax : 0
                        onPicked: page.chartSettings.rangeSpectrum.axisYMax = value
                    }
                    Item { Layout.columnSpan: 2; width: 1; height: 1 }
                    Caption { text: qsTr("Colour threshold") }
                    RowLayout {
                        SpinBox {
                            objectName: "rangeDopplerThreshold"
                            from: -200
                            to: 100
                            editable: true
                            value: page.chartSettings ? page.chartSettings.rangeDoppler.colorThreshold : 0
                            onValueModified: page.chartSettings.rangeDoppler.colorThreshold = value
                        }
                        Label { text: qsTr("dB") }
                    }

                    Caption { text: qsTr("Line") }
                    CheckBox {
                        objectName: "rangeSpectrumPolygon"
                        text: qsTr("Polygon (else steps)")
                        checked: page.chartSettings ? page.chartSettings.rangeSpectrum.isPolygonLineType : false
                        onToggled: page.chartSettings.rangeSpectrum.isPolygonLineType = checked
                    }
                }
            }
        }
    }

    Loader {
        id: folderDialog
        source: "RecordingFolderDialog.qml"
    }
    Connections {
        target: folderDialog.item
        ignoreUnknownSignals: true
        function onChosen(path) {
            page.recording.recordingPath = path
        }
    }
}
