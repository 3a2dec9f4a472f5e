#include "Drums.h"

#include <QDataStream>
#include <QIODevice>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace {

constexpr int rate = 44100;
constexpr double sixteenth = 0.11; // seconds: 136 beats a minute
constexpr double length = 1.35;
constexpr double peak = 0.82; // of full scale; leaves room for the player's resampling

using Track = std::vector<double>;

// Adds `length` seconds of `sample(t)` from `start` on; both in seconds.
template <typename Sample> void strike(Track &track, double start, double seconds, Sample sample)
{
    const auto first = static_cast<size_t>(start * rate);
    const auto count = static_cast<size_t>(seconds * rate);
    for (size_t i = 0; i < count && first + i < track.size(); ++i)
        track[first + i] += sample(static_cast<double>(i) / rate);
}

// A drum head: a sine whose pitch falls from `high` to `low` hertz while it dies away.
void drum(Track &track, double start, double gain, double high, double low, double decay)
{
    double phase = 0;
    strike(track, start, decay * 6, [&phase, gain, high, low, decay](double t) {
        phase += 2 * std::numbers::pi * (low + (high - low) * std::exp(-t / 0.022)) / rate;
        const double attack = std::min(1.0, t / 0.0015);
        return gain * attack * std::sin(phase) * std::exp(-t / decay);
    });
}

// Noise with the low end taken out: the wires of a snare, the metal of a hat.
void noise(Track &track, double start, double gain, double decay, double brightness, unsigned seed)
{
    std::mt19937 random(seed);
    double low = 0;
    strike(track, start, decay * 6, [&](double t) {
        const double white = 2 * static_cast<double>(random()) / std::mt19937::max() - 1;
        low += (1 - brightness) * (white - low);
        return gain * std::min(1.0, t / 0.0008) * (white - low) * std::exp(-t / decay);
    });
}

void kick(Track &track, double step, double gain)
{
    drum(track, step * sixteenth, gain, 170, 47, 0.13);
    noise(track, step * sixteenth, gain * 0.12, 0.004, 0.5, 11);
}

void snare(Track &track, double step, double gain)
{
    drum(track, step * sixteenth, gain * 0.55, 330, 185, 0.06);
    noise(track, step * sixteenth, gain * 0.6, 0.07, 0.75, 23);
}

void hat(Track &track, double step, double gain)
{
    noise(track, step * sixteenth, gain * 0.35, 0.018, 0.2, 37);
}

void tom(Track &track, double step, double gain, double pitch)
{
    drum(track, step * sixteenth, gain, pitch * 1.7, pitch, 0.11);
}

Track bar()
{
    Track track(static_cast<size_t>(length * rate));
    for (const int step : {0, 2, 4, 6})
        hat(track, step, step % 4 == 0 ? 0.9 : 0.6);
    kick(track, 0, 1.0);
    kick(track, 3, 0.8);
    snare(track, 2, 0.9);
    snare(track, 5, 0.35);
    tom(track, 6, 0.7, 140);
    tom(track, 7, 0.75, 105);
    kick(track, 8, 1.0);
    noise(track, 8 * sixteenth, 0.35, 0.12, 0.3, 51);
    return track;
}

// Fades the end to silence and brings the loudest sample to `peak`.
void finish(Track &track)
{
    const auto fade = static_cast<size_t>(0.08 * rate);
    for (size_t i = 0; i < fade; ++i)
        track[track.size() - 1 - i] *= static_cast<double>(i) / static_cast<double>(fade);
    double loudest = 0;
    for (const double sample : track)
        loudest = std::max(loudest, std::abs(sample));
    for (double &sample : track)
        sample *= peak / loudest;
}

}

QByteArray drumsWave()
{
    Track track = bar();
    finish(track);

    QByteArray file;
    QDataStream out(&file, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    const auto dataBytes = static_cast<quint32>(track.size() * 2);
    out.writeRawData("RIFF", 4);
    out << quint32(36 + dataBytes);
    out.writeRawData("WAVEfmt ", 8);
    // 16 bytes of format: PCM, one channel, frames and bytes a second, bytes a frame, bits.
    out << quint32(16) << quint16(1) << quint16(1) << quint32(rate) << quint32(rate * 2)
        << quint16(2) << quint16(16);
    out.writeRawData("data", 4);
    out << dataBytes;
    for (const double sample : track)
        out << static_cast<qint16>(std::lround(sample * 32767));
    return file;
}
