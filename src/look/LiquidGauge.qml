import QtQuick
import Sorvel.Ui

// A level as a liquid in a round vessel: cool accent hues, warm from 0.9 on.
// The surface sways for a few seconds after the level changes or the pointer
// stirs it, then stands still, so an untouched gauge costs nothing; under
// reduced motion it never moves.
Item {
    id: gauge

    property real fraction: 0
    readonly property real level: Math.max(0, Math.min(1, isNaN(fraction) ? 0 : fraction))
    readonly property bool warm: level >= Effects.warmFrom
    // How much the surface sways, 1 after a stir, dying away.
    property real sway: 0
    property real phase: 0

    implicitWidth: 18
    implicitHeight: 18

    Accessible.role: Accessible.ProgressBar
    Accessible.name: Math.round(level * 100) + "%"

    function stir() {
        if (!Look.reducedMotion)
            sway = 1;
    }
    onLevelChanged: {
        stir();
        liquid.requestPaint();
    }

    Timer {
        // At most 30 updates a second, and only while the surface moves.
        interval: 33
        repeat: true
        running: gauge.visible && gauge.sway > 0 && !Look.reducedMotion
        onTriggered: {
            gauge.phase += 0.19;
            gauge.sway = gauge.sway > 0.03 ? gauge.sway * 0.965 : 0;
            liquid.requestPaint();
        }
    }

    Canvas {
        id: liquid

        anchors.fill: parent
        renderStrategy: Canvas.Immediate

        onPaint: {
            const ctx = getContext("2d");
            const w = width;
            const h = height;
            const r = Math.min(w, h) / 2;
            ctx.reset();
            ctx.save();
            ctx.beginPath();
            ctx.arc(w / 2, h / 2, r, 0, 2 * Math.PI);
            ctx.closePath();
            ctx.fillStyle = Look.well;
            ctx.fill();
            ctx.clip();

            const surface = h - gauge.level * h;
            const amplitude = Look.reducedMotion ? 0 : Math.max(0.4, h * 0.06) * gauge.sway;
            const fill = ctx.createLinearGradient(0, surface, 0, h);
            fill.addColorStop(0, Effects.liquid(gauge.level, 0, Look.dark));
            fill.addColorStop(1, Effects.liquid(gauge.level, 1, Look.dark));
            ctx.beginPath();
            ctx.moveTo(0, h);
            for (let x = 0; x <= w; x += 1)
                ctx.lineTo(x, surface + amplitude * Math.sin(x / w * 2 * Math.PI + gauge.phase));
            ctx.lineTo(w, h);
            ctx.closePath();
            ctx.fillStyle = fill;
            ctx.fill();
            ctx.restore();

            ctx.beginPath();
            ctx.arc(w / 2, h / 2, r - 0.5, 0, 2 * Math.PI);
            ctx.lineWidth = 1;
            ctx.strokeStyle = Look.line;
            ctx.stroke();
        }
    }

    Connections {
        target: Look
        function onAppearanceChanged() { liquid.requestPaint(); }
    }
}
