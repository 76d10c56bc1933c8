#pragma once

#include "ShortcutPlatform.h"

#include <QString>
#include <optional>

// The major and minor version the platform reports for the followed browser.
struct DllVersion
{
    int major = 0;
    int minor = 0;
};

// Which browser the program follows, as the start-up warnings name it.
struct BrowserIdentity
{
    QString productName;        // "Microsoft Internet Explorer"
    QString shortName;          // "Internet Explorer"
    QString executableToken;    // found in the default browser's path: "iexplor"
    QString minimumVersionText; // "5.0"
};

// The machine services the start-up and the bar need. Calls that cannot be answered throw
// AppError.
class ShellServices : public ShortcutPlatform
{
public:
    // True when another copy already runs; otherwise this copy now holds the instance lock.
    virtual bool IsAnotherInstanceRunning() = 0;
    virtual BrowserIdentity browserIdentity() = 0;
    virtual DllVersion DllGetVersion() = 0;
    // The temporary folder, without a trailing separator.
    virtual QString TempFolder() = 0;
    // The full path of the program that opens this file; empty when there is none.
    virtual QString FindExecutable(const QString& file) = 0;
    // The user's application-data folder; nullopt when the platform names none.
    virtual std::optional<QString> AppDataFolder() = 0;
    // The folder that holds the program.
    virtual QString ProgramFolder() = 0;
    // Sends keys to the program itself without waiting ("{F1}").
    virtual void SendKeys(const QString& keys) = 0;
};
