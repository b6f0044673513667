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
        // Takes the hover from whatever lies below, so a help text that was
        // showing there (the selection bar's) goes when a sheet comes.
        MouseArea {
            anchors.fill: parent
            enabled: host.presented
            hoverEnabled: true
            acceptedButtons: Qt.NoButton
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
        width: Math.min(shown === ModalPresenter.Review ? 600 : 520, host.width - 80)
        active: shown !== ModalPresenter.None
        opacity: host.presented ? 1 : 0
        scale: host.presented ? 1 : 0.95
        sourceComponent: {
            switch (shown) {
            case ModalPresenter.Review: return review;
            case ModalPresenter.Deletion: return deletion;
            case ModalPresenter.Confirm: return confirm;
            case ModalPresenter.Failure: return failure;
            default: return notice;
            }
        }
        onOpacityChanged: if (opacity === 0 && !host.presented) shown = ModalPresenter.None

        // A short window gets a shorter list, never a card cut off at the top.
        Binding {
            target: sheet.item
            property: "available"
            value: host.height - 40
            when: sheet.item !== null
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

    Component {
        id: review

        ReviewSheet {
            objectName: "reviewSheet"
        }
    }
    Component {
        id: deletion

        DeletionSheet {
            objectName: "deletionSheet"
        }
    }
    Component {
        id: confirm

        ConfirmSheet {
            objectName: "confirmSheet"
        }
    }
    Component {
        id: failure

        FailureSheet {
            objectName: "failureSheet"
        }
    }

    Shortcut {
        sequence: "Escape"
        enabled: host.presented
        onActivated: host.presenter.dismiss()
    }
}
