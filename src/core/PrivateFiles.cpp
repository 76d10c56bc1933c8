#include "PrivateFiles.h"

#include <QFile>

void KeepPrivate(const QString& path)
{
    const QFileDevice::Permissions now = QFile::permissions(path);
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                                            QFileDevice::ExeGroup | QFileDevice::ReadOther |
                                            QFileDevice::WriteOther | QFileDevice::ExeOther;
    // The "user" flags say what this process may do (everything, for root); setting them would
    // give the owner what the file did not grant.
    const QFileDevice::Permissions user =
        QFileDevice::ReadUser | QFileDevice::WriteUser | QFileDevice::ExeUser;
    if (now & others)
        QFile::setPermissions(path, now & ~others & ~user);
}
