import QtQuick
import Sorvel.Ui

// Stand-in for the jet until its drawing lands.
Item {
    property point from
    property point to
    property bool active: false
    property real strength: active ? 1 : 0
}
