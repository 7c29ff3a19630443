import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Workbench 1.0
import Radar 1.0

// The live charts of the applied configuration: the first chirp in the time
// domain, the range spectrum, the range-Doppler image and, with an
// application, the presence history or the segmentation's polar view. All
// are redrawn when the pipeline says new chart data is there.
Item {
    id: page

    readonly property QtObject applied: radarView.deviceConfiguration
    readonly property int application: applied.application
    readonly property QtObject spectrumSettings: radarView.userSettings.rangeSpectrum
    readonly property QtObject timeSettings: radarView.userSettings.timeDomain
    readonly property QtObject spectrumAxis: applied.frequencyDomainAxis

    // One series per virtual antenna: with one transmitter at a time, one
    // per active receiver.
    readonly property var antennaNames: {
        var names = []
        applied.metrics.rx.numberOfEnabled
        for (var rx = 0; rx < 4; ++rx) {
            if (applied.metrics.rx.getEnabled(rx))
                names.push("Rx" + (rx + 1))
        }
        return names
    }

    Connections {
        target: radarView
        function onChartsDataUpdated() {
            timeDomainChart.refresh()
            rangeSpectrumChart.refresh()
            rangeDoppler.refresh()
            if (presenceChart.visible)
                presenceChart.refresh()
        }
    }

    GridLayout {
        anchors.fill: parent
        anchors.margins: 8
        columns: 2
        rowSpacing: 10
        columnSpacing: 14

        ChartView {
            id: timeDomainChart
            objectName: "timeDomainChart"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            Layout.preferredHeight: 1
            title: qsTr("Time domain (first chirp)")
            xTitle: qsTr("Sample")
            yTitle: qsTr("Amplitude (normalised)")
            legend: page.antennaNames
            chartData: radarView.getChartData(0)
            autoScaleY: false
            yMin: page.timeSettings ? page.timeSettings.axisYMin : 0
            yMax: page.timeSettings ? page.timeSettings.axisYMax : 1
        }

        ChartView {
            id: rangeSpectrumChart
            objectName: "rangeSpectrumChart"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            Layout.preferredHeight: 1
            readonly property bool linear: page.spectrumSettings ? page.spectrumSettings.isLinearFftMagnitude : false
            title: qsTr("Range spectrum")
            xTitle: qsTr("Range (m)")
            yTitle: linear ? qsTr("Magnitude") : qsTr("Magnitude (dB)")
            legend: page.antennaNames
            chartData: radarView.getChartData(1)
            // The distance axis of the applied configuration, once known.
            autoScaleX: !(page.spectrumAxis.max > page.spectrumAxis.min)
            xMin: page.spectrumAxis.min
            xMax: page.spectrumAxis.max
        }

        RangeDopplerView {
            id: rangeDoppler
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            Layout.preferredHeight: 1
            Layout.columnSpan: page.application === 0 ? 2 : 1
        }

        ChartView {
            id: presenceChart
            objectName: "presenceChart"
            visible: page.application === 1
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            Layout.preferredHeight: 1
            title: qsTr("Presence (last 30 s)")
            xTitle: qsTr("Time (s)")
            yTitle: qsTr("Present")
            legend: [qsTr("Presence")]
            chartData: radarView.getChartData(2)
            stepped: true
            autoScaleY: false
            yMin: -0.1
            yMax: 1.1
        }

        PolarChart {
            id: polarChart
            objectName: "polarChart"
            visible: page.application === 2
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            Layout.preferredHeight: 1
            distanceMax: page.applied.segmentation.maxDetectionRangeM > 0
                         ? page.applied.segmentation.maxDetectionRangeM : 5
            axisLabel: qsTr("Distance (m)")
            Component.onCompleted: radarView.setDataForPolarChart(4, polarChart)
        }
    }
}
