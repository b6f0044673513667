import QtQuick
import Sorvel.Ui

// The badge of a risk verdict: its level (Risk.Level's raw value: 0 safe,
// 1 normal, 2 caution, 3 danger, 4 locked) and its title. The normal level and
// an empty title show nothing.
Badge {
    id: badge

    property int level: 1
    property string title

    visible: level !== 1 && title.length > 0
    text: title
    tint: level === 0 ? Look.accent : level === 2 ? Look.honeyInk : level === 3 ? Look.ember : Look.ink2
    symbol: level === 3 ? "exclamationmark.triangle.fill" : level === 4 ? "lock.fill" : ""
}
