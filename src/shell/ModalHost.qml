import QtQuick
import QtQuick.Window
import Sorvel.Ui

// The sheets over a dimmed window, one at a time in the order of
// ModalPresenter. A click on the backdrop dismisses them all.
Item {
    id: host

    readonly property ModalPresenter presenter: Shell.modal
    readonly property bool presented: presenter.isPresented

    visible: backdrop.opacity > 0

    // The keyboard stays in the sheet while one is up. The sheet takes the
    // focus when it comes, on no control, so that Return is its default action
    // and the first Tab reaches its first control; Tab and Backtab go round its
    // controls between the two ends below; the focus goes back where it was
    // when the sheet leaves.
    property Item focusBefore: null
    property bool placing: false
    onPresentedChanged: {
        const window = host.Window.window;
        if (presented) {
            const before = window ? window.activeFocusItem : null;
            host.focusBefore = before && !host.holds(before) ? before : null;
            host.placing = true;
            first.forceActiveFocus(Qt.OtherFocusReason);
            host.placing = false;
        } else {
            if (host.focusBefore && host.focusBefore.visible)
                host.focusBefore.forceActiveFocus(Qt.OtherFocusReason);
            else if (window && host.holds(window.activeFocusItem))
                window.contentItem.forceActiveFocus(Qt.OtherFocusReason);
            host.focusBefore = null;
        }
    }
    function holds(item: Item): bool {
        for (let at = item; at; at = at.parent)
            if (at === host)
                return true;
        return false;
    }

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

    // The ends of the ring: the focus coming to one goes on to the sheet's
    // control at the other end.
    Item {
        id: first

        activeFocusOnTab: host.presented || activeFocus
        Accessible.ignored: true
        onActiveFocusChanged: if (activeFocus && !host.placing) last.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        Keys.onBacktabPressed: last.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
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

    Item {
        id: last

        activeFocusOnTab: host.presented || activeFocus
        Accessible.ignored: true
        onActiveFocusChanged: if (activeFocus) first.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
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
