import QtQuick
import Sorvel.Ui

// A faint grain over the window's background. It stands still: drawn once into
// a texture and redrawn only when the window's size changes. Without shaders
// the layer is empty.
Item {
    id: fog

    readonly property bool shaded: GraphicsInfo.api !== GraphicsInfo.Software
                                   && GraphicsInfo.api !== GraphicsInfo.Unknown

    Loader {
        anchors.fill: parent
        active: fog.shaded

        sourceComponent: ShaderEffect {
            property real strength: 0.004

            layer.enabled: true
            fragmentShader: "qrc:/sorvel/shaders/fog.frag.qsb"
        }
    }
}
