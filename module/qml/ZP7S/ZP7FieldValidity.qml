import QtQuick 2.15

// What the fields of the ZP7 page share: how many hold a value that is not
// accepted, and the request to show the stored values again.
QtObject {
    property int invalid: 0
    signal resetAll()
}
