#include "FieldKeys.h"

#include "AppError.h"
#include "HtmlElement.h"

FieldKind KindOfInput(const QString& type)
{
    const QString lower = type.toLower();
    if (lower == QLatin1String("text"))
        return FieldKind::TextField;
    if (lower == QLatin1String("radio") || lower == QLatin1String("checkbox"))
        return FieldKind::Choice;
    return FieldKind::Other;
}

QString ChoiceKey(const HtmlElement& element)
{
    return element.name() + QLatin1Char('_') + element.value();
}

QString SelectedIndexKey(const QString& name)
{
    return name + QStringLiteral(" SelectedIndex");
}

QString BooleanText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

bool ReadBoolean(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
        return true;
    if (trimmed.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
        return false;
    bool isNumber = false;
    const double number = trimmed.toDouble(&isNumber);
    if (!isNumber)
        throw AppError(ErrorNumber::TypeMismatch, QStringLiteral("Type mismatch"));
    return number != 0;
}

ValueReach ReachOf(const QString& name)
{
    return name.isEmpty() ? ValueReach::SiteOnly : ValueReach::AnySite;
}

FieldEntry EntryOf(const QString& name, const FieldDescription& described, bool someoneElses)
{
    const ValueReach reach = someoneElses ? ValueReach::SiteOnly : ReachOf(name);
    return {name + described.twin, reach == ValueReach::AnySite ? name : QString(), reach};
}
