#include "customcurve.h"

#include "exitstatus.h"
#include "settingsfile.h"
#include "settingsreader.h"

#include <qzaudio/audiodatabase.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QSaveFile>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cmath>

using EqualizerCurves::Gains;

namespace
{

constexpr int storeFactor = 2; // the store keeps twice what it is given

int inEffect(const QVector<SettingsReader::Setting> &settings, const QString &key)
{
    const auto found = std::find_if(settings.cbegin(), settings.cend(), [&key](const SettingsReader::Setting &setting) { return setting.key == key; });
    return found == settings.cend() ? 0 : found->inEffect.toInt();
}

int typeIn(const QVector<SettingsReader::Setting> &settings)
{
    return inEffect(settings, QStringLiteral("EQ/Type"));
}

Gains customGains(const QVector<SettingsReader::Setting> &settings)
{
    Gains gains;
    for (std::size_t band = 0; band < gains.size(); ++band)
        gains.at(band) = inEffect(settings, QStringLiteral("EQ/Custom%1").arg(band));
    return gains;
}

bool isLibrarysFile(const QString &file)
{
    return QFileInfo(file).absoluteFilePath() == SettingsFile::path()
        || (QFileInfo::exists(file) && QFileInfo(file).canonicalFilePath() == SettingsFile::path());
}

bool isStored(const QString &file, const Gains &gains)
{
    const auto settings = SettingsReader(file).settings();
    return typeIn(settings) == EqualizerCurves::customPreset && customGains(settings) == gains;
}

/// In the folder, where the file has the store's name.
bool storeIn(const QString &folder, const Gains &gains)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/qzaudio-with-flash"),
                  {QStringLiteral("--dir"),
                   folder,
                   QStringLiteral("--"),
                   QCoreApplication::applicationFilePath(),
                   QStringLiteral("equalizer"),
                   QStringLiteral("--store-here=") + CustomCurve::toText(gains)});
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == Success;
}

/// Puts the text of one file in another one's place.
QString replace(const QString &file, const QString &source)
{
    QFile input(source);
    QSaveFile output(file);
    if (!input.open(QIODevice::ReadOnly))
        return input.errorString();
    if (!output.open(QIODevice::WriteOnly))
        return output.errorString();
    output.write(input.readAll());
    return output.commit() ? QString() : output.errorString();
}

} // namespace

QString CustomCurve::write(const QString &file, const Gains &gains)
{
    // What the store repairs in a damaged file is not for the desk to decide.
    const SettingsReader before(file);
    if (!before.problem().isEmpty())
        return before.problem();
    if (isLibrarysFile(file)) {
        // The store would make it, on a machine that has none.
        if (!QFileInfo(SettingsFile::folder()).isDir())
            return QStringLiteral("there is no such folder; qzaudio-with-flash COMMAND gives one to a program");
        store(gains);
        return isStored(file, gains) ? QString() : QStringLiteral("the curve could not be stored");
    }
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QFileInfo(SettingsFile::path()).fileName());
    if (!folder.isValid())
        return folder.errorString();
    if (before.exists() && !QFile::copy(file, copy))
        return QStringLiteral("it cannot be copied to %1").arg(folder.path());
    if (!storeIn(folder.path(), gains) || !isStored(copy, gains))
        return QStringLiteral("the curve could not be stored");
    return replace(file, copy);
}

void CustomCurve::store(const Gains &gains)
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\nqzaudio.simulator.info=false"));
    audio::AudioDataBase dataBase;
    for (int band = 0; band < EqualizerCurves::bandCount; ++band)
        dataBase.setCustomEQ(int(std::lround(gains.at(std::size_t(band)))) / storeFactor, band);
    dataBase.setEqType(EqualizerCurves::customPreset);
}

std::optional<Gains> CustomCurve::read(const QString &file, QString &problem)
{
    const SettingsReader reader(file);
    if (!reader.isReadable()) {
        problem = reader.problem();
        return {};
    }
    const auto settings = reader.settings();
    const int type = typeIn(settings);
    if (type != EqualizerCurves::customPreset)
        return EqualizerCurves::gainsOfPreset(type);
    const Gains gains = customGains(settings);
    if (std::any_of(gains.begin(), gains.end(), [](double gain) { return std::abs(gain) > EqualizerCurves::highestGain; })) {
        problem = QStringLiteral("its custom curve has a gain beyond %1 dB, which a unit refuses").arg(EqualizerCurves::highestGain);
        return {};
    }
    return gains;
}

QString CustomCurve::toText(const Gains &gains)
{
    QStringList words;
    for (const double gain : gains)
        words.append(QString::number(gain, 'g', 6));
    return words.join(QStringLiteral(", "));
}
