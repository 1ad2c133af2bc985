#include "life.h"

namespace lives
{

namespace
{

template<typename Values>
QString texts(const Values &values)
{
    QStringList all;
    for (const auto &value : values)
        all.append(QVariant(value).toString());
    return QLatin1Char('[') + all.join(QLatin1String(", ")) + QLatin1Char(']');
}

bool isSame(const QVariant &a, const QVariant &b)
{
    return a.type() == QVariant::String || b.type() == QVariant::String ? a.toString() == b.toString() : a.toDouble() == b.toDouble();
}

} // namespace

Life::Life()
{
    LivedUnit::platform().journal()->clear();
}

void Life::live(const Operation &operation)
{
    const OperationRow &row = operation.what();
    const Arguments arguments(operation.arguments);
    m_watch.before(m_unit);
    const QVariantList given = row.call(m_unit, arguments);
    m_model.calls().begin();
    m_model.learnNames(given);
    const QVariantList told = row.tell(m_model, arguments);
    m_model.calls().end();
    compareAnswers(given, told);
    compareNews();
    rememberVolumes(row.role);
    m_watch.after(row.role, m_unit, m_model);
    compareState();
}

void Life::end()
{
    compareVolumes();
}

void Life::compareAnswers(const QVariantList &given, const QVariantList &told) const
{
    if (given.size() != told.size() || !std::equal(given.cbegin(), given.cend(), told.cbegin(), isSame))
        fail(QStringLiteral("it was to give %1 and gave %2").arg(texts(told), texts(given)));
}

void Life::compareNews()
{
    const auto heard = m_unit.takeVolumeNews();
    const auto told = m_model.isOn() ? m_model.manager().takeNews() : QVector<ManagerModel::VolumeNews>();
    if (heard != told)
        fail(QStringLiteral("zelvolumeChanged was to be emitted %1 times and came %2 times, or with other values").arg(told.size()).arg(heard.size()));
    if (m_unit.takeFocusNews() != m_model.takeFocusNews())
        fail(QStringLiteral("the clients of audio focus were told something else"));
}

void Life::rememberVolumes(Role role)
{
    if (role == Role::Reset)
        m_trackVolumes.clear();
    for (const auto &set : m_model.calls().trackVolumes()) {
        if (set.isAccepted)
            m_trackVolumes.insert({set.track, set.source}, set.volume);
    }
    if (m_model.calls().isAlternativeSet()) {
        for (auto volume = m_trackVolumes.begin(); volume != m_trackVolumes.end();)
            volume = volume.key().first == QLatin1String("alternative") ? m_trackVolumes.erase(volume) : volume + 1;
    }
}

void Life::compareState()
{
    if (m_unit.isOn() != m_model.isOn())
        fail(QStringLiteral("the unit was to be %1").arg(m_model.isOn() ? QLatin1String("on") : QLatin1String("off")));
    const ManagerModel *const manager = m_model.managerIfOn();
    if (!manager)
        return;
    if (m_unit.status() != manager->status() || m_unit.channel() != manager->currentAudioChannel())
        fail(QStringLiteral("status and channel were to be %1 and %2, and are %3 and %4")
                 .arg(manager->status())
                 .arg(manager->currentAudioChannel())
                 .arg(m_unit.status())
                 .arg(m_unit.channel()));
    if (m_unit.volumes() != manager->store().volumes())
        fail(QStringLiteral("the manager was to have the volumes %1, and has %2").arg(texts(manager->store().volumes()), texts(m_unit.volumes())));
    const auto left = m_unit.timers();
    for (std::size_t timer = 0; timer < left.size(); ++timer) {
        const TimerModel &told = manager->timers()[timer];
        const qint64 expected = told.isActive() ? told.due - m_model.now() : -1;
        if (left[timer] != expected)
            fail(QStringLiteral("timer %1 was to have %2 ms left, and has %3").arg(timer).arg(expected).arg(left[timer]));
    }
    for (const auto &set : m_model.calls().trackVolumes()) {
        const int held = LivedUnit::chip().trackVolume(set.track, set.source);
        if (const auto told = m_trackVolumes.constFind({set.track, set.source}); told != m_trackVolumes.cend() && *told != held)
            fail(QStringLiteral("the chip was to hold %1 for %2 on %3, and holds %4").arg(*told).arg(set.source, set.track).arg(held));
    }
}

void Life::compareVolumes() const
{
    for (auto volume = m_trackVolumes.cbegin(); volume != m_trackVolumes.cend(); ++volume) {
        const int held = LivedUnit::chip().trackVolume(volume.key().first, volume.key().second);
        if (held != volume.value())
            fail(QStringLiteral("at the end the chip was to hold %1 for %2, and holds %3").arg(volume.value()).arg(volume.key().second).arg(held));
    }
}

std::optional<QString> problemOf(const std::vector<Operation> &life, int &livedUntil)
{
    livedUntil = 0;
    Life one;
    try {
        for (const Operation &operation : life) {
            ++livedUntil;
            one.live(operation);
        }
        one.end();
    } catch (const Discrepancy &discrepancy) {
        return QString::fromUtf8(discrepancy.what());
    }
    return std::nullopt;
}

} // namespace lives
