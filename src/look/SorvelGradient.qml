import QtQuick
import Sorvel.Ui

// The accent gradient, three stops from light to deep.
Gradient {
    GradientStop { position: 0; color: Look.sorvelGradient[0] }
    GradientStop { position: 0.5; color: Look.sorvelGradient[1] }
    GradientStop { position: 1; color: Look.sorvelGradient[2] }
}
