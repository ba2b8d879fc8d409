// SPDX-License-Identifier: GPL-3.0-or-later
// libFuzzer target over the sentence codec and the line splitting that the transports
// share. The input is a byte stream as a transport would receive it.
#include "app/BackEnd.h"
#include "nmea/Nmea0183.h"
#include "nmea/NmeaSource.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <cstdint>
#include <cstdlib>

namespace {

Nmea0183* codec = nullptr;

void check(bool condition)
{
    if (!condition)
        std::abort();
}

void quiet(QtMsgType, const QMessageLogContext&, const QString&)
{
}

void handOn(const QByteArray& sentence, NmeaSourceType source)
{
    NmeaMessageType type = Mda;
    if (codec->isMessageImplemented(sentence, &type) && Nmea0183::validateChecksum(sentence))
        codec->decode(sentence, type, source);
}

void checkSplit(const QString& text, const QStringList& lines)
{
    int kept = 0;
    for (const QString& line : lines) {
        check(!line.isEmpty());
        for (QChar c : line)
            check(!NmeaSource::isLineEnd(c));
        kept += line.size();
    }
    int ends = 0;
    for (QChar c : text)
        ends += NmeaSource::isLineEnd(c) ? 1 : 0;
    // Nothing but line ends is lost.
    check(kept + ends == text.size());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qInstallMessageHandler(quiet);
    static QCoreApplication app(*argc, *argv);
    static QTemporaryDir folder;
    QDir::setCurrent(folder.path());
    {
        QSettings ini(QStringLiteral("./brinholt.ini"), QSettings::IniFormat);
        ini.setValue(QStringLiteral("SettingSerialPort"), QStringLiteral("None"));
    }
    static BackEnd b;
    codec = new Nmea0183(nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));

    // The codec on the whole input as one sentence.
    const QString sum = Nmea0183::computeChecksum(bytes);
    check(sum.size() == 2);
    for (QChar c : sum)
        check((c >= QLatin1Char('0') && c <= QLatin1Char('9')) || (c >= QLatin1Char('A') && c <= QLatin1Char('F')));
    handOn(bytes, Udp);

    // The stream in two reads, cut where the first byte says, as the network sources join
    // them: text up to a NUL, complete lines out, the rest kept for the next read.
    const int cut = size > 0 ? static_cast<int>(data[0] % (size + 1)) : 0;
    QString buffer;
    for (const QByteArray& read : {bytes.left(cut), bytes.mid(cut)}) {
        const int nul = read.indexOf('\0');
        const QString text = QString::fromUtf8(read.constData(), nul >= 0 ? nul : read.size());
        buffer += text;
        const QString before = buffer;
        const QStringList lines = NmeaSource::takeCompleteLines(buffer);
        const QStringList parts = NmeaSource::splitLines(before);
        checkSplit(before, parts);
        if (parts.isEmpty()) {
            // Nothing but line ends: the buffer waits as it was.
            check(lines.isEmpty() && buffer == before);
        } else if (NmeaSource::isLineEnd(before.back())) {
            check(lines == parts && buffer.isEmpty());
        } else {
            // The unfinished last line waits for the next read.
            check(lines == parts.mid(0, parts.size() - 1) && buffer == parts.last());
        }
        for (const QString& line : lines) {
            if (line.startsWith(QLatin1Char('$')) || line.startsWith(QLatin1Char('!')))
                handOn(line.toUtf8(), Tcp);
        }
    }
    return 0;
}
