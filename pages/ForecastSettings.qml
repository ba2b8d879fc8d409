// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The rule-of-thumb forecast of the large display: off until asked for, and the hemisphere
// it is read for, which the last fix can tell.
CustomGroupBox {
    id: group

    title: qsTranslate("ForecastSettings", "Rule-of-thumb forecast")

    function load() {
        swForecast.checked = backend.getSetting("forecastOn", 0) === 1
        hemisphere.currentIndex = backend.getSetting("forecastHemisphere", 0)
    }

    function save() {
        backend.setSetting("forecastOn", swForecast.checked ? 1 : 0)
        backend.setSetting("forecastHemisphere", hemisphere.currentIndex)
    }

    ColumnLayout {
        anchors.fill: parent

        Switch {
            id: swForecast
            objectName: "swForecast"
            text: qsTranslate("ForecastSettings", "Show a forecast from the barometer")
            Accessible.name: text
        }
        SettingsComboBox {
            id: hemisphere
            objectName: "forecastHemisphere"
            Layout.fillWidth: true
            enabled: swForecast.checked
            caption: qsTranslate("ForecastSettings", "Hemisphere")
            model: [qsTranslate("ForecastSettings", "From the last fix"), qsTranslate("ForecastSettings", "North"),
                    qsTranslate("ForecastSettings", "South")]
        }
        SettingsText {
            Layout.fillWidth: true
            Layout.maximumWidth: swForecast.implicitWidth * 1.4
            wrapMode: Text.WordWrap
            text: qsTranslate("ForecastSettings",
                              "A rule of thumb for temperate latitudes from one barometer, not a weather forecast.")
        }
    }
}
