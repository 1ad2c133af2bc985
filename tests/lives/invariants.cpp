#include "invariants.h"

#include <settingsfile.h>
#include <virtualclock.h>

#include <algorithm>

namespace lives
{

namespace
{

using Moment = Watch::Moment;

constexpr double duckedGain = 0.6;
constexpr int loudest = 148;
const QLatin1String mainTrack("main");

bool isDuck(int status)
{
    return status == 10 || status == 14 || status == 18;
}
bool isRestore(int status)
{
    return status == 11 || status == 15 || status == 19;
}

const Watch::Source &restoredSource(const Moment &moment)
{
    static const Watch::Source none;
    const auto found = moment.watch.sources.constFind(moment.watch.restored);
    return found == moment.watch.sources.cend() ? none : *found;
}

/// Of the channels that play it.
bool isOfMedia(const QString &source)
{
    bool isMedia = true;
    for (int channel = 0; channel < 20; ++channel) {
        if (FacadeModel::platformSource(situation::sourceOfChannel(channel)) == source)
            isMedia = isMedia && situation::typeOfChannel(channel) == 0;
    }
    return isMedia;
}

double loudestGainOf(const QString &track)
{
    const simulator::AudioChip &chip = LivedUnit::chip();
    double gain = 0;
    for (const quint32 channel : {1U, 2U, 4U, 8U})
        gain = std::max(gain, chip.effectiveGain(track, chip.activeSource(track), channel));
    return gain;
}

// What has to hold: empty, or what is wrong --------------------------------------------------------------------------------

QString volumesChangeByUsersOnly(const Moment &moment)
{
    const bool mayChange = moment.role == Role::UserVolume || !moment.watch.wasOn || !moment.unit.isOn();
    return mayChange || moment.unit.volumes() == moment.watch.volumesBefore ? QString() : QStringLiteral("a volume has changed");
}

QString restoredSourcesHaveTheirOwnVolume(const Moment &moment)
{
    const int own = restoredSource(moment).own;
    if (moment.watch.restored.isNull() || own < 0)
        return {};
    const int volume = LivedUnit::chip().trackVolume(mainTrack, moment.watch.restored);
    return volume == own ? QString() : QStringLiteral("%1 is back at %2, and was at %3").arg(moment.watch.restored).arg(volume).arg(own);
}

QString noSourceStaysLowered(const Moment &moment)
{
    if (moment.watch.restored.isNull())
        return {};
    for (auto source = moment.watch.sources.cbegin(); source != moment.watch.sources.cend(); ++source) {
        if (source->loweredBy != 0 && source->loweredBy == moment.watch.restoreStatus - 1)
            return source.key() + QLatin1String(" still has the volume of prompts");
    }
    return {};
}

QString mutedIsSilent(const Moment &moment)
{
    if (!moment.model.facade().isMute())
        return {};
    return loudestGainOf(mainTrack) > 0 || loudestGainOf(QStringLiteral("alternative")) > 0 ? QStringLiteral("it is to be heard") : QString();
}

QString duckedIsNoLouderThanAllowed(const Moment &moment)
{
    const ManagerModel *const manager = moment.model.managerIfOn();
    if (!manager || manager->duckClaims() == 0)
        return {};
    constexpr double tolerance = 1e-9;
    return loudestGainOf(mainTrack) <= duckedGain + tolerance && LivedUnit::chip().isDucked() ? QString() : QStringLiteral("the main audio is not lowered");
}

QString noTimerOutlivesItsManager(const Moment &moment)
{
    return moment.unit.isOn() || simulator::VirtualClock::installed()->nextDeadline() < 0 ? QString() : QStringLiteral("one runs");
}

QString booksAreClean(const Moment &moment)
{
    using simulator::ObjectKind;
    const simulator::Books &books = *LivedUnit::platform().books();
    if (!books.problems().isEmpty())
        return books.problems().constFirst();
    const FacadeModel &facade = moment.model.facade();
    const bool isClean = books.alive(ObjectKind::Volume) == (facade.hasVolume() ? 1 : 0) && books.alive(ObjectKind::App) == (facade.hasApp() ? 1 : 0)
        && books.alive(ObjectKind::Source) == 0 && books.alive(ObjectKind::Mixer) == 0;
    return isClean ? QString() : QLatin1String("alive: ") + books.living().join(QLatin1String(", "));
}

QString settingsAreThoseSavedLast(const Moment &moment)
{
    return moment.watch.areSettingsToBeRead ? moment.model.file().differenceTo(LivedUnit::settings()) : QString();
}

QString nothingLiesBesideTheSettings(const Moment &moment)
{
    if (!moment.watch.areSettingsToBeRead)
        return {};
    const QStringList names = LivedUnit::leftovers();
    const auto found = std::find_if_not(names.cbegin(), names.cend(), [&moment](const QString &name) { return moment.watch.leftovers.contains(name); });
    return found == names.cend() ? QString() : *found + QLatin1String(" does");
}

struct Invariant
{
    const char *name;
    QString (*problem)(const Moment &);
};

constexpr Invariant invariants[] = {
    {"a user's volumes change by users only", volumesChangeByUsersOnly},
    {"a restored source is back at its own volume", restoredSourcesHaveTheirOwnVolume},
    {"when a claim has ended nothing stays lowered", noSourceStaysLowered},
    {"what is muted cannot be heard", mutedIsSilent},
    {"what is ducked is no louder than the claim allows", duckedIsNoLouderThanAllowed},
    {"no timer outlives its manager", noTimerOutlivesItsManager},
    {"the platform's books are clean", booksAreClean},
    {"the settings are those that were saved last, as a whole", settingsAreThoseSavedLast},
    {"nothing lies beside the settings", nothingLiesBesideTheSettings},
};

// Where behaviour that is meant breaks them ---------------------------------------------------------------------------------

struct Exception
{
    QString (*problem)(const Moment &); ///< of the invariant
    const char *reason;
    bool (*applies)(const Moment &);
};

constexpr Exception exceptions[] = {
    {restoredSourcesHaveTheirOwnVolume,
     "the restore statuses have the volume type of media, whatever the type of the channel that they apply to",
     [](const Moment &moment) { return !isOfMedia(moment.watch.restored); }},
    {restoredSourcesHaveTheirOwnVolume,
     "a volume that an application sets past the manager is not stored: the stored one comes back",
     [](const Moment &moment) { return restoredSource(moment).isPastPolicy; }},
    {restoredSourcesHaveTheirOwnVolume,
     "a stored volume beyond 37 is more than the platform takes, or what is left of it in a byte",
     [](const Moment &moment) {
         const int volume = moment.model.manager().getVolume(ZelAudioTypeMedia);
         return volume < 0 || volume > loudest / 4;
     }},
    {restoredSourcesHaveTheirOwnVolume,
     "nothing is tried again: where the platform refuses a volume, the old one stays",
     [](const Moment &moment) { return restoredSource(moment).isRefused; }},
    {noSourceStaysLowered,
     "CarPlay's restore goes to the channel of that moment: one that was left while ducked keeps the prompts' volume",
     [](const Moment &moment) { return moment.watch.restoreStatus == 11; }},
    {noSourceStaysLowered,
     "nothing is tried again: where the platform refuses a volume, the old one stays",
     [](const Moment &moment) { return restoredSource(moment).isRefused; }},
    {mutedIsSilent,
     "the mute counts as set, whether or not the platform took it, and is not set again",
     [](const Moment &moment) { return moment.watch.isDuckingRefused; }},
    {mutedIsSilent,
     "a platform that lost its power is not told again that it is muted: the process still counts it as muted",
     [](const Moment &moment) { return moment.watch.isForgotten; }},
    {duckedIsNoLouderThanAllowed,
     "one ducking is all that there is: the first unduck ends it for everybody",
     [](const Moment &moment) { return moment.model.manager().isUnduckedByAnother(); }},
    {duckedIsNoLouderThanAllowed,
     "nothing is tried again: where the platform refuses to duck, it is not ducked",
     [](const Moment &moment) { return moment.watch.isDuckingRefused; }},
    {duckedIsNoLouderThanAllowed, "an application may set the ducking past the manager", [](const Moment &moment) { return moment.watch.isDuckingPastPolicy; }},
};

bool isMeant(const Invariant &invariant, const Moment &moment)
{
    return std::any_of(std::begin(exceptions), std::end(exceptions), [&](const Exception &exception) {
        return exception.problem == invariant.problem && exception.applies(moment);
    });
}

} // namespace

void Watch::before(const LivedUnit &unit)
{
    wasOn = unit.isOn();
    volumesBefore = unit.volumes();
}

void Watch::after(Role role, const LivedUnit &unit, UnitModel &model)
{
    const Moment moment = {role, unit, model, *this};
    noteVolumes(moment);
    noteDucking(moment);
    noteSettings(moment);
    for (const Invariant &invariant : invariants) {
        const QString problem = invariant.problem(moment);
        if (!problem.isEmpty() && !isMeant(invariant, moment))
            fail(QLatin1String(invariant.name) + QLatin1String(": ") + problem);
    }
}

void Watch::noteVolumes(const Moment &moment)
{
    restored = QString();
    restoreStatus = 0;
    if (moment.role == Role::Reset)
        sources.clear();
    if (moment.model.calls().isObjectMissing()) {
        for (Source &source : sources)
            source.isRefused = true;
    }
    const auto applied = moment.model.isOn() ? moment.model.manager().takeApplied() : QVector<ManagerModel::Applied>();
    const auto &volumes = moment.model.calls().trackVolumes();
    for (int place = 0; place < volumes.size(); ++place) {
        const CallReader::TrackVolume &set = volumes.at(place);
        if (set.track != mainTrack)
            continue;
        const auto found = std::find_if(applied.cbegin(), applied.cend(), [place](const ManagerModel::Applied &one) { return one.place == place; });
        Source &source = sources[set.source];
        source.isRefused = source.isRefused || !set.isAccepted;
        if (found == applied.cend()) {
            source = {set.volume, moment.role == Role::DirectVolume, !set.isAccepted, 0};
        } else if (isDuck(found->status)) {
            source.loweredBy = found->status;
        } else {
            source.loweredBy = 0;
            restored = isRestore(found->status) ? set.source : restored;
            restoreStatus = isRestore(found->status) ? found->status : restoreStatus;
        }
    }
}

void Watch::noteDucking(const Moment &moment)
{
    isDuckingRefused = isDuckingRefused || moment.model.calls().isLoudnessRefused() || (moment.model.facade().isThere() && !moment.model.facade().hasVolume());
    isDuckingPastPolicy = isDuckingPastPolicy || moment.role == Role::DirectDucking;
    isForgotten = isForgotten || moment.role == Role::Reset;
    const ManagerModel *const manager = moment.model.managerIfOn();
    if (moment.role != Role::DirectDucking && (!manager || manager->duckClaims() == 0) && !moment.model.facade().isMute()) {
        isDuckingRefused = false;
        isDuckingPastPolicy = false;
        isForgotten = false;
    }
}

void Watch::noteSettings(const Moment &moment)
{
    const QByteArray stamp = SettingsFile::stamp();
    areSettingsToBeRead = stamp != m_stamp || moment.model.file().revision() != m_revision || moment.role == Role::PowerCut;
    m_stamp = stamp;
    m_revision = moment.model.file().revision();
    if (moment.role == Role::PowerCut)
        leftovers = LivedUnit::leftovers();
}

} // namespace lives
