import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Qt.labs.platform 1.1 as Platform
import "../Radar/Format.js" as Format

// The edited ZP7 configuration: the pulse and the frame, what they give
// (Doppler range and resolution in frequency and speed), with Apply,
// Revert, Defaults, Load and Save. Every value is the configuration
// object's; the page only edits it.
Item {
    id: page

    property QtObject view: null
    readonly property QtObject gui: view ? view.guiConfiguration : null
    readonly property QtObject frame: gui ? gui.frameParams : null
    readonly property bool connected: view ? view.isConnected : false
    // Metres per second of range rate per hertz of Doppler shift.
    readonly property real speedPerHz: view ? Math.abs(view.radialSpeed(1.0)) : 0

    ZP7FieldValidity {
        id: validity
        objectName: "zp7FieldValidity"
    }

    // Runs one of the view's configuration operations; what was typed gives
    // way to the values the operation leaves.
    function run(operation) {
        operation()
        validity.resetAll()
    }

    Platform.FileDialog {
        id: loadDialog
        title: qsTr("Load a ZP7 configuration")
        fileMode: Platform.FileDialog.OpenFile
        nameFilters: [qsTr("Configurations (*.json)"), qsTr("All files (*)")]
        folder: Platform.StandardPaths.writableLocation(Platform.StandardPaths.HomeLocation)
        onAccepted: page.run(function () { page.view.applyConfiguration(Format.localPath(file)) })
    }

    Platform.FileDialog {
        id: saveDialog
        title: qsTr("Save the ZP7 configuration")
        fileMode: Platform.FileDialog.SaveFile
        nameFilters: [qsTr("Configurations (*.json)")]
        defaultSuffix: "json"
        folder: Platform.StandardPaths.writableLocation(Platform.StandardPaths.HomeLocation)
        onAccepted: page.view.saveConfiguration(Format.localPath(file))
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 8
        spacing: 8

        RowLayout {
            Layout.fillWidth: true
            spacing: 8
            Label {
                objectName: "zp7ConfigState"
                text: !page.connected ? qsTr("No board connected")
                    : page.view.revertApplyAvailable ? qsTr("Edited: Apply sends it to the board")
                    : qsTr("The board runs what is shown")
                color: page.view && page.view.revertApplyAvailable ? "#b26a00" : "#4a4a4a"
            }
            Item {
                Layout.fillWidth: true
            }
            Button {
                objectName: "zp7LoadButton"
                text: qsTr("Load…")
                enabled: page.connected
                onClicked: loadDialog.open()
            }
            Button {
                objectName: "zp7SaveButton"
                text: qsTr("Save…")
                enabled: page.connected
                onClicked: {
                    saveDialog.open()
                    // Showing the dialog selects its folder, which clears a
                    // file chosen before.
                    saveDialog.currentFile = saveDialog.folder + "/" + page.view.suggestGeneralConfigFileName()
                }
            }
            Button {
                objectName: "zp7DefaultsButton"
                text: qsTr("Defaults")
                enabled: page.connected
                onClicked: page.run(function () { page.view.applyDefaultConfiguration() })
            }
            Button {
                objectName: "zp7RevertButton"
                text: qsTr("Revert")
                enabled: page.view ? page.view.revertApplyAvailable : false
                onClicked: page.run(function () { page.view.revertConfiguration() })
            }
            Button {
                objectName: "zp7ApplyButton"
                text: qsTr("Apply")
                highlighted: true
                enabled: page.connected && !page.view.isPlaybackActive && validity.invalid === 0
                onClicked: page.run(function () { page.view.applyGuiConfiguration() })
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

                ZP7Config {
                    objectName: "zp7PulsePane"
                    width: 480
                    config: page.gui
                }

                ZP7Frame {
                    objectName: "zp7FramePane"
                    width: 480
                    config: page.gui
                    tracker: validity
                }

                // What the edited frame gives: a frame of N pulses PRT apart
                // sees Doppler shifts up to PRF/2 in N bins.
                GroupBox {
                    id: derived
                    objectName: "zp7DerivedPane"
                    title: qsTr("Resulting Doppler view")
                    width: 480
                    readonly property real prt: page.frame ? page.frame.pulseRepetitionTime : 0
                    readonly property int samples: page.frame ? page.frame.numOfSamples : 0
                    readonly property real maxDoppler: prt > 0 ? 1 / (2 * prt) : 0
                    readonly property real resolution: prt > 0 && samples > 0 ? 1 / (samples * prt) : 0
                    ColumnLayout {
                        anchors.fill: parent
                        spacing: 4
                        ZP7ValueRow {
                            label: qsTr("Doppler range")
                            valueObjectName: "zp7DerivedDopplerRange"
                            text: derived.maxDoppler > 0
                                  ? "±" + Format.number(derived.maxDoppler, 5) + " Hz  (±"
                                    + Format.number(derived.maxDoppler * page.speedPerHz, 3) + " m/s)" : "–"
                        }
                        ZP7ValueRow {
                            label: qsTr("Resolution")
                            text: derived.resolution > 0
                                  ? Format.number(derived.resolution, 4) + " Hz  ("
                                    + Format.number(derived.resolution * page.speedPerHz, 3) + " m/s)" : "–"
                        }
                        ZP7ValueRow {
                            label: qsTr("Pulses on the air")
                            text: derived.samples > 0 && derived.prt > 0
                                  ? Format.seconds(derived.samples * derived.prt) + qsTr(" per frame") : "–"
                        }
                    }
                }
            }
        }
    }
}
