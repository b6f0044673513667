import QtQuick
import QtQuick.Templates as T
import Sorvel.Ui

// A progress bar drawn as a molten bar: the flat accent gradient filling a
// capsule of the well colour.
T.ProgressBar {
    id: control

    implicitWidth: 200
    implicitHeight: 6

    contentItem: MoltenBar {
        fraction: control.indeterminate ? 0 : control.visualPosition
    }
    background: Item {}
}
