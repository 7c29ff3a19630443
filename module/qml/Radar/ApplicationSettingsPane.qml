import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "Format.js" as Format

// The settings of the application chosen on the page: presence sensing or
// segmentation (with its list of angular segments).
GroupBox {
    id: pane
    property QtObject configuration: null
    property QtObject tracker: null
    readonly property int application: configuration.application
    readonly property QtObject presence: configuration.presencesensing
    readonly property QtObject segmentation: configuration.segmentation
    readonly property var levels: [qsTr("High"), qsTr("Medium"), qsTr("Low")]

    // A new application brings its own defaults on Apply: what was typed
    // for the previous one, hidden now, must not hold Apply back.
    onApplicationChanged: if (tracker) tracker.resetAll()

    title: application === 1 ? qsTr("Presence sensing")
         : application === 2 ? qsTr("Segmentation") : qsTr("Application")

    ColumnLayout {
        anchors.fill: parent
        spacing: 4

        Label {
            visible: pane.application === 0
            text: qsTr("Without an application the board delivers its frames only. "
                       + "Choose presence sensing or segmentation above to set it up.")
            color: "#6a6a6a"
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }

        // Presence sensing.
        ColumnLayout {
            visible: pane.application === 1
            Layout.fillWidth: true
            spacing: 4
            MetricField {
                target: pane.presence; propertyName: "minDetectionRange"; namePrefix: "presence_"
                fieldName: "presencesensing.minDetectionRange"; label: qsTr("Min detection range"); unit: "m"
                tracker: pane.tracker; labelWidth: 175; fieldWidth: 90
            }
            MetricField {
                target: pane.presence; propertyName: "maxDetectionRange"; namePrefix: "presence_"
                fieldName: "presencesensing.maxDetectionRange"; label: qsTr("Max detection range"); unit: "m"
                tracker: pane.tracker; labelWidth: 175; fieldWidth: 90
            }
            MetricField {
                target: pane.presence; propertyName: "rangeHysteresisPercentage"; namePrefix: "presence_"
                fieldName: "presencesensing.rangeHysteresisPercentage"; label: qsTr("Range hysteresis"); unit: "%"
                tracker: pane.tracker; labelWidth: 175; fieldWidth: 90
            }
            MetricField {
                target: pane.presence; propertyName: "presenceConfirmCount"; namePrefix: "presence_"
                fieldName: "presencesensing.presenceConfirmCount"; label: qsTr("Confirm presence"); unit: qsTr("frames")
                whole: true; tracker: pane.tracker; labelWidth: 175; fieldWidth: 90
            }
            MetricField {
                target: pane.presence; propertyName: "absenceConfirmCount"; namePrefix: "presence_"
                fieldName: "presencesensing.absenceConfirmCount"; label: qsTr("Confirm absence"); unit: qsTr("frames")
                whole: true; tracker: pane.tracker; labelWidth: 175; fieldWidth: 90
            }
        }

        // Segmentation.
        ColumnLayout {
            visible: pane.application === 2
            Layout.fillWidth: true
            spacing: 4
            MetricField {
                target: pane.segmentation; propertyName: "maxDetectionRangeM"; namePrefix: "segmentation_"
                fieldName: "segmentation.maxDetectionRangeM"; label: qsTr("Max detection range"); unit: "m"
                tracker: pane.tracker; labelWidth: 175; fieldWidth: 90
            }
            MetricField {
                target: pane.segmentation; propertyName: "maxNumTracks"; namePrefix: "segmentation_"
                fieldName: "segmentation.maxNumTracks"; label: qsTr("Max tracks"); whole: true
                tracker: pane.tracker; labelWidth: 175; fieldWidth: 90
            }
            CheckBox {
                objectName: "segmentation_enableHysteresis"
                text: qsTr("Hysteresis")
                checked: pane.segmentation.enableHysteresis
                onToggled: pane.segmentation.enableHysteresis = checked
            }
            RowLayout {
                Label {
                    text: qsTr("Detection sensitivity")
                    Layout.preferredWidth: 175
                }
                ComboBox {
                    objectName: "segmentation_detectionSensitivity"
                    model: pane.levels
                    currentIndex: pane.segmentation.detectionSensitivity
                    onActivated: pane.segmentation.detectionSensitivity = index
                }
            }
            RowLayout {
                Label {
                    text: qsTr("Static target removal")
                    Layout.preferredWidth: 175
                }
                ComboBox {
                    objectName: "segmentation_staticTargetRemoval"
                    model: pane.levels
                    currentIndex: pane.segmentation.staticTargetRemoval
                    onActivated: pane.segmentation.staticTargetRemoval = index
                }
            }
            RowLayout {
                Label {
                    text: qsTr("Segments")
                    Layout.preferredWidth: 175
                }
                SpinBox {
                    objectName: "segmentCount"
                    from: 1
                    to: 3
                    value: pane.segmentation.segmentsDegrees.length
                    onValueModified: pane.segmentation.setSegmentListSize(value)
                }
            }
            Repeater {
                model: pane.segmentation.segmentsDegrees.length
                MetricField {
                    namePrefix: "segment_"
                    propertyName: String(index + 1)
                    fieldName: "segmentation.segmentsDegrees"
                    label: qsTr("Segment S%1").arg(index + 1)
                    unit: "°"
                    tracker: pane.tracker; labelWidth: 175; fieldWidth: 90
                    shownValue: pane.segmentation.segmentsDegrees[index]
                    writeValue: function (number) { pane.segmentation.setSegment(index, number) }
                }
            }
            Label {
                text: qsTr("Derived: %1 samples × %2 chirps, %3 bandwidth, chirps every %4")
                      .arg(pane.segmentation.numSamplesPerChirp).arg(pane.segmentation.numChirpsPerFrame)
                      .arg(Format.frequency(pane.segmentation.bandwidthHz))
                      .arg(Format.seconds(pane.segmentation.chirpRepetitionTimeS))
                color: "#6a6a6a"
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
        }
    }
}
