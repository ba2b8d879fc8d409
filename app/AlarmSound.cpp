// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AlarmSound.h"

#include <QtCore/QDataStream>
#include <QtCore/QTemporaryFile>
#include <QtCore/QUrl>
#include <QtCore/QtMath>
#include <QtMultimedia/QSoundEffect>

namespace {
constexpr int SampleRate = 22050;

void appendTone(QByteArray& samples, double frequency, double seconds)
{
    const int count = int(SampleRate * seconds);
    for (int i = 0; i < count; ++i) {
        // A short fade at both ends keeps the tone from clicking.
        const double edge = qMin(1.0, qMin(i, count - i) / (SampleRate * 0.01));
        const auto value = qint16(qRound(9000.0 * edge * qSin(2.0 * M_PI * frequency * i / SampleRate)));
        samples.append(char(value & 0xff));
        samples.append(char((value >> 8) & 0xff));
    }
}
}

AlarmSound::AlarmSound(QObject* parent)
    : QObject(parent)
{
    repeat.setInterval(RepeatMs);
    connect(&repeat, &QTimer::timeout, this, &AlarmSound::playOnce);
    play = [this] {
        if (!effect) {
            file.reset(new QTemporaryFile);
            if (!file->open())
                return;
            file->write(synthesise());
            file->flush();
            effect = new QSoundEffect(this);
            effect->setSource(QUrl::fromLocalFile(file->fileName()));
        }
        effect->play();
    };
}

AlarmSound::~AlarmSound() = default;

QByteArray AlarmSound::synthesise()
{
    QByteArray samples;
    for (int i = 0; i < 3; ++i) {
        appendTone(samples, 880.0, 0.18);
        appendTone(samples, 660.0, 0.18);
    }
    QByteArray wav;
    QDataStream out(&wav, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out.writeRawData("RIFF", 4);
    out << quint32(36 + samples.size());
    out.writeRawData("WAVEfmt ", 8);
    out << quint32(16) << quint16(1) << quint16(1) << quint32(SampleRate) << quint32(SampleRate * 2)
        << quint16(2) << quint16(16);
    out.writeRawData("data", 4);
    out << quint32(samples.size());
    out.writeRawData(samples.constData(), samples.size());
    return wav;
}

void AlarmSound::follow(int level, bool acknowledged)
{
    const bool wanted = level == 2 && !acknowledged;
    if (wanted == repeat.isActive())
        return;
    if (wanted) {
        playOnce();
        repeat.start();
    } else {
        repeat.stop();
        if (effect)
            effect->stop();
    }
}

void AlarmSound::playOnce()
{
    if (play)
        play();
}
