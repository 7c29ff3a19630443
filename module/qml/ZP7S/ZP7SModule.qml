import QtQuick 2.15

// Page of the pulsed Doppler mode; its charts and configuration panes are
// added as the mode grows.
Item {
    id: root
    objectName: "ZP7SModule"
}
