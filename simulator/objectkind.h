#ifndef OBJECTKIND_H
#define OBJECTKIND_H

#include <QtCore/QLatin1String>

#include <array>

namespace simulator
{

/// The four kinds of objects that the platform hands out.
enum class ObjectKind : int { App, Mixer, Source, Volume };

constexpr std::array<ObjectKind, 4> allObjectKinds = {ObjectKind::App, ObjectKind::Mixer, ObjectKind::Source, ObjectKind::Volume};

/// "App", "Mixer", "Source" or "Volume".
constexpr QLatin1String objectKindName(ObjectKind kind)
{
    constexpr std::array<const char *, 4> names = {"App", "Mixer", "Source", "Volume"};
    return QLatin1String(names[static_cast<std::size_t>(kind)]);
}

} // namespace simulator

#endif
