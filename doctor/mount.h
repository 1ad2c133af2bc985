#ifndef MOUNT_H
#define MOUNT_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// The mounted file system that has a path, as the kernel lists it.
struct Mount
{
    QString point;
    QString type; ///< "ext4"
    QString device; ///< "/dev/mmcblk0p7", or whatever else stands in its place
    QString options; ///< of the mount and of the file system, with commas
    int major = 0;
    int minor = 0; ///< of the device, as the kernel names it, which on an overlay is not what stat() says

    /// @param path of something that is there
    static Mount of(const QString &path);

    bool isReadOnly() const;
    /// Whether it is in memory only.
    bool isVolatile() const;
};

#endif
