import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "Format.js" as Format

// What the connected board tells about itself, as DeviceInfo publishes it:
// the temperature and the transmit power follow the monitors.
Item {
    id: page
    readonly property QtObject info: radarView.deviceConfiguration.deviceInfo
    readonly property bool connected: radarView.isConnected
    // An image in the firmware folder newer than the connected board runs, or
    // empty (also while no board is connected).
    readonly property string newerImage: connected && radarView.newFirmwareImage ? radarView.newFirmwareImage : ""

    function txPowerText(powers) {
        if (!powers || powers.length === 0)
            return "–"
        var parts = []
        for (var i = 0; i < powers.length; ++i)
            parts.push("Tx" + (i + 1) + ": " + Format.number(powers[i], 4) + " dBm")
        return parts.join("   ")
    }

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
                ValueRow {
                    label: qsTr("Chip")
                    valueObjectName: "deviceChip"
                    text: page.info.deviceName || "–"
                }
                ValueRow {
                    label: qsTr("Firmware")
                    valueObjectName: "deviceFirmware"
                    text: page.info.deviceFirmwareName || page.info.deviceFirmwareNumber
                          ? (page.info.deviceFirmwareName + " " + page.info.deviceFirmwareNumber).trim() : "–"
                }
                Label {
                    objectName: "deviceFirmwareNotice"
                    visible: page.newerImage !== ""
                    Layout.leftMargin: 186
                    Layout.fillWidth: true
                    text: qsTr("Newer firmware available: %1. Flash it from the Flashers panel.")
                          .arg(page.newerImage.split("/").pop())
                    wrapMode: Text.Wrap
                    color: "#a36b00"
                }
                ValueRow {
                    label: qsTr("Antennas")
                    valueObjectName: "deviceAntennas"
                    text: qsTr("%1 receive, %2 transmit").arg(page.info.numRxAntennas).arg(page.info.numTxAntennas)
                }
                ValueRow {
                    label: qsTr("RF range")
                    valueObjectName: "deviceRfRange"
                    text: Format.band(page.info.minRfFrequencyHz, page.info.maxRfFrequencyHz)
                }
            }
        }

        GroupBox {
            title: qsTr("Monitors")
            Layout.preferredWidth: 760
            ColumnLayout {
                anchors.fill: parent
                spacing: 4
                ValueRow {
                    label: qsTr("Temperature")
                    valueObjectName: "deviceTemperature"
                    // Empty while the board gives no reading.
                    text: page.info.deviceTemperature === undefined || page.info.deviceTemperature === null
                          ? "–" : Format.number(page.info.deviceTemperature, 4) + " °C"
                }
                ValueRow {
                    label: qsTr("Tx power")
                    valueObjectName: "deviceTxPower"
                    text: page.txPowerText(page.info.deviceTxPower)
                }
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
