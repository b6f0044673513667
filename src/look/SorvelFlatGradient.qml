import QtQuick
import Sorvel.Ui

// The flat accent gradient of bars and primary buttons.
Gradient {
    GradientStop { position: 0; color: Look.sorvelFlatGradient[0] }
    GradientStop { position: 1; color: Look.sorvelFlatGradient[1] }
}
