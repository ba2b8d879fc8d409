// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <functional>
#include <memory>

class QSoundEffect;
class QTemporaryFile;

// The pressure-fall alarm's sound: a short two-tone call synthesised here, played again
// and again while the alarm stands and nobody has acknowledged it.
class AlarmSound : public QObject
{
    Q_OBJECT

public:
    explicit AlarmSound(QObject* parent = nullptr);
    ~AlarmSound() override;

    // A WAV file: 16-bit mono PCM at 22050 Hz, three pairs of 880 and 660 Hz tones.
    static QByteArray synthesise();
    static constexpr int RepeatMs = 10000;
    // Tests shorten the pause between two calls.
    void setRepeatMs(int ms) { repeat.setInterval(ms); }

    bool isSounding() const { return repeat.isActive(); }
    // Tests put their own player here; by default the sound goes to the default output.
    void setPlayer(std::function<void()> player) { play = std::move(player); }

public slots:
    // Level as the warning gives it: 2 is the alarm.
    void follow(int level, bool acknowledged);

private:
    void playOnce();

    QTimer repeat;
    std::function<void()> play;
    // Made at the first alarm, so that a quiet run never opens the sound system.
    std::unique_ptr<QTemporaryFile> file;
    QSoundEffect* effect = nullptr;
};
