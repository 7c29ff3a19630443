import QtQuick 2.15
import Workbench 1.0

// A series chart with its frame, axes, tick labels, axis titles, a legend
// and a readout of the point under the mouse. The ticks and the readout's
// text come from the SeriesChart, so this file only places them.
Item {
    id: root

    property alias chart: plot
    property alias chartData: plot.chartData
    property string title: ""
    property string xTitle: ""
    property string yTitle: ""
    // One name per series, in series order.
    property var legend: []
    property alias colors: plot.colors
    property alias xMin: plot.xMin
    property alias xMax: plot.xMax
    property alias yMin: plot.yMin
    property alias yMax: plot.yMax
    property alias autoScaleX: plot.autoScaleX
    property alias autoScaleY: plot.autoScaleY
    property alias stepped: plot.stepped
    property color textColor: "#303030"
    property color frameColor: "#9a9a9a"
    property color plotColor: "white"
    property int fontPixelSize: 11
    // The hover readout's text for a point SeriesChart.nearest found; the
    // chart's own "x: … y: …" unless the page reads its axes otherwise.
    property var formatReadout: function (hit) { return hit.text || "" }

    function refresh() {
        plot.refresh()
    }

    // Room for the y tick labels: as wide as the widest label shown so far.
    // It only grows, so that the plot does not jump sideways whenever the
    // range changes the labels' length.
    property real yLabelWidth: Math.ceil(metrics.advanceWidth("0.0"))
    function fitYLabels() {
        var widest = 0
        for (var i = 0; i < plot.yTicks.length; ++i)
            widest = Math.max(widest, metrics.advanceWidth(plot.yTicks[i].label))
        if (Math.ceil(widest) > yLabelWidth)
            yLabelWidth = Math.ceil(widest)
    }
    Connections {
        target: plot
        function onTicksChanged() {
            root.fitYLabels()
        }
    }
    Component.onCompleted: fitYLabels()

    implicitWidth: 480
    implicitHeight: 300

    FontMetrics {
        id: metrics
        font.pixelSize: root.fontPixelSize
    }

    Text {
        id: titleText
        objectName: "chartTitle"
        anchors.top: parent.top
        anchors.horizontalCenter: frame.horizontalCenter
        text: root.title
        visible: text.length > 0
        height: visible ? implicitHeight : 0
        color: root.textColor
        font.pixelSize: root.fontPixelSize + 2
        font.bold: true
    }

    Row {
        id: legendRow
        objectName: "chartLegend"
        anchors.top: titleText.bottom
        anchors.right: frame.right
        height: root.legend.length > 0 ? metrics.height + 4 : 0
        spacing: 12
        Repeater {
            model: root.legend
            Row {
                spacing: 4
                anchors.verticalCenter: parent.verticalCenter
                Rectangle {
                    width: 16
                    height: 3
                    anchors.verticalCenter: parent.verticalCenter
                    // Reading plot.colors ties the swatch to colour changes.
                    color: {
                        plot.colors
                        return plot.colorAt(index)
                    }
                }
                Text {
                    text: modelData
                    color: root.textColor
                    font.pixelSize: root.fontPixelSize
                }
            }
        }
    }

    Item {
        id: yTitleBox
        anchors.left: parent.left
        anchors.top: frame.top
        anchors.bottom: frame.bottom
        width: root.yTitle.length > 0 ? yTitleText.implicitHeight + 4 : 0
        Text {
            id: yTitleText
            objectName: "chartYTitle"
            anchors.centerIn: parent
            rotation: -90
            text: root.yTitle
            color: root.textColor
            font.pixelSize: root.fontPixelSize
        }
    }

    Text {
        id: xTitleText
        objectName: "chartXTitle"
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: frame.horizontalCenter
        height: text.length > 0 ? implicitHeight : 0
        text: root.xTitle
        color: root.textColor
        font.pixelSize: root.fontPixelSize
    }

    Rectangle {
        id: frame
        anchors.left: yTitleBox.right
        anchors.leftMargin: root.yLabelWidth + 8
        anchors.right: parent.right
        // Half of the last x label sticks out on the right.
        anchors.rightMargin: Math.ceil(metrics.advanceWidth("0000.0") / 2)
        anchors.top: legendRow.bottom
        anchors.topMargin: Math.ceil(metrics.height / 2) + 2
        anchors.bottom: xTitleText.top
        anchors.bottomMargin: metrics.height + 6
        color: root.plotColor
        border.color: root.frameColor
        border.width: 1

        SeriesChart {
            id: plot
            objectName: "seriesChart"
            anchors.fill: parent
            anchors.margins: 1
        }

        MouseArea {
            id: hover
            anchors.fill: plot
            hoverEnabled: true
            acceptedButtons: Qt.NoButton
            property var hit: ({})
            function look() {
                hit = containsMouse ? plot.nearest(mouseX, mouseY) : ({})
            }
            onPositionChanged: look()
            onContainsMouseChanged: look()
            Connections {
                target: plot
                function onRefreshed() {
                    if (hover.containsMouse)
                        hover.look()
                }
            }

            Rectangle {
                id: marker
                visible: hover.hit.series !== undefined
                width: 7
                height: 7
                radius: 3.5
                x: (hover.hit.itemX || 0) - width / 2
                y: (hover.hit.itemY || 0) - height / 2
                color: visible ? plot.colorAt(hover.hit.series) : "transparent"
                border.color: "white"
            }

            Rectangle {
                id: readout
                objectName: "hoverReadout"
                visible: marker.visible
                width: readoutText.implicitWidth + 8
                height: readoutText.implicitHeight + 4
                // Just below and right of the pointer, turned inwards at the
                // right and bottom edges.
                x: hover.mouseX + 12 + width > hover.width ? hover.mouseX - 12 - width : hover.mouseX + 12
                y: hover.mouseY + 16 + height > hover.height ? hover.mouseY - 8 - height : hover.mouseY + 16
                color: "#f0ffffff"
                border.color: root.frameColor
                radius: 2
                Text {
                    id: readoutText
                    objectName: "hoverReadoutText"
                    anchors.centerIn: parent
                    text: hover.hit.series !== undefined ? root.formatReadout(hover.hit) : ""
                    color: root.textColor
                    font.pixelSize: root.fontPixelSize
                }
            }
        }
    }

    Repeater {
        model: plot.xTicks.length
        Text {
            objectName: "xTickLabel"
            readonly property var tick: plot.xTicks[index]
            x: frame.x + plot.x + (tick ? tick.position : 0) - width / 2
            y: frame.y + frame.height + 3
            text: tick ? tick.label : ""
            color: root.textColor
            font.pixelSize: root.fontPixelSize
        }
    }

    Repeater {
        model: plot.yTicks.length
        Text {
            objectName: "yTickLabel"
            readonly property var tick: plot.yTicks[index]
            x: frame.x - width - 4
            y: frame.y + plot.y + (tick ? tick.position : 0) - height / 2
            text: tick ? tick.label : ""
            color: root.textColor
            font.pixelSize: root.fontPixelSize
        }
    }
}
