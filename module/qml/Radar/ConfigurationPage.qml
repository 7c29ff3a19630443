import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Qt.labs.platform 1.1 as Platform
import "Format.js" as Format

// The edited configuration of the standard mode: the application, the
// scene, the antennas, the device parameters the SDK derives and the
// application's own settings, with Apply, Revert, Defaults, Load and Save.
// Every value is the configuration object's; the page only edits it.
Item {
    id: page

    readonly property QtObject gui: radarView.guiConfiguration
    readonly property QtObject metrics: gui.metrics
    readonly property QtObject limits: gui.limits
    readonly property bool connected: radarView.isConnected
    readonly property int application: gui.application
    property string notice: ""

    FieldValidity {
        id: validity
        objectName: "fieldValidity"
    }

    // Runs one of the view's configuration operations; what was typed gives
    // way to the values the operation leaves.
    function run(operation) {
        operation()
        validity.resetAll()
    }

    Connections {
        target: radarView
        function onEnqueueUserMessage(type, message, details) {
            page.notice = message
        }
    }

    Platform.FileDialog {
        id: loadDialog
        title: qsTr("Load a configuration")
        fileMode: Platform.FileDialog.OpenFile
        nameFilters: [qsTr("Configurations (*.json)"), qsTr("All files (*)")]
        folder: Platform.StandardPaths.writableLocation(Platform.StandardPaths.HomeLocation)
        onAccepted: page.run(function () { radarView.applyConfiguration(Format.localPath(file)) })
    }

    Platform.FileDialog {
        id: saveDialog
        title: qsTr("Save the configuration")
        fileMode: Platform.FileDialog.SaveFile
        nameFilters: [qsTr("Configurations (*.json)")]
        defaultSuffix: "json"
        folder: Platform.StandardPaths.writableLocation(Platform.StandardPaths.HomeLocation)
        onAccepted: radarView.saveConfiguration(Format.localPath(file))
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 8
        spacing: 6

        RowLayout {
            Layout.fillWidth: true
            spacing: 8
            Label {
                text: qsTr("Application")
            }
            ComboBox {
                id: applicationSelector
                objectName: "applicationSelector"
                // In the order of RadarConstants::Application.
                model: [qsTr("None"), qsTr("Presence sensing"), qsTr("Segmentation")]
                currentIndex: page.application
                Layout.preferredWidth: 190
                onActivated: page.gui.application = index
            }
            Label {
                id: optimalIndicator
                objectName: "optimalIndicator"
                readonly property bool optimal: page.gui.optimalAppConfig
                text: optimal ? qsTr("✓ Optimal settings for the application")
                              : qsTr("⚠ Settings differ from the application's optimal ones")
                color: optimal ? "#2e7d32" : "#b26a00"
                Layout.leftMargin: 8
            }
            Item {
                Layout.fillWidth: true
            }
            Button {
                objectName: "loadConfigButton"
                text: qsTr("Load…")
                enabled: page.connected
                onClicked: loadDialog.open()
            }
            Button {
                objectName: "saveConfigButton"
                text: qsTr("Save…")
                enabled: page.connected
                onClicked: {
                    saveDialog.open()
                    // After opening: showing the dialog selects its folder,
                    // which clears a selection made before.
                    saveDialog.currentFile = saveDialog.folder + "/" + radarView.suggestGeneralConfigFileName()
                }
            }
            Button {
                objectName: "defaultsButton"
                text: qsTr("Defaults")
                enabled: page.connected
                onClicked: page.run(function () { radarView.applyDefaultConfiguration() })
            }
            Button {
                objectName: "revertButton"
                text: qsTr("Revert")
                enabled: radarView.revertApplyAvailable
                onClicked: page.run(function () { radarView.revertConfiguration() })
            }
            Button {
                objectName: "applyButton"
                text: qsTr("Apply")
                highlighted: true
                enabled: page.connected && !radarView.isPlaybackActive && validity.invalid === 0
                onClicked: page.run(function () { radarView.applyGuiConfiguration() })
            }
        }

        Rectangle {
            objectName: "configNotice"
            visible: page.notice.length > 0
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
                    text: page.notice
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }
                ToolButton {
                    text: "✕"
                    onClicked: page.notice = ""
                }
            }
        }

        ScrollView {
            id: scroll
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            contentWidth: availableWidth

            Flow {
                width: scroll.availableWidth
                spacing: 10

                GroupBox {
                    title: qsTr("Scene")
                    width: 515
                    ColumnLayout {
                        anchors.fill: parent
                        spacing: 4
                        MetricField {
                            target: page.metrics; propertyName: "maxRangeM"; fieldName: "metrics.maxRangeM"
                            label: qsTr("Max range"); unit: "m"; tracker: validity
                            rangeText: Format.range(page.limits.maxRangeMMin, page.limits.maxRangeMMax)
                        }
                        MetricField {
                            target: page.metrics; propertyName: "rangeResolutionM"; fieldName: "metrics.rangeResolutionM"
                            label: qsTr("Range resolution"); unit: "m"; tracker: validity
                            rangeText: Format.range(page.limits.rangeResolutionMMin, page.limits.rangeResolutionMMax)
                        }
                        MetricField {
                            target: page.metrics; propertyName: "maxSpeedMs"; fieldName: "metrics.maxSpeedMs"
                            label: qsTr("Max speed"); unit: "m/s"; tracker: validity
                            rangeText: Format.range(page.limits.maxSpeedMsMin, page.limits.maxSpeedMsMax)
                        }
                        MetricField {
                            target: page.metrics; propertyName: "speedResolutionMs"; fieldName: "metrics.speedResolutionMs"
                            label: qsTr("Speed resolution"); unit: "m/s"; tracker: validity
                            rangeText: Format.range(page.limits.speedResolutionMsMin, page.limits.speedResolutionMsMax)
                        }
                        MetricField {
                            target: page.metrics; propertyName: "frameRepetitionTimeS"
                            fieldName: "metrics.frameRepetitionTimeS"
                            label: qsTr("Frame repetition time"); unit: "s"; tracker: validity
                            rangeText: Format.range(page.limits.frameRepetitionTimeSMin,
                                                    page.limits.frameRepetitionTimeSMax)
                        }
                        MetricField {
                            target: page.metrics; propertyName: "centerFrequencyHz"; fieldName: "metrics.centerFrequencyHz"
                            label: qsTr("Centre frequency"); unit: "Hz"; tracker: validity
                        }
                        MetricField {
                            target: page.metrics; propertyName: "sampleRateHz"; fieldName: "metrics.sampleRateHz"
                            label: qsTr("Sample rate"); unit: "Hz"; whole: true; tracker: validity
                            rangeText: Format.range(page.limits.sampleRateHzMin, page.limits.sampleRateHzMax)
                        }
                        MetricField {
                            target: page.metrics; propertyName: "txPowerLevel"; fieldName: "metrics.txPowerLevel"
                            label: qsTr("Tx power level"); whole: true; tracker: validity
                            rangeText: Format.range(page.limits.txPowerLevelMin, page.limits.txPowerLevelMax)
                        }
                        MetricField {
                            target: page.metrics; propertyName: "ifGainDB"; fieldName: "metrics.ifGainDB"
                            label: qsTr("IF gain"); unit: "dB"; whole: true; tracker: validity
                            rangeText: Format.range(page.limits.ifGainDbMin, page.limits.ifGainDbMax)
                        }
                    }
                }

                Column {
                    spacing: 10
                    width: 372

                    AntennaPane {
                        width: parent.width
                        metrics: page.metrics
                        deviceInfo: page.gui.deviceInfo
                    }

                    DeviceParametersPane {
                        width: parent.width
                        parameters: page.gui.parameters
                        onRecalculate: page.gui.recalcConfig()
                        recalculateEnabled: page.connected && validity.invalid === 0
                    }
                }

                ApplicationSettingsPane {
                    width: 353
                    configuration: page.gui
                    tracker: validity
                }
            }
        }
    }
}
