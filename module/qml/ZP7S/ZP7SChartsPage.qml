import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Workbench 1.0
import "../Radar/Format.js" as Format

// The live charts of the running acquisition: the frame's I and Q samples
// (one per pulse) and its Doppler spectrum from -PRF/2 to +PRF/2. The
// spectrum reads as frequency on its own axis and as radial speed on the
// one beneath it and in the readout under the mouse; a negative speed is a
// target coming closer.
Item {
    id: page

    property QtObject view: null
    readonly property QtObject applied: view ? view.deviceConfiguration : null
    readonly property QtObject frame: applied ? applied.frameParams : null
    readonly property QtObject pulse: applied ? applied.pulseConfigParams : null
    readonly property QtObject timeSettings: view && view.userSettings ? view.userSettings.timeDomain : null
    readonly property QtObject spectrumSettings: view && view.userSettings ? view.userSettings.rangeSpectrum : null
    readonly property real maxDoppler: view ? view.maxDopplerFrequency : 0
    // Metres per second of range rate per hertz of Doppler shift (negative:
    // a positive shift is a target coming closer).
    readonly property real speedPerHz: view ? view.radialSpeed(1.0) : 0
    readonly property string channelName: pulse ? (pulse.channel === 0 ? "Tx1Rx1" : pulse.channel === 1 ? "Tx2Rx2" : "–")
                                                : "–"

    function speedText(metresPerSecond) {
        var text = Format.number(metresPerSecond, 3) + " m/s"
        if (metresPerSecond < 0)
            return text + qsTr(" (approaching)")
        if (metresPerSecond > 0)
            return text + qsTr(" (receding)")
        return text
    }

    Connections {
        target: page.view
        function onChartsDataUpdated() {
            timeDomainChart.refresh()
            dopplerChart.refresh()
        }
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 8
        spacing: 6

        // What the charts show, from the applied configuration.
        RowLayout {
            objectName: "zp7ChartFacts"
            Layout.fillWidth: true
            spacing: 6
            Repeater {
                model: [
                    { caption: qsTr("Channel"), name: "zp7ShownChannel", value: page.channelName },
                    { caption: qsTr("Samples"), name: "zp7ShownSamples", value: page.frame ? String(page.frame.numOfSamples) : "–" },
                    { caption: qsTr("PRT"), name: "zp7ShownPrt",
                      value: page.frame ? Format.number(page.frame.pulseRepetitionTime * 1e6, 5) + " µs" : "–" },
                    { caption: qsTr("Doppler range"), name: "zp7DopplerRange",
                      value: page.maxDoppler > 0 ? "±" + Format.number(page.maxDoppler, 5) + " Hz (±"
                                                   + Format.number(Math.abs(page.maxDoppler * page.speedPerHz), 3) + " m/s)"
                                                 : "–" }
                ]
                RowLayout {
                    spacing: 6
                    Layout.rightMargin: 12
                    Label {
                        text: modelData.caption
                        color: "#4a4a4a"
                    }
                    Label {
                        objectName: modelData.name
                        text: modelData.value
                        font.bold: true
                    }
                }
            }
            Item {
                Layout.fillWidth: true
            }
            Label {
                text: qsTr("Frame")
                color: "#4a4a4a"
            }
            Label {
                objectName: "zp7FrameNumber"
                text: page.view ? page.view.frameNumber : "–"
                font.bold: true
                Layout.minimumWidth: 50
            }
        }

        ChartView {
            id: timeDomainChart
            objectName: "zp7TimeDomainChart"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 1
            title: qsTr("Time domain (I/Q)")
            xTitle: qsTr("Pulse")
            yTitle: qsTr("Amplitude (normalised)")
            legend: ["I " + page.channelName, "Q " + page.channelName]
            chartData: page.view ? page.view.getChartData(0) : null
            autoScaleY: !page.timeSettings
            yMin: page.timeSettings ? page.timeSettings.axisYMin : 0
            yMax: page.timeSettings ? page.timeSettings.axisYMax : 1
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 1
            spacing: 0

            ChartView {
                id: dopplerChart
                objectName: "zp7DopplerChart"
                Layout.fillWidth: true
                Layout.fillHeight: true
                readonly property bool linear: page.spectrumSettings ? page.spectrumSettings.isLinearFftMagnitude : false
                title: qsTr("Doppler spectrum")
                xTitle: qsTr("Doppler frequency (Hz)")
                yTitle: linear ? qsTr("Magnitude") : qsTr("Magnitude (dB)")
                legend: [page.channelName]
                chartData: page.view ? page.view.getChartData(1) : null
                autoScaleX: !(page.maxDoppler > 0)
                xMin: -page.maxDoppler
                xMax: page.maxDoppler
                formatReadout: function (hit) {
                    return Format.number(hit.x, 5) + " Hz   " + page.speedText(hit.x * page.speedPerHz) + "\n"
                        + Format.number(hit.y, 4) + (dopplerChart.linear ? "" : " dB")
                }
            }

            // The same axis in radial speed: round speeds at the frequency
            // that carries them.
            Item {
                id: speedAxis
                objectName: "zp7SpeedAxis"
                Layout.fillWidth: true
                implicitHeight: speedTitle.implicitHeight + speedMetrics.height + 8
                visible: page.maxDoppler > 0 && page.speedPerHz !== 0

                readonly property QtObject plot: dopplerChart.chart
                // Where the plot lies across this item; re-read when either moves.
                readonly property real plotLeft: {
                    dopplerChart.width; dopplerChart.yLabelWidth; plot.width; width
                    return plot.mapToItem(speedAxis, 0, 0).x
                }
                readonly property real speedLimit: Math.abs(page.maxDoppler * page.speedPerHz)
                readonly property var speeds: Format.ticks(-speedLimit, speedLimit, Math.max(2, Math.floor(plot.width / 90)))

                FontMetrics {
                    id: speedMetrics
                    font.pixelSize: 11
                }
                Repeater {
                    model: speedAxis.speeds
                    Item {
                        readonly property real frequency: modelData / page.speedPerHz
                        readonly property real span: speedAxis.plot.xMax - speedAxis.plot.xMin
                        x: speedAxis.plotLeft + (span > 0 ? (frequency - speedAxis.plot.xMin) / span * speedAxis.plot.width : 0)
                        visible: span > 0 && frequency >= speedAxis.plot.xMin && frequency <= speedAxis.plot.xMax
                        Rectangle {
                            width: 1
                            height: 4
                            color: "#9a9a9a"
                        }
                        Text {
                            objectName: "speedTickLabel"
                            x: -width / 2
                            y: 4
                            text: Format.number(modelData, 4)
                            color: "#303030"
                            font.pixelSize: 11
                        }
                    }
                }
                Text {
                    id: speedTitle
                    anchors.bottom: parent.bottom
                    x: speedAxis.plotLeft + speedAxis.plot.width / 2 - width / 2
                    text: qsTr("Radial speed (m/s), negative = approaching")
                    color: "#303030"
                    font.pixelSize: 11
                }
            }
        }
    }
}
