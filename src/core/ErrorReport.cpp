#include "ErrorReport.h"

#include "AppError.h"

QString ErrorReportText(const AppError& error, const QString& procedure)
{
    return QStringLiteral("An error occured in procedure ") + procedure +
           QStringLiteral(".\r\n\r\n") + QString::number(error.number()) + QLatin1Char(' ') +
           error.description();
}
