#include "windowsettings.h"

namespace
{

QString lookKey()
{
    return QStringLiteral("look");
}

QString known(const QString &look)
{
    return look == QLatin1String("dark") || look == QLatin1String("light") ? look : QString();
}

} // namespace

WindowSettings::WindowSettings(QObject *parent)
    : QObject(parent)
    , m_settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("qzaudio"), QStringLiteral("qzaudio-desk"))
{
}

WindowSettings::WindowSettings(const QString &file, QObject *parent)
    : QObject(parent)
    , m_settings(file, QSettings::IniFormat)
{
}

QString WindowSettings::look() const
{
    return known(m_settings.value(lookKey()).toString());
}

void WindowSettings::setLook(const QString &look)
{
    const QString before = this->look();
    const QString after = known(look);
    if (after == before)
        return;
    if (after.isEmpty())
        m_settings.remove(lookKey());
    else
        m_settings.setValue(lookKey(), after);
    Q_EMIT lookChanged();
}
