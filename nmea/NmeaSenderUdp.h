#pragma once

#include <QtCore/QObject>

// Re-broadcasts pressure and position over UDP. Always a plain object with no parent; its
// owner deletes it when output is switched off.
class NmeaSenderUdp : public QObject
{
    Q_OBJECT

public:
    NmeaSenderUdp();
    ~NmeaSenderUdp() override;
};
