#include "FuzzChecks.h"

#include "Clock.h"
#include "Cp1252.h"
#include "DataLocation.h"
#include "ErrorReport.h"
#include "Ini.h"
#include "IniDocument.h"
#include "IniFileStore.h"
#include "SiteFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <QStringList>

namespace {
bool hasBreak(const QString& text)
{
    return text.contains(QLatin1Char('\r')) || text.contains(QLatin1Char('\n')) ||
           text.contains(QChar(0));
}

// What a read gives for a written value: blanks around it gone, then one pair of quotes, double
// or single, as the Windows profile calls do.
QString asRead(QString value)
{
    const auto blank = [](QChar c) {
        return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\v');
    };
    while (!value.isEmpty() && blank(value.front()))
        value.remove(0, 1);
    while (!value.isEmpty() && blank(value.back()))
        value.chop(1);
    const bool quote = value.size() >= 2 &&
                       (value.front() == QLatin1Char('"') || value.front() == QLatin1Char('\''));
    if (quote && value.back() == value.front())
        value = value.mid(1, value.size() - 2);
    return value;
}

QStringList linesOf(const QString& text)
{
    QStringList lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('\n') ||
            (text[i] == QLatin1Char('\r') &&
             (i + 1 == text.size() || text[i + 1] != QLatin1Char('\n')))) {
            lines.append(text.mid(start, i + 1 - start));
            start = i + 1;
        }
    }
    if (start < text.size())
        lines.append(text.mid(start));
    return lines;
}

// The lines of `before` that `after` no longer has: a write changes one place of the file, so
// what is left is the common start and the common end; the last line may have gained its end.
qsizetype linesLost(const QString& before, const QString& after)
{
    const QStringList old = linesOf(before);
    const QStringList now = linesOf(after);
    qsizetype head = 0;
    while (head < old.size() && head < now.size() &&
           (old[head] == now[head] || (head + 1 == old.size() && now[head].startsWith(old[head]))))
        ++head;
    qsizetype tail = 0;
    while (tail < old.size() - head && tail < now.size() - head &&
           old[old.size() - 1 - tail] == now[now.size() - 1 - tail])
        ++tail;
    return old.size() - head - tail;
}

QString stored(const QString& text)
{
    return Cp1252::decode(Cp1252::encode(text));
}

class NoReport : public ErrorReport
{
public:
    void ReportError(const AppError&, const QString&) override { reported = true; }
    bool reported = false;
};

class Profile : public DataLocation
{
public:
    QString DataFolder() const override { return QStringLiteral("/data"); }
    QString GetProfilePrefix(int) const override { return QStringLiteral("v"); }
};
} // namespace

namespace FuzzChecks {

std::optional<std::string> iniReadWrite(const QByteArray& input)
{
    const QList<QByteArray> parts = input.split('\0');
    const auto part = [&](int index) { return index < parts.size() ? parts[index] : QByteArray(); };
    const QString section = stored(QString::fromUtf8(part(0)));
    const QString key = stored(QString::fromUtf8(part(1)));
    const QString value = stored(QString::fromUtf8(part(2)));
    const qsizetype fileStart =
        std::min<qsizetype>(input.size(), part(0).size() + part(1).size() + part(2).size() + 3);
    const QByteArray file = input.mid(fileStart);

    const QString text = Cp1252::decode(file);
    IniDocument document(text);
    for (const QString& name : document.sectionNames())
        document.value(name, key);
    if (Cp1252::encode(document.text()) != file)
        return "an untouched file is not written back as it was";
    const std::optional<QString> before = document.value(section, key);
    if (IniDocument::find(text, section, key) != before)
        return "a read in one pass differs from a read of the parsed file";
    if (!document.setValue(section, key, value)) {
        if (!hasBreak(section) && !hasBreak(key) && !hasBreak(value))
            return "a write without line break or NUL was refused";
        if (document.text() != text || document.value(section, key) != before)
            return "a refused write changed the file";
        return std::nullopt;
    }
    if (hasBreak(section) || hasBreak(key) || hasBreak(value))
        return "a write with a line break or NUL was taken";
    const IniDocument reread(Cp1252::decode(Cp1252::encode(document.text())));
    if (reread.value(section, key) != asRead(value) ||
        IniDocument::find(document.text(), section, key) != asRead(value))
        return "the file read anew does not hold the value written";
    if (linesLost(text, document.text()) > 1)
        return "a write changed more than its own line";
    return std::nullopt;
}

std::optional<std::string> iniFile(const QByteArray& input)
{
    static const QByteArray Bom = QByteArrayLiteral("\xEF\xBB\xBF");
    const QList<QByteArray> parts = input.split('\0');
    const auto part = [&](int index) { return index < parts.size() ? parts[index] : QByteArray(); };
    const QString section = QString::fromUtf8(part(0));
    const QString key = QString::fromUtf8(part(1));
    const QString value = QString::fromUtf8(part(2));
    const QByteArray before = input.mid(
        std::min<qsizetype>(input.size(), part(0).size() + part(1).size() + part(2).size() + 3));
    const QString path =
        QDir::tempPath() +
        QStringLiteral("/tolvane-fuzz-%1.ini").arg(QCoreApplication::applicationPid());
    const auto bytesOf = [&] {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
            file.write(before) != before.size())
            return std::nullopt; // the machine, not the code
    }
    const bool utf8 = before.startsWith(Bom);
    const auto textOf = [&](const QByteArray& bytes) {
        return bytes.startsWith(Bom) ? QString::fromUtf8(bytes.mid(Bom.size()))
                                     : Cp1252::decode(bytes);
    };
    IniFileStore store; // a cache of its own: the file is rewritten between inputs
    store.readEntry(path, section, key);
    if (!store.writeEntry(path, section, key, value)) {
        if (!hasBreak(section) && !hasBreak(key) && !hasBreak(value))
            return "a write without line break or NUL was refused";
        return bytesOf() == before ? std::nullopt
                                   : std::optional<std::string>("a refused write changed the file");
    }
    const QByteArray after = bytesOf();
    if (IniFileStore().readEntry(path, section, key) != asRead(value))
        return "the file read anew does not hold the value written, exactly";
    const bool fits = Cp1252::holds(section + key + value) && Cp1252::holds(textOf(before));
    if (after.startsWith(Bom) != (utf8 || !fits))
        return "the file is not in the code page it can be in, or not UTF-8 where it must be";
    if (linesLost(textOf(before), textOf(after)) > 1)
        return "a write changed more than its own line";
    if (!utf8 && fits && linesLost(QString::fromLatin1(before), QString::fromLatin1(after)) > 1)
        return "a file in Windows' code page did not keep its bytes";
    return std::nullopt;
}

std::optional<std::string> siteFileName(const QByteArray& input)
{
    // What no file name may hold, on Windows (where the data folders come from) or here.
    static const QString forbidden = QStringLiteral("/\\:*?\"<>|");
    IniFileStore store;
    Ini ini(store);
    Profile profile;
    NoReport errors;
    SystemClock clock;
    const SiteFiles sites(ini, profile, errors, clock);
    const QString address = QString::fromUtf8(input);
    const QString name = sites.URL2INIFile(address);
    if (errors.reported)
        return "the name was reported as an error";
    if (name != sites.URL2INIFile(address))
        return "the same address gave two names";
    if (!name.startsWith(QLatin1Char('v')) || !name.endsWith(QLatin1String(".ini")) ||
        name.size() > 40 + 4)
        return "the name is not prefix, at most 40 characters and .ini";
    for (const QChar c : name) {
        if (c.unicode() < 0x20 || c.unicode() >= 0x7f || forbidden.contains(c))
            return "the name holds a character no file name may hold";
    }
    if (sites.SiteFilePath(address) != QStringLiteral("/data") + QDir::separator() + name)
        return "the site file is not in the data folder";
    return std::nullopt;
}

} // namespace FuzzChecks
