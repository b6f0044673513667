import QtQuick
import Sorvel.Ui

// The three areas as one segmented control; the current one is filled, and
// the highlight slides between them. In compact form only the symbols show.
PillPicker {
    id: switcher

    property bool compact: false

    options: Shell.areaTitles
    symbols: Shell.areaSymbols
    toolTips: Shell.areaToolTips
    currentIndex: Shell.areaIndex
    height: 32
    onActivated: (index, clickCount) => Shell.goToAreaAt(index, clickCount, true)
}
