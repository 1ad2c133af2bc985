#include "fadeplot.h"

#include "platform.h"

#include <qzaudio/audiocontrol.h>

#include <array>
#include <cmath>

namespace
{

constexpr int loudspeakerCount = 4;
constexpr int steps = 2 * FadePlot::highestStep + 1;
constexpr double fullGain = 100; ///< percent

constexpr const char *names[loudspeakerCount] = {"left front", "right front", "left rear", "right rear"};

using Gains = std::array<int, loudspeakerCount>;

/// Percent of each loudspeaker, as the simulated platform has them then.
Gains gainsOf(int fade, int balance)
{
    static audio::AudioControl control;
    control.setFadeBalance(fade, balance);
    Gains gains = {};
    for (int i = 0; i < loudspeakerCount; ++i)
        gains[std::size_t(i)] = simulator::Platform::instance()->chip()->channelGain(1U << unsigned(i));
    return gains;
}

QString gainText(int gain)
{
    if (gain == 0)
        return QStringLiteral("0 %, silent");
    constexpr double decibelPerTenfold = 20;
    const double level = decibelPerTenfold * std::log10(gain / fullGain);
    return QStringLiteral("%1 %, %2 dB").arg(gain).arg(level, 0, 'f', 1);
}

QString settingText(int fade, int balance)
{
    const auto side = [](int count, const char *positive, const char *negative) {
        return count == 0 ? QString() : QStringLiteral(" (to the %1)").arg(QLatin1String(count > 0 ? positive : negative));
    };
    return QStringLiteral("Fade %1%2, balance %3%4").arg(fade).arg(side(fade, "front", "rear")).arg(balance).arg(side(balance, "left", "right"));
}

} // namespace

Figure FadePlot::draw(int fade, int balance)
{
    std::array<Gains, steps> ofFade = {}; // by the row of a map: the front on top
    std::array<Gains, steps> ofBalance = {}; // by its column: the left at the left
    for (int i = 0; i < steps; ++i) {
        ofFade[std::size_t(i)] = gainsOf(highestStep - i, 0);
        ofBalance[std::size_t(i)] = gainsOf(0, highestStep - i);
    }
    Figure::Maps maps{QStringLiteral("fade 15, front"),
                      QStringLiteral("fade -15, rear"),
                      QStringLiteral("balance 15"),
                      QStringLiteral("balance -15"),
                      QStringLiteral("the losses of fade and of balance add up"),
                      {}};
    for (const char *const name : names)
        maps.maps.append({QLatin1String(name), steps, {}, {}, {highestStep - balance, highestStep - fade}});
    int silent = 0;
    for (std::size_t row = 0; row < steps; ++row) {
        for (std::size_t column = 0; column < steps; ++column) {
            const Gains gains = gainsOf(highestStep - int(row), highestStep - int(column));
            for (std::size_t i = 0; i < gains.size(); ++i) {
                Figure::Map &map = maps.maps[int(i)];
                const bool isDouble = ofFade[row][i] < fullGain && ofBalance[column][i] < fullGain;
                map.values.append(gains[i] / fullGain);
                map.isMarked.append(isDouble);
                silent += isDouble && gains[i] == 0 && ofFade[row][i] > 0 && ofBalance[column][i] > 0 ? 1 : 0;
            }
        }
    }
    const Gains chosen = gainsOf(fade, balance);
    Figure::Car car;
    for (std::size_t i = 0; i < chosen.size(); ++i)
        car.loudspeakers.append({QLatin1String(names[i]), gainText(chosen[i]), chosen[i] / fullGain});

    Figure figure{settingText(fade, balance)};
    figure.panels = {car, maps};
    figure.remarks.append(
        QStringLiteral("At the loudspeaker that fade and balance both turn away from, what they take away adds up: each is silent in %1 of the %2 "
                       "settings although neither would silence it alone.")
            .arg(silent / loudspeakerCount)
            .arg(steps * steps));
    return figure;
}
