#pragma once

#include <QString>

class AppError;

// The common error report: every procedure that traps an error shows it through here.
class ErrorReport
{
public:
    virtual ~ErrorReport() = default;
    virtual void ReportError(const AppError& error, const QString& procedure) = 0;
};

// The report's message: fixed text, procedure, a blank line, number and description.
QString ErrorReportText(const AppError& error, const QString& procedure);
