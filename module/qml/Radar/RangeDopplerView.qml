import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Radar 1.0
import "Format.js" as Format

// The range-Doppler image of one virtual antenna with its range (vertical)
// and speed (horizontal) axes, its colour bar in dB and the two settings that
// shape it: the lower end of the colour scale and the antenna shown.
Item {
    id: view

    readonly property QtObject settings: radarView.userSettings.rangeDoppler
    readonly property QtObject rangeAxis: radarView.deviceConfiguration.dopplerRangeAxis
    readonly property QtObject speedAxis: radarView.deviceConfiguration.dopplerSpeedAxis
    readonly property QtObject applied: radarView.deviceConfiguration.metrics
    property int fontPixelSize: 11
    property alias image: image

    // The virtual antennas of the applied scene: each active transmitter
    // with each active receiver, as 0-based positions.
    readonly property var antennas: {
        var list = []
        applied.rx.numberOfEnabled
        applied.tx.numberOfEnabled
        for (var tx = 0; tx < 4; ++tx) {
            if (!applied.tx.getEnabled(tx))
                continue
            for (var rx = 0; rx < 4; ++rx) {
                if (applied.rx.getEnabled(rx))
                    list.push({ rx: rx, tx: tx, text: "Rx" + (rx + 1) + " · Tx" + (tx + 1) })
            }
        }
        return list
    }

    function refresh() {
        image.update()
    }

    function applySettings() {
        radarView.applyRangeDopplerMapConfigurationRuntime()
    }

    implicitWidth: 480
    implicitHeight: 320

    FontMetrics {
        id: metrics
        font.pixelSize: view.fontPixelSize
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 2

        RowLayout {
            Layout.fillWidth: true
            spacing: 6
            Label {
                text: qsTr("Range-Doppler map")
                font.bold: true
                font.pixelSize: view.fontPixelSize + 2
            }
            Item {
                Layout.fillWidth: true
            }
            Label {
                text: qsTr("Antenna")
                font.pixelSize: view.fontPixelSize
            }
            ComboBox {
                objectName: "rangeDopplerAntenna"
                model: view.antennas.map(function (antenna) { return antenna.text })
                implicitHeight: 28
                font.pixelSize: view.fontPixelSize
                Layout.preferredWidth: 120
                currentIndex: {
                    for (var i = 0; i < view.antennas.length; ++i) {
                        if (view.antennas[i].rx === view.settings.currentRxIndex
                                && view.antennas[i].tx === view.settings.currentTxIndex)
                            return i
                    }
                    return -1
                }
                onActivated: {
                    view.settings.currentRxIndex = view.antennas[index].rx
                    view.settings.currentTxIndex = view.antennas[index].tx
                    view.applySettings()
                }
            }
            Label {
                text: qsTr("Colour threshold")
                font.pixelSize: view.fontPixelSize
            }
            SpinBox {
                objectName: "colorThreshold"
                from: -200
                to: -10
                stepSize: 5
                editable: true
                implicitHeight: 28
                font.pixelSize: view.fontPixelSize
                value: view.settings.colorThreshold
                textFromValue: function (value) { return value + " dB" }
                valueFromText: function (text) { return parseInt(text) }
                onValueModified: {
                    view.settings.colorThreshold = value
                    view.applySettings()
                }
            }
        }

        Item {
            id: plotArea
            Layout.fillWidth: true
            Layout.fillHeight: true

            readonly property var rangeTicks: Format.ticks(view.rangeAxis.min, view.rangeAxis.max, 6)
            readonly property var speedTicks: Format.ticks(view.speedAxis.min, view.speedAxis.max, 6)
            // The threshold at the bottom is labelled too, unless a round
            // tick sits next to it.
            readonly property var dbTicks: {
                var values = Format.ticks(view.settings.colorThreshold, 0, 5)
                if (values.length === 0 || values[0] - view.settings.colorThreshold > -view.settings.colorThreshold / 10)
                    values.unshift(view.settings.colorThreshold)
                return values
            }

            // Range axis title, turned.
            Text {
                anchors.verticalCenter: image.verticalCenter
                x: -width / 2 + height / 2
                rotation: -90
                text: qsTr("Range (m)")
                font.pixelSize: view.fontPixelSize
                color: "#303030"
            }

            Rectangle {
                anchors.fill: image
                anchors.margins: -1
                color: "black"
                border.color: "#9a9a9a"
            }

            PixmapImage {
                id: image
                objectName: "rangeDopplerImage"
                x: metrics.height + metrics.advanceWidth("00.0") + 8
                y: metrics.height / 2
                width: colorBar.x - x - metrics.advanceWidth("-000 dB") - 20
                height: plotArea.height - y - 2 * metrics.height - 8
                data: radarView.getRangeDopplerChartData()
            }

            // Not inside the image: its "data" is the chart data, not the
            // children list.
            MouseArea {
                id: hover
                anchors.fill: image
                hoverEnabled: true
                acceptedButtons: Qt.NoButton
                readonly property real range: view.rangeAxis.min
                    + (1 - mouseY / height) * (view.rangeAxis.max - view.rangeAxis.min)
                readonly property real speed: view.speedAxis.min
                    + mouseX / width * (view.speedAxis.max - view.speedAxis.min)

                Rectangle {
                    objectName: "rangeDopplerReadout"
                    visible: hover.containsMouse && view.rangeAxis.max > view.rangeAxis.min
                    width: readoutText.implicitWidth + 8
                    height: readoutText.implicitHeight + 4
                    x: hover.mouseX + 12 + width > hover.width ? hover.mouseX - 12 - width : hover.mouseX + 12
                    y: hover.mouseY + 16 + height > hover.height ? hover.mouseY - 8 - height : hover.mouseY + 16
                    color: "#f0ffffff"
                    border.color: "#9a9a9a"
                    radius: 2
                    Text {
                        id: readoutText
                        objectName: "rangeDopplerReadoutText"
                        anchors.centerIn: parent
                        text: qsTr("range: %1 m  speed: %2 m/s")
                              .arg(hover.range.toFixed(2)).arg(hover.speed.toFixed(2))
                        font.pixelSize: view.fontPixelSize
                    }
                }
            }

            // Range ticks: range bin 0 is at the bottom of the image.
            Repeater {
                model: plotArea.rangeTicks
                Text {
                    readonly property real fraction: (modelData - view.rangeAxis.min)
                                                     / (view.rangeAxis.max - view.rangeAxis.min)
                    x: image.x - width - 4
                    y: image.y + (1 - fraction) * image.height - height / 2
                    text: Format.number(modelData, 4)
                    font.pixelSize: view.fontPixelSize
                    color: "#303030"
                }
            }

            // Speed ticks.
            Repeater {
                model: plotArea.speedTicks
                Text {
                    readonly property real fraction: (modelData - view.speedAxis.min)
                                                     / (view.speedAxis.max - view.speedAxis.min)
                    x: image.x + fraction * image.width - width / 2
                    y: image.y + image.height + 3
                    text: Format.number(modelData, 4)
                    font.pixelSize: view.fontPixelSize
                    color: "#303030"
                }
            }

            Text {
                anchors.horizontalCenter: image.horizontalCenter
                y: image.y + image.height + metrics.height + 5
                text: qsTr("Speed (m/s)")
                font.pixelSize: view.fontPixelSize
                color: "#303030"
            }

            RangeDopplerColorBar {
                id: colorBar
                objectName: "rangeDopplerColorBar"
                x: plotArea.width - width - metrics.advanceWidth("-000 dB") - 6
                y: image.y
                width: 14
                height: image.height
            }

            // The colour scale runs linearly from the threshold (black) up
            // to 0 dB.
            Repeater {
                model: plotArea.dbTicks
                Text {
                    readonly property real fraction: (modelData - view.settings.colorThreshold)
                                                     / -view.settings.colorThreshold
                    x: colorBar.x + colorBar.width + 4
                    y: colorBar.y + (1 - fraction) * colorBar.height - height / 2
                    text: Format.number(modelData, 4) + " dB"
                    font.pixelSize: view.fontPixelSize
                    color: "#303030"
                }
            }
        }
    }
}
