import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../Radar/Format.js" as Format

// What the connected pulsed-Doppler board tells about itself: chip,
// firmware, channels, band and the temperature its monitor reads.
Item {
    id: page

    property QtObject view: null
    readonly property QtObject info: view ? view.deviceInfo : null
    readonly property bool connected: view ? view.isConnected : false
    // An image in the firmware folder newer than the connected board runs, or
    // empty (also while no board is connected).
    readonly property string newerImage: connected && view.newFirmwareImage ? view.newFirmwareImage : ""

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 12
        spacing: 10

        Label {
            visible: !page.connected
            text: qsTr("No board is connected; the values are those of the last board.")
            color: "#6a6a6a"
        }

        GroupBox {
            title: qsTr("Board")
            Layout.preferredWidth: 760
            ColumnLayout {
                anchors.fill: parent
                spacing: 4
                ZP7ValueRow {
                    label: qsTr("Chip")
                    valueObjectName: "zp7DeviceChip"
                    text: page.info && page.info.deviceName ? page.info.deviceName : "–"
                }
                ZP7ValueRow {
                    label: qsTr("Firmware")
                    valueObjectName: "zp7DeviceFirmware"
                    text: page.info && (page.info.deviceFirmwareName || page.info.deviceFirmwareNumber)
                          ? (page.info.deviceFirmwareName + " " + page.info.deviceFirmwareNumber).trim() : "–"
                }
                Label {
                    objectName: "zp7DeviceFirmwareNotice"
                    visible: page.newerImage !== ""
                    Layout.leftMargin: 186
                    Layout.fillWidth: true
                    text: qsTr("Newer firmware available: %1. Flash it from the Flashers panel.")
                          .arg(page.newerImage.split("/").pop())
                    wrapMode: Text.Wrap
                    color: "#a36b00"
                }
                ZP7ValueRow {
                    label: qsTr("Antennas")
                    valueObjectName: "zp7DeviceAntennas"
                    text: page.info ? qsTr("%1 receive, %2 transmit (one Tx/Rx pair at a time)")
                                      .arg(page.info.numRxAntennas).arg(page.info.numTxAntennas) : "–"
                }
                ZP7ValueRow {
                    label: qsTr("RF range")
                    valueObjectName: "zp7DeviceRfRange"
                    text: page.info ? Format.band(page.info.minRfFrequencyHz, page.info.maxRfFrequencyHz) : "–"
                }
            }
        }

        GroupBox {
            title: qsTr("Monitors")
            Layout.preferredWidth: 760
            ColumnLayout {
                anchors.fill: parent
                spacing: 4
                ZP7ValueRow {
                    label: qsTr("Temperature")
                    valueObjectName: "zp7DeviceTemperature"
                    // A dash while the board gives no reading.
                    text: !page.info || page.info.deviceTemperature === undefined || page.info.deviceTemperature === null
                          || isNaN(page.info.deviceTemperature)
                          ? "–" : Format.number(page.info.deviceTemperature, 4) + " °C"
                }
                ZP7ValueRow {
                    label: qsTr("Frame rate")
                    valueObjectName: "zp7DeviceFrameRate"
                    text: page.view && page.view.isActive ? Format.number(page.view.frameRate, 4) + " fps" : "–"
                }
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
