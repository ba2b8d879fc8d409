// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

// A fresh data folder made the working directory for the life of the object, as start-up
// does with the application's folder; the previous working directory comes back after.
class TestDataFolder
{
public:
    TestDataFolder();
    ~TestDataFolder();
    Q_DISABLE_COPY(TestDataFolder)

    QString path() const;
    QString filePath(const QString& name) const;

private:
    QTemporaryDir dir;
    QString previous;
};
