import QtQuick
import Sorvel.Ui

// The sheets over a dimmed window, one at a time in the order of
// ModalPresenter. A click on the backdrop dismisses them all.
Item {
    id: host

    readonly property ModalPresenter presenter: Shell.modal
    readonly property bool presented: presenter.isPresented

    visible: backdrop.opacity > 0

    Rectangle {
        id: backdrop

        anchors.fill: parent
        color: Look.scrim
        opacity: host.presented ? 0.32 : 0

        Behavior on opacity { Movement { curve: Look.modal } }

        TapHandler {
            onTapped: host.presenter.dismiss()
        }
    }

    Loader {
        id: sheet

        // The sheet last asked for stays while the card fades out.
        property int shown: ModalPresenter.None
        readonly property int asked: host.presenter.sheet

        onAskedChanged: {
            if (asked !== ModalPresenter.None)
                shown = asked;
            else if (opacity === 0)
                shown = ModalPresenter.None;
        }

        anchors.centerIn: parent
        width: Math.min(520, host.width - 80)
        active: shown !== ModalPresenter.None
        opacity: host.presented ? 1 : 0
        scale: host.presented ? 1 : 0.95
        sourceComponent: shown === ModalPresenter.Notice ? notice : pending
        onOpacityChanged: if (opacity === 0 && !host.presented) shown = ModalPresenter.None

        Behavior on opacity { Movement { curve: Look.modal } }
        Behavior on scale { Movement { curve: Look.modal } }
    }

    Component {
        id: notice

        NoticeSheet {
            onDone: Shell.clearErrorMessage()
        }
    }

    // The review, deletion, confirm and failure sheets arrive with the
    // removal; until then their place is held.
    Component {
        id: pending

        SheetCard {
            symbol: "humidity.fill"
            title: qsTr("Review")

            buttons: [
                SorvelButton {
                    text: qsTr("Close")
                    onClicked: Shell.modal.dismiss()
                }
            ]
        }
    }

    Shortcut {
        sequence: "Escape"
        enabled: host.presented
        onActivated: host.presenter.dismiss()
    }
}
