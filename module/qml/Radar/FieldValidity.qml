import QtQuick 2.15

// What the fields of a page share: how many hold a value the module does not
// accept, and the request to show the stored values again.
QtObject {
    property int invalid: 0
    signal resetAll()
}
