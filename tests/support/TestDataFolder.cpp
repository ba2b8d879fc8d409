// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TestDataFolder.h"

#include <QtCore/QDir>

TestDataFolder::TestDataFolder()
    : previous(QDir::currentPath())
{
    QDir::setCurrent(dir.path());
}

TestDataFolder::~TestDataFolder()
{
    QDir::setCurrent(previous);
}

QString TestDataFolder::path() const
{
    return dir.path();
}

QString TestDataFolder::filePath(const QString& name) const
{
    return dir.filePath(name);
}
