// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HostQueries.h"

#include "app/SettingsAccess.h"

#include <QtCore/QFile>
#include <QtGui/QColor>
#include <QtGui/QFontMetrics>
#include <QtGui/QPalette>
#include <QtSerialPort/QSerialPortInfo>
#include <QtWidgets/QApplication>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformtheme.h>

#include <sys/stat.h>

HostQueries::HostQueries(const SettingsAccess& settings)
    : settings(settings)
{
}

bool HostQueries::isDarkText(const QColor& windowText)
{
    return windowText.red() >= 129 && windowText.blue() >= 129 && windowText.green() >= 129;
}

bool HostQueries::isSystemDarkMode()
{
    const QPlatformTheme* theme = QGuiApplicationPrivate::platformTheme();
    const QPalette* palette = theme ? theme->palette(QPlatformTheme::SystemPalette) : nullptr;
    if (!palette)
        return false;
    return isDarkText(palette->color(QPalette::Current, QPalette::WindowText));
}

int HostQueries::colWidth()
{
    return QApplication::fontMetrics().horizontalAdvance(
            QStringLiteral("this is the size of very big big big big column"));
}

int HostQueries::horizontalAdvance(const QString& text)
{
    const QFontMetrics metrics = QApplication::fontMetrics();
    return qMin(metrics.horizontalAdvance(text),
                metrics.horizontalAdvance(QStringLiteral("this is enough wide xxxxxxxxxxx")));
}

QString HostQueries::serialPortEntry(const QString& portName, const QString& description)
{
    return portName + QLatin1Char(' ') + description;
}

HostQueries::PortList HostQueries::systemPorts()
{
    PortList ports;
    const auto available = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& info : available)
        ports.append({info.portName(), info.description()});
    return ports;
}

bool HostQueries::isCharacterDevice(QString path)
{
    if (path.isEmpty())
        return false;
    // The same rule by which QSerialPort turns a port name into the file it opens.
    if (!path.startsWith(QLatin1Char('/')) && !path.startsWith(QLatin1String("./"))
        && !path.startsWith(QLatin1String("../")))
        path.prepend(QLatin1String("/dev/"));
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 && S_ISCHR(info.st_mode);
}

QStringList HostQueries::serialPorts() const
{
    QStringList entries;
    const PortList ports = portLister();
    for (const auto& [name, description] : ports)
        entries.append(serialPortEntry(name, description));
    return entries;
}

void HostQueries::setPortLister(std::function<PortList()> lister)
{
    portLister = std::move(lister);
}

bool HostQueries::permissionAsked(int which) const
{
    return settings.value(QStringLiteral("androidPermissionAsked%1").arg(which), 0).toInt() == 1;
}
