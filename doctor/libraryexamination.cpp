#include "libraryexamination.h"

#include "loadedfile.h"

#include <qzaudio/audioplatformrecords.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QFileInfo>
#include <QtCore/QStringList>
#include <QtCore/QSysInfo>

#include <climits>

namespace
{

constexpr char soname[] = "libqzaudio.so.1";

struct RecordRow
{
    const char *name;
    int size;
};
// The sizes that the platform wants are held by the header itself: another compiler's are told here so that the vendor can compare.
constexpr RecordRow records[] = {
    {"audio_eq_parameter_t", sizeof(audio::audio_eq_parameter_t)},
    {"audio_ext_eq_band_t", sizeof(audio::audio_ext_eq_band_t)},
    {"audio_ext_eq_parameter_t", sizeof(audio::audio_ext_eq_parameter_t)},
    {"audio_loudness_t", sizeof(audio::audio_loudness_t)},
    {"audio_channel_gain_t", sizeof(audio::audio_channel_gain_t)},
    {"audio_filter_t", sizeof(audio::audio_filter_t)},
};

/// "1.0.0" of ".../libqzaudio.so.1.0.0"; empty where the file is called otherwise.
QString versionOf(const QString &file)
{
    const QString mark = QStringLiteral("libqzaudio.so.1.");
    const QString name = QFileInfo(file).fileName();
    return name.startsWith(mark) ? QStringLiteral("1.") + name.mid(mark.size()) : QString();
}

} // namespace

Findings examineLibrary()
{
    const QString file = fileOfCode(reinterpret_cast<const void *>(&ZelAudioManager::instance));
    const QString version = versionOf(file);
    const QString own = QStringLiteral(QZAUDIO_VERSION);
    const QJsonObject facts{{QStringLiteral("file"), file},
                            {QStringLiteral("abi"), QLatin1String(soname)},
                            {QStringLiteral("version"), version},
                            {QStringLiteral("wanted"), own},
                            {QStringLiteral("architecture"), QSysInfo::buildCpuArchitecture()},
                            {QStringLiteral("qt"), QLatin1String(qVersion())}};
    Finding finding{Finding::Area::Library, Finding::Grade::Good, QStringLiteral("version"), QString(), facts};
    if (version == own) {
        finding.text = QStringLiteral("%1, ABI %2, %3, Qt %4, %5")
                           .arg(version, QLatin1String(soname), QSysInfo::buildCpuArchitecture(), QLatin1String(qVersion()), file);
    } else if (version.isEmpty()) {
        finding.grade = Finding::Grade::Note;
        finding.text = QStringLiteral("ABI %1, but the name of %2 does not tell the version; this program came with %3").arg(QLatin1String(soname), file, own);
    } else {
        finding.grade = Finding::Grade::Wrong;
        finding.text = QStringLiteral("%1 is loaded, and this program came with %2").arg(file, own);
    }
    return {finding};
}

Findings examineRecords()
{
    QStringList told;
    QJsonObject sizes;
    for (const RecordRow &row : records) {
        told.append(QStringLiteral("%1 %2").arg(QLatin1String(row.name)).arg(row.size));
        sizes.insert(QLatin1String(row.name), row.size);
    }
    constexpr bool isCharSigned = CHAR_MIN < 0;
    constexpr bool isLittleEndian = QSysInfo::ByteOrder == QSysInfo::LittleEndian;
    const QString types = QStringLiteral("pointers of %1 bits, plain char %2, %3-endian")
                              .arg(QString::number(QSysInfo::WordSize),
                                   isCharSigned ? QStringLiteral("signed") : QStringLiteral("unsigned"),
                                   isLittleEndian ? QStringLiteral("little") : QStringLiteral("big"));
    const QJsonObject facts{{QStringLiteral("pointerBits"), static_cast<int>(QSysInfo::WordSize)},
                            {QStringLiteral("charIsSigned"), isCharSigned},
                            {QStringLiteral("littleEndian"), isLittleEndian}};
    return {{Finding::Area::Records, Finding::Grade::Good, QStringLiteral("sizes"), QStringLiteral("in bytes: ") + told.join(QStringLiteral(", ")), sizes},
            {Finding::Area::Records, Finding::Grade::Good, QStringLiteral("types"), types, facts}};
}
