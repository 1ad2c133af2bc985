#include "books.h"

#include "bookedobject.h"
#include "simulatorlog.h"

#include <QtCore/QHash>

#include <algorithm>
#include <vector>

namespace simulator
{

namespace
{

/// Destroyed objects that are remembered: a bound on the memory of a long soak.
constexpr int graveyardSize = 65536;

constexpr std::size_t kindCount = allObjectKinds.size();

constexpr std::size_t indexOf(ObjectKind kind)
{
    return static_cast<std::size_t>(kind);
}

} // namespace

struct BooksPrivate
{
    struct Record
    {
        const void *handle;
        std::unique_ptr<BookedObject> object;
    };

    std::vector<Record> living; ///< oldest first
    QHash<const void *, BookedObject *> byHandle; ///< living and destroyed ones
    std::vector<Record> graveyard; ///< a ring once it is full
    std::size_t oldestGrave = 0;
    std::array<int, kindCount> alive = {};
    std::array<int, kindCount> made = {};
    std::array<int, kindCount> lastNumber = {};
    QStringList problems;

    void bury(Record &&record)
    {
        if (graveyard.size() < graveyardSize) {
            graveyard.push_back(std::move(record));
            return;
        }
        byHandle.remove(graveyard[oldestGrave].handle);
        graveyard[oldestGrave] = std::move(record);
        oldestGrave = (oldestGrave + 1) % graveyardSize;
    }
};

Books::Books(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<BooksPrivate>())
{
}

Books::~Books() = default;

int Books::alive(ObjectKind kind) const
{
    return d->alive[indexOf(kind)];
}

int Books::made(ObjectKind kind) const
{
    return d->made[indexOf(kind)];
}

QStringList Books::living() const
{
    QStringList names;
    for (const BooksPrivate::Record &record : d->living)
        names += record.object->name();
    return names;
}

QStringList Books::problems() const
{
    return d->problems;
}

void Books::clearProblems()
{
    d->problems.clear();
}

QStringList Books::exitReport() const
{
    // The control facade never destroys its App, so that one stays even after a facade was destroyed. Its Volume goes with the
    // facade; the facade's singleton is never destroyed, and then the Volume stays beside the App. No other object outlives the
    // operation that made it.
    bool appExcused = false;
    bool volumeExcused = alive(ObjectKind::App) == 0;
    QStringList lines;
    for (const BooksPrivate::Record &record : d->living) {
        const BookedObject &object = *record.object;
        bool excused = object.isForgiven;
        if (object.kind == ObjectKind::App && !appExcused)
            appExcused = excused = true;
        else if (object.kind == ObjectKind::Volume && !volumeExcused)
            volumeExcused = excused = true;
        if (!excused)
            lines += object.name() + QLatin1String(" was never destroyed");
    }
    return lines;
}

int Books::enter(const void *handle, std::unique_ptr<BookedObject> object)
{
    const std::size_t kind = indexOf(object->kind);
    object->number = ++d->lastNumber[kind];
    const int number = object->number;
    ++d->alive[kind];
    ++d->made[kind];
    d->byHandle.insert(handle, object.get());
    d->living.push_back({handle, std::move(object)});
    Q_EMIT changed();
    return number;
}

BookedObject *Books::leave(ObjectKind kind, const void *handle)
{
    const QString call = QLatin1String("destroy(") + objectKindName(kind) + QLatin1String(" *)");
    BookedObject *object = d->byHandle.value(handle);
    if (!handle) {
        addProblem(call + QLatin1String(" of null"));
        return nullptr;
    }
    if (!object || object->kind != kind) {
        addProblem(call + QLatin1String(" of a pointer that no factory gave"));
        return nullptr;
    }
    if (!object->isAlive) {
        addProblem(object->name() + QLatin1String(" is destroyed twice"));
        return nullptr;
    }

    object->isAlive = false;
    object->destroyed();
    --d->alive[indexOf(kind)];
    const auto record
        = std::find_if(d->living.begin(), d->living.end(), [handle](const BooksPrivate::Record &candidate) { return candidate.handle == handle; });
    d->bury(std::move(*record));
    d->living.erase(record);
    Q_EMIT changed();
    return object;
}

void Books::addProblem(const QString &text)
{
    d->problems += text;
    qCCritical(simulatorLog).noquote() << text;
    Q_EMIT problemFound(text);
}

void Books::reset()
{
    for (const BooksPrivate::Record &record : d->graveyard)
        d->byHandle.remove(record.handle);
    d->graveyard.clear();
    d->oldestGrave = 0;
    d->made = {};
    // Numbers start anew, but never twice among living objects.
    d->lastNumber = {};
    for (const BooksPrivate::Record &record : d->living) {
        BookedObject &object = *record.object;
        object.isForgiven = true;
        int &lastNumber = d->lastNumber[indexOf(object.kind)];
        lastNumber = std::max(lastNumber, object.number);
    }
    d->problems.clear();
    Q_EMIT changed();
}

} // namespace simulator
