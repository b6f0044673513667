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

        anchors.centerIn: parent
        width: Math.min(520, host.width - 80)
        active: host.presented
        opacity: host.presented ? 1 : 0
        scale: host.presented ? 1 : 0.95
        sourceComponent: {
            switch (host.presenter.sheet) {
            case ModalPresenter.Notice:
                return notice;
            case ModalPresenter.None:
                return null;
            default:
                return pending;
            }
        }

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
