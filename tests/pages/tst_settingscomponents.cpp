// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageHarness.h"

#include <QtGui/QColor>
#include <QtQml/QQmlApplicationEngine>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <memory>

// The small components of the settings pages, made on their own inside the main window.
class TestSettingsComponents : public QObject
{
    Q_OBJECT

private:
    // Creates `qml` (which may use the pages' components) inside the window's content.
    static QQuickItem* make(PageHarness& h, const QByteArray& qml)
    {
        QQmlComponent component(&h.engine());
        component.setData("import QtQuick 2.15\nimport QtQuick.Controls 2.15\nimport QtQuick.Controls.Material 2.15\n"
                          "import QtQuick.Layouts 1.15\nimport \"qrc:/\"\n" + qml,
                          QUrl("qrc:/componentTest.qml"));
        QObject* object = component.create(qmlContext(h.window()));
        if (!object) {
            qWarning() << component.errorString();
            return nullptr;
        }
        auto* item = qobject_cast<QQuickItem*>(object);
        item->setParentItem(h.window()->contentItem());
        return item;
    }

    static QVariant eval(QObject* scope, const char* expression)
    {
        return PageHarness::evaluate(scope, QString::fromLatin1(expression));
    }

private slots:
    void doubleSpinBoxCountsInWholeNumbers()
    {
        PageHarness h;
        QVERIFY(h.start());
        QQuickItem* box = make(h, "DoubleSpinBox {}");
        QVERIFY(box);
        QCOMPARE(box->property("decimals").toInt(), 1);
        QCOMPARE(box->property("from").toInt(), 0);
        QCOMPARE(box->property("value").toInt(), 0);
        QCOMPARE(box->property("to").toInt(), 100000);
        QCOMPARE(box->property("stepSize").toInt(), 10);
        QCOMPARE(box->property("editable").toBool(), true);
        QCOMPARE(box->property("inputMethodHints").toInt(), int(Qt::ImhLatinOnly));
        QCOMPARE(box->property("displayText").toString(), QStringLiteral("0.0"));

        box->setProperty("value", 1234);
        QCOMPARE(box->property("realValue").toDouble(), 123.4);
        QCOMPARE(box->property("displayText").toString(), QStringLiteral("123.4"));
        QMetaObject::invokeMethod(box, "increase");
        QCOMPARE(box->property("value").toInt(), 1244);

        // Two decimals: the same count reads a hundredth, a step is one whole unit.
        box->setProperty("decimals", 2);
        QCOMPARE(box->property("stepSize").toInt(), 100);
        QCOMPARE(box->property("to").toInt(), 1000000);
        QCOMPARE(box->property("realValue").toDouble(), 12.44);
        QCOMPARE(box->property("displayText").toString(), QStringLiteral("12.44"));
        QCOMPARE(eval(box, "valueFromText('5.25', Qt.locale('en_US'))").toInt(), 525);
        QCOMPARE(eval(box, "textFromValue(525, Qt.locale('en_US'))").toString(), QStringLiteral("5.25"));
        QCOMPARE(eval(box, "textFromValue(525, Qt.locale('fr_FR'))").toString(), QStringLiteral("5,25"));
        QCOMPARE(eval(box, "valueFromText('5,25', Qt.locale('fr_FR'))").toInt(), 525);
    }

    void doubleSpinBoxLimitsAreInCounts()
    {
        PageHarness h;
        QVERIFY(h.start());
        QQuickItem* box = make(h, "DoubleSpinBox { from: 1000; to: -1000; decimals: 2; stepSize: 10 }");
        QVERIFY(box);
        // The validator takes the smaller limit as bottom, in counted units.
        QCOMPARE(eval(box, "validator.bottom").toDouble(), -1000.0);
        QCOMPARE(eval(box, "validator.top").toDouble(), 1000.0);
        // A step set by the user stays when the decimals change.
        box->setProperty("decimals", 3);
        QCOMPARE(box->property("stepSize").toInt(), 10);

        QQuickItem* clamped = make(h, "DoubleSpinBox { from: -1000; to: 1000; decimals: 2 }");
        clamped->setProperty("value", 5000);
        QCOMPARE(clamped->property("value").toInt(), 1000);
        clamped->setProperty("value", -5000);
        QCOMPARE(clamped->property("value").toInt(), -1000);
    }

    void settingsTextFollowsTheTheme()
    {
        PageHarness h;
        h.writeSetting("theme", 0);
        QVERIFY(h.start());
        QQuickItem* text = make(h, "SettingsText { text: 'Caption' }");
        QVERIFY(text);
        QCOMPARE(eval(text, "font.pixelSize").toInt(), 15);
        QCOMPARE(eval(text, "Layout.alignment").toInt(), int(Qt::AlignLeft));
        QCOMPARE(text->property("color").value<QColor>(), QColor("blue"));
        PageHarness::evaluate(h.window(), "Material.theme = Material.Dark");
        QCOMPARE(text->property("color").value<QColor>(), QColor("yellow"));
    }

    void customGroupBoxCentresItsTitleOnTheTopEdge()
    {
        PageHarness h;
        QVERIFY(h.start());
        QQuickItem* holder = make(h, "Item { width: 400; height: 300\n"
                                     "  CustomGroupBox { objectName: 'box'; title: 'Inputs'; width: 300; height: 200 } }");
        QVERIFY(holder);
        QQuickItem* box = h.item("box", holder);
        QVERIFY(box);
        auto* label = box->property("label").value<QQuickItem*>();
        QVERIFY(label);
        QCOMPARE(label->width(), 400 * 0.7);
        const int pixelSize = eval(label, "children[0].font.pixelSize").toInt();
        QCOMPARE(label->height(), qreal(pixelSize > 0 ? pixelSize : eval(label, "children[0].implicitHeight").toReal()));
        QCOMPARE(label->x() + label->width() / 2, box->width() / 2);
        QCOMPARE(label->y() + label->height() / 2, 0.0);
        QCOMPARE(label->property("color").value<QColor>(), QColor(Qt::white));
        QCOMPARE(eval(label, "children[0].text").toString(), QStringLiteral("Inputs"));
        QQuickItem* title = label->childItems().value(0);
        // Centring snaps to whole pixels.
        QVERIFY(qAbs(title->x() + title->width() / 2 - label->width() / 2) <= 0.5);
    }
};

QTEST_MAIN(TestSettingsComponents)
#include "tst_settingscomponents.moc"
