#pragma once

// A stand-in for a browser that ends as soon as it starts, with the given exit code.
#include <QFile>
#include <QString>

inline QString scriptThatExits(const QString& folder, const QString& name, int exitCode)
{
    const QString path = folder + QLatin1Char('/') + name;
    QFile script(path);
    if (script.open(QIODevice::WriteOnly))
        script.write(QStringLiteral("#!/bin/sh\nexit %1\n").arg(exitCode).toLatin1());
    script.close();
    script.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    return path;
}
