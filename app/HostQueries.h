// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <utility>

class QColor;
class SettingsAccess;

// What the pages ask of the host that is neither pressure nor position: its dark mode, text
// widths, the serial ports and whether a path is a device, and the phone systems' answers
// that a desktop fixes.
class HostQueries
{
public:
    // The serial ports as name and description, in the order the system gives them.
    using PortList = QList<std::pair<QString, QString>>;

    explicit HostQueries(const SettingsAccess& settings);

    // The dark-mode answer for a window text colour: each of red, blue and green at least 129.
    static bool isDarkText(const QColor& windowText);
    static bool isSystemDarkMode();
    static int colWidth();
    // The text's width, at most that of a sample, in the application font.
    static int horizontalAdvance(const QString& text);
    // One entry of the port list: the name, a blank and the description, which may be empty.
    static QString serialPortEntry(const QString& portName, const QString& description);
    static PortList systemPorts();
    // Whether the port name, taken as the serial port takes it (a bare name lives in /dev),
    // is a character device once links are followed.
    static bool isCharacterDevice(QString path);

    QStringList serialPorts() const;
    // Puts another list in place of the system's.
    void setPortLister(std::function<PortList()> lister);
    // Whether the phone permission memo `which`, 1 to 3, says it was asked; nothing writes it
    // on the desktop.
    bool permissionAsked(int which) const;

private:
    const SettingsAccess& settings;
    std::function<PortList()> portLister = &HostQueries::systemPorts;
};
