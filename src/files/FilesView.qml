import QtQuick
import Sorvel.Ui

// The Files area: the shelf of the current section (Biggest, Forgotten or
// Twins) over the last scan, and the preview window its rows open.
Item {
    id: view

    Loader {
        id: shelves

        anchors.fill: parent
        focus: true
        sourceComponent: {
            switch (AppState.section) {
            case "old":
                return forgotten;
            case "duplicates":
                return twins;
            default:
                return biggest;
            }
        }
    }

    Component {
        id: biggest

        BiggestShelves {
            onPreview: details => previewWindow.show(details)
        }
    }
    Component {
        id: forgotten

        ForgottenShelves {
            onPreview: details => previewWindow.show(details)
        }
    }
    Component {
        id: twins

        TwinShelves {
            onPreview: details => previewWindow.show(details)
        }
    }

    PreviewWindow {
        id: previewWindow
    }
}
