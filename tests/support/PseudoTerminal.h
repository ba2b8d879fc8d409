// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

// A pseudo-terminal pair for tests of the serial line. The test holds the device's side
// (the master) and writes what a device would send; the code under test opens path() as
// its serial port. With a link path the port name comes back with reopen(), as a device
// that is unplugged and plugged in again keeps its name; in between, there is no such port.
class PseudoTerminal
{
public:
    explicit PseudoTerminal(const QString& linkPath = QString());
    ~PseudoTerminal();
    Q_DISABLE_COPY(PseudoTerminal)

    bool open();
    bool isOpen() const { return master >= 0; }
    // The name to give the serial port: the link if there is one, else the terminal.
    QString path() const;
    QString terminalPath() const { return terminal; }

    // Writes as one block. False if the device's side is closed or the write failed.
    bool write(const QByteArray& bytes);
    // Writes, then waits without running the event loop until all of it lies in the
    // terminal's input for the other side. A reader on this thread then takes it as one
    // block, however loaded the machine; a reader on another thread may take it first,
    // and then this waits in vain. False if the write failed or the time ran out.
    bool writeBlock(const QByteArray& bytes, int timeoutMs = 5000);
    // Writes all of it, running the event loop while the line is full, as a fast device
    // does against a slow reader. False if the time ran out first.
    bool writeAll(const QByteArray& bytes, int timeoutMs);
    // What the other side has written so far, without waiting.
    QByteArray readAvailable();
    // Reads, running the event loop meanwhile, until `marker` has arrived or the time is up.
    QByteArray readUntil(const QByteArray& marker, int timeoutMs);

    // Hangs up, as pulling the plug does: the other side's port fails.
    void close();
    // A fresh pair behind the same link.
    bool reopen();

private:
    QString link;
    QString terminal;
    int master = -1;
    // Keeps the line raw and alive while the code under test has its port closed.
    int hold = -1;
};
