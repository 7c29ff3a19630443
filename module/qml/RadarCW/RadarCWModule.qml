import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Qt.labs.platform 1.1 as Platform
import Workbench 1.0

// The page of the continuous-wave test mode: the carrier switched on and
// off, one frame captured at a time, its time signal and spectrum, the
// frame logged to CSV, and the configuration of transmitter, test signal,
// receivers, baseband and ADC. It binds to the "radarCWView" the module
// sets up and keeps no state of its own beyond what is being typed.
Item {
    id: root
    objectName: "RadarCWModule"

    implicitWidth: 1280
    implicitHeight: 800

    readonly property QtObject view: radarCWView
    readonly property QtObject gui: view.guiConfig
    readonly property QtObject applied: view.deviceConfig
    readonly property QtObject info: view.deviceInfo
    readonly property QtObject logging: view.userSettings ? view.userSettings.loggingConfiguration : null
    readonly property bool connected: view.isConnected
    readonly property bool emitting: view.isEmissionActive
    property string notice: ""

    // One series per enabled receiver of the applied configuration.
    readonly property var antennaNames: {
        var names = []
        applied.rxAntennas.numberOfEnabled
        for (var rx = 0; rx < 4; ++rx) {
            if (applied.rxAntennas.getEnabled(rx))
                names.push("Rx" + (rx + 1))
        }
        return names
    }

    function run(operation) {
        operation()
        validity.resetAll()
    }

    function localPath(url) {
        var text = url.toString()
        if (text.indexOf("file://") === 0)
            text = text.substring(7)
        return decodeURIComponent(text)
    }

    function txPowerText(powers) {
        if (!powers || powers.length === 0)
            return "–"
        var parts = []
        for (var i = 0; i < powers.length; ++i)
            parts.push("Tx" + (i + 1) + " " + Number(powers[i]).toFixed(1) + " dBm")
        return parts.join("  ")
    }

    CWFieldValidity {
        id: validity
        objectName: "cwFieldValidity"
    }

    Connections {
        target: root.view
        function onEnqueueUserMessage(type, message, details) {
            root.notice = details ? message + " (" + details + ")" : message
        }
        function onChartsDataUpdated() {
            timeDomainChart.refresh()
            spectrumChart.refresh()
        }
    }

    Platform.FileDialog {
        id: loadDialog
        title: qsTr("Load a CW configuration")
        fileMode: Platform.FileDialog.OpenFile
        nameFilters: [qsTr("Configurations (*.json)"), qsTr("All files (*)")]
        folder: Platform.StandardPaths.writableLocation(Platform.StandardPaths.HomeLocation)
        onAccepted: root.run(function () { root.view.loadConfig(root.localPath(file)) })
    }

    Platform.FileDialog {
        id: saveDialog
        title: qsTr("Save the CW configuration")
        fileMode: Platform.FileDialog.SaveFile
        nameFilters: [qsTr("Configurations (*.json)")]
        defaultSuffix: "json"
        folder: Platform.StandardPaths.writableLocation(Platform.StandardPaths.HomeLocation)
        onAccepted: root.view.saveConfig(root.localPath(file))
    }

    RadarCWCSVOptions {
        id: csvOptions
        logging: root.logging
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 8
        spacing: 6

        // What a test engineer does with the board, left to right.
        RowLayout {
            Layout.fillWidth: true
            spacing: 8
            Button {
                objectName: "cwEmissionButton"
                text: root.emitting ? qsTr("■ Stop emission") : qsTr("● Start emission")
                // The board emits from the applied antennas.
                enabled: root.connected && (root.emitting || root.applied.txAntennas.numberOfEnabled > 0)
                onClicked: root.emitting ? root.view.stopEmission() : root.view.startEmission()
            }
            Label {
                objectName: "cwEmissionState"
                Layout.preferredWidth: 200
                text: !root.emitting ? (root.connected && root.applied.txAntennas.numberOfEnabled === 0
                                        ? qsTr("No Tx antenna applied") : qsTr("Emission off"))
                      : root.applied.params.dutyCycle < 100
                        ? qsTr("Emitting, %1 % duty cycle").arg(root.applied.params.dutyCycle)
                        : qsTr("Emitting continuously")
                color: root.emitting ? "#c62828" : "#4a4a4a"
                font.bold: root.emitting
            }
            ToolSeparator {}
            Button {
                objectName: "cwCaptureButton"
                text: qsTr("Capture")
                enabled: root.connected
                onClicked: root.view.captureFrame()
            }
            Button {
                objectName: "cwLogButton"
                text: qsTr("Log one frame")
                enabled: root.connected && root.view.isFrameAvailable
                onClicked: root.view.logOneFrame()
            }
            Button {
                objectName: "cwCsvOptionsButton"
                text: qsTr("CSV options…")
                enabled: root.logging !== null
                onClicked: csvOptions.open()
            }
            Label {
                objectName: "cwLoggingTarget"
                Layout.fillWidth: true
                elide: Text.ElideMiddle
                color: "#6a6a6a"
                text: root.logging ? qsTr("Logs to %1/%2_….csv").arg(root.logging.loggingPath || qsTr("(the desktop)"))
                                                             .arg(root.logging.loggingFileName) : ""
            }
        }

        Rectangle {
            objectName: "cwNotice"
            visible: root.notice.length > 0
            Layout.fillWidth: true
            implicitHeight: noticeRow.implicitHeight + 8
            color: "#fff4e0"
            border.color: "#e0b060"
            radius: 3
            RowLayout {
                id: noticeRow
                anchors.fill: parent
                anchors.margins: 4
                Label {
                    objectName: "cwNoticeText"
                    text: root.notice
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }
                ToolButton {
                    text: "✕"
                    onClicked: root.notice = ""
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 10

            ColumnLayout {
                Layout.preferredWidth: 500
                Layout.maximumWidth: 500
                Layout.fillHeight: true
                spacing: 6

                RowLayout {
                    Layout.fillWidth: true
                    spacing: 4
                    Button {
                        objectName: "cwLoadButton"
                        text: qsTr("Load…")
                        enabled: root.connected
                        onClicked: loadDialog.open()
                    }
                    Button {
                        objectName: "cwSaveButton"
                        text: qsTr("Save…")
                        enabled: root.connected
                        onClicked: {
                            saveDialog.open()
                            // Showing the dialog selects its folder, which
                            // clears a file chosen before.
                            saveDialog.currentFile = saveDialog.folder + "/" + root.view.suggestGeneralConfigFileName()
                        }
                    }
                    Button {
                        objectName: "cwDefaultsButton"
                        text: qsTr("Defaults")
                        enabled: root.connected
                        onClicked: root.run(function () { root.view.applyDefaultConfig() })
                    }
                    Item {
                        Layout.fillWidth: true
                    }
                    Button {
                        objectName: "cwRevertButton"
                        text: qsTr("Revert")
                        enabled: root.view.revertApplyAvailable
                        onClicked: root.run(function () { root.view.revertConfig() })
                    }
                    Button {
                        objectName: "cwApplyButton"
                        text: qsTr("Apply")
                        highlighted: true
                        enabled: root.connected && validity.invalid === 0
                        onClicked: root.run(function () { root.view.applyGuiConfig() })
                    }
                }

                ScrollView {
                    id: scroll
                    objectName: "cwParameterScroll"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    clip: true
                    contentWidth: availableWidth

                    ColumnLayout {
                        width: scroll.availableWidth
                        spacing: 8
                        RadarCWTxParameters {
                            Layout.fillWidth: true
                            config: root.gui
                            deviceInfo: root.info
                            tracker: validity
                        }
                        RadarCWTestSignalGenerator {
                            Layout.fillWidth: true
                            config: root.gui
                            tracker: validity
                            radarType: root.view.radarType
                        }
                        RadarCWRxParameters {
                            Layout.fillWidth: true
                            config: root.gui
                            deviceInfo: root.info
                            tracker: validity
                        }
                        RadarCWBasebandParameters {
                            Layout.fillWidth: true
                            config: root.gui
                            radarType: root.view.radarType
                        }
                        RadarCWADCParameters {
                            Layout.fillWidth: true
                            config: root.gui
                        }
                    }
                }
            }

            ColumnLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                spacing: 10

                ChartView {
                    id: timeDomainChart
                    objectName: "cwTimeDomainChart"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    title: qsTr("Time domain (captured frame)")
                    xTitle: qsTr("Sample")
                    yTitle: qsTr("Amplitude (normalised)")
                    legend: root.antennaNames
                    chartData: root.view.getChartData(0)
                    Label {
                        anchors.centerIn: parent
                        visible: !root.view.isFrameAvailable
                        text: root.connected ? qsTr("Capture a frame to see its signal") : qsTr("No board connected")
                        color: "#6a6a6a"
                    }
                }

                ChartView {
                    id: spectrumChart
                    objectName: "cwSpectrumChart"
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    // The frequency of each bin at the applied sampling rate.
                    readonly property QtObject axis: root.applied.frequencyDomainAxis
                    readonly property QtObject spectrumSettings: root.view.userSettings
                                                                 ? root.view.userSettings.rangeSpectrum : null
                    readonly property bool linear: spectrumSettings ? spectrumSettings.isLinearFftMagnitude : false
                    title: qsTr("Spectrum")
                    xTitle: qsTr("Frequency (Hz)")
                    yTitle: linear ? qsTr("Magnitude") : qsTr("Magnitude (dB)")
                    legend: root.antennaNames
                    chartData: root.view.getChartData(1)
                    autoScaleX: !(axis.max > axis.min)
                    xMin: axis.min
                    xMax: axis.max
                }

                RowLayout {
                    Layout.fillWidth: true
                    spacing: 8
                    Label {
                        text: qsTr("Temperature")
                        color: "#4a4a4a"
                    }
                    Label {
                        objectName: "cwTemperature"
                        font.bold: true
                        Layout.preferredWidth: 80
                        text: root.info.deviceTemperature === undefined || root.info.deviceTemperature === null
                              ? "–" : Number(root.info.deviceTemperature).toFixed(1) + " °C"
                    }
                    Label {
                        text: qsTr("Tx power")
                        color: "#4a4a4a"
                    }
                    Label {
                        objectName: "cwTxPower"
                        font.bold: true
                        Layout.fillWidth: true
                        elide: Text.ElideRight
                        text: root.txPowerText(root.info.deviceTxPower)
                    }
                }
                // An image in the firmware folder newer than the board runs;
                // it takes the width it is given, never widening the page.
                Label {
                    objectName: "cwFirmwareNotice"
                    visible: text !== ""
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    wrapMode: Text.Wrap
                    color: "#a36b00"
                    text: root.connected && root.view.newFirmwareImage
                          ? qsTr("Newer firmware available: %1. Flash it from the Flashers panel.")
                            .arg(root.view.newFirmwareImage.split("/").pop()) : ""
                }
            }
        }
    }
}
