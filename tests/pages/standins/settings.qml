import QtQuick 2.15
import QtQuick.Controls 2.15

// Stands in for the settings page in tests of the main window: a page that takes the loader
// and shows one translated text.
Item {
    property Loader loader

    Text {
        objectName: "standInText"
        text: qsTranslate("BaroH", "Sea Level Pressure (QNH)")
    }
}
