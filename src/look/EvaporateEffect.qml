import QtQuick
import Sorvel.Ui

// An item dissolving upward. Its children are drawn as they are while
// `progress` rests at 0; above the threshold they go through the evaporate
// shader, which lifts them into the room above the item. Where shaders can't
// run (the software renderer) the picture blurs by 8 × progress, lifts by
// 40 × progress² and fades to 1 − progress instead. Nothing of it exists
// while the item rests.
Item {
    id: effect

    property real progress: 0
    // 0...1; neighbours with other seeds break up differently.
    property real seed: 0
    default property alias content: holder.data

    // The shader runs wherever the scene graph is not the software one.
    readonly property bool shaded: GraphicsInfo.api !== GraphicsInfo.Software
                                   && GraphicsInfo.api !== GraphicsInfo.Unknown
    readonly property bool active: progress > Effects.threshold
    // How far the picture may lift, and the room at each side for its wavering.
    readonly property real rise: Math.max(40, height * 0.8)
    readonly property real side: 12

    Item {
        id: holder

        anchors.fill: parent
    }

    // The components below use the ids of this file, as Qt 6.4 allows; its linter
    // accepts that only under "pragma ComponentBehavior: Bound", with which 6.4
    // refuses the components a Loader creates.
    // qmllint disable unqualified
    Component {
        id: shaderPath

        Item {
            ShaderEffectSource {
                id: picture

                sourceItem: holder
                hideSource: true
                visible: false
                // The picture as it was when the item began to leave.
                live: false
                sourceRect: Qt.rect(-effect.side, -effect.rise, effect.width + 2 * effect.side,
                                    effect.height + effect.rise)
            }
            ShaderEffect {
                // Drawn only as high as the picture can have risen by now, so
                // an evaporation starts cheap; the shader maps the quad back
                // into the whole layer.
                readonly property real layerWidth: effect.width + 2 * effect.side
                readonly property real layerHeight: effect.height + effect.rise
                property real reach: Math.min(effect.rise, effect.progress * effect.progress * effect.rise + 2)

                x: -effect.side
                y: -reach
                width: layerWidth
                height: effect.height + reach

                property variant source: picture
                property real rise: effect.rise
                property real progress: effect.progress
                property real seed: effect.seed

                fragmentShader: "qrc:/sorvel/shaders/evaporate.frag.qsb"
            }
        }
    }

    Component {
        id: fallbackPath

        ShaderEffectSource {
            // A blur without shaders: the picture rendered at a fraction of
            // its size and scaled back up smoothly.
            readonly property real blur: 8 * effect.progress
            readonly property real shrink: Math.max(1, blur * 0.75)

            width: effect.width
            height: effect.height
            y: -40 * effect.progress * effect.progress
            opacity: 1 - effect.progress
            sourceItem: holder
            hideSource: true
            smooth: true
            textureSize: Qt.size(Math.max(1, Math.round(effect.width / shrink)), // qmllint disable type
                                 Math.max(1, Math.round(effect.height / shrink)))
        }
    }
    // qmllint enable unqualified

    Loader {
        active: effect.active
        sourceComponent: effect.shaded ? shaderPath : fallbackPath
    }
}
