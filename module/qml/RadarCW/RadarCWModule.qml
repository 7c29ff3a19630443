import QtQuick 2.15

// Page of the FMCW continuous-wave test mode; its charts and configuration panes are
// added as the mode grows.
Item {
    id: root
    objectName: "RadarCWModule"
}
