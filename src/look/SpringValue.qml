import QtQuick
import Sorvel.Ui

// A number that follows `target` along the selection bar's spring (response
// 0.4 s, damping 0.85): from wherever it stands, over the time the spring
// takes to settle. Under reduced motion it is at the target at once.
//     SpringValue { id: slide; target: shown ? 0 : 1 }
QtObject {
    id: spring

    property real target: 0
    readonly property real value: from + (to - from) * Look.barSpringAt(progress)
    readonly property bool running: run.running

    property real from: 0
    property real to: 0
    property real progress: 1

    Component.onCompleted: {
        spring.from = spring.target;
        spring.to = spring.target;
    }

    onTargetChanged: {
        const now = spring.value;
        run.stop();
        spring.progress = 0;
        spring.from = now;
        spring.to = spring.target;
        if (Look.reducedMotion)
            spring.progress = 1;
        else
            run.start();
    }

    property NumberAnimation run: NumberAnimation {
        target: spring
        property: "progress"
        from: 0
        to: 1
        duration: Look.barSpringMs
    }
}
