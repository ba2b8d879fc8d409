// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/ConnectionStatus.h"
#include "nmea/NmeaSourceType.h"

#include <QtCore/QIODevice>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <atomic>

class NmeaReceiver;

// Common base of the input transports: the receiver, the source's type, the retry state,
// and the line splitting and hand-over to the codec that all transports share.
class NmeaSource : public QObject
{
    Q_OBJECT

public:
    explicit NmeaSource(NmeaReceiver* receiver);
    ~NmeaSource() override;

    virtual void stopReceiving();
    virtual bool myWrite(const QString& message);

    // Cuts any rubbish ahead of the first "$" (or, without one, the first "!").
    bool checkMessage(QString& message);

    // LF, CR LF, CR and a backslash all end a line, on every transport.
    static bool isLineEnd(QChar c) { return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QLatin1Char('\\'); }
    // The lines of `text`, empty ones dropped.
    static QStringList splitLines(const QString& text);
    // The complete lines of `buffer`; an unfinished last line stays behind in it. With no
    // lines at all the buffer is left as it was.
    static QStringList takeCompleteLines(QString& buffer);

    // The most unfinished text a stream source keeps while it waits for a line end. This is
    // a deliberate limit where there used to be none: a device on the wrong speed never
    // sends a line end and would grow the process for as long as it runs. It lies far above
    // the longest sentence any device sends, so no real sentence is ever cut.
    static constexpr int MaxUnfinishedLine = 16384;

    // Milliseconds between attempts to bring a lost transport back. Tests shorten it.
    static int retryIntervalMs() { return retryInterval.load(std::memory_order_relaxed); }
    static void setRetryIntervalMs(int ms) { retryInterval.store(ms, std::memory_order_relaxed); }

    NmeaSourceType getSourceType() const { return sourceType; }
    bool isConnected() const { return connected; }
    bool isReconnecting() const { return reconnecting; }
    bool isReadWrite() const { return readWrite; }

public slots:
    virtual void slot_startReceiving();
    void reconnect();
    void slot_sendMessage(const QString& message);

protected:
    // A single shot to reconnect() after `ms`, cancelled if the source goes first.
    void scheduleReconnect(int ms);
    void scheduleReconnect() { scheduleReconnect(retryIntervalMs()); }
    // After a socket that was up is lost: it goes at the next turn of the event loop, the
    // reading is withdrawn, and the retries, which never end, start after `ms`.
    template <typename Socket>
    void retryWithout(Socket*& socket, int ms)
    {
        socket->deleteLater();
        socket = nullptr;
        reconnecting = true;
        withdrawPressure();
        scheduleReconnect(ms);
    }
    // Writes a message to an open device; false with no device or nothing to write, or
    // when nothing was written.
    static bool writeTo(QIODevice* device, const QString& message);
    // Writes the no-reading mark for this source's type, as a source does when it stops or
    // loses its link.
    void withdrawPressure();
    // Hands one line to the codec; false if the codec refused it. An accepted line is noted
    // as this source's last sentence.
    bool handOn(const QString& line);
    // Tells the receiver what this source does now; the channel is the source's type, and a
    // retry's interval is the one scheduleReconnect() uses.
    void publish(ConnectionStatus status);
    // A status in `phase`, with its reason and the system's words for it, for the source to
    // say where it is before publishing it.
    static ConnectionStatus statusIn(ConnectionStatus::Phase phase, ConnectionStatus::Reason reason,
                                     const QString& errorText);
    // Keeps the newest MaxUnfinishedLine characters of an unfinished line and drops the
    // rest; the first drop of an overflow says so, later ones stay quiet until a line has
    // ended again. Call it with what is left after the complete lines were taken.
    void boundUnfinished(QString& buffer);
    void boundUnfinished(QByteArray& buffer);

    NmeaReceiver* receiver;
    bool connected = false;
    bool reconnecting = false;
    bool readWrite = false;
    NmeaSourceType sourceType = Internal;

private:
    void noteOverflow(bool dropped);

    // Whether the unfinished line has overflowed since the last line end.
    bool overflowing = false;

    static std::atomic<int> retryInterval;
};
