// What recognising a field's meaning costs: the fields of a long checkout and contest form, each
// as a page describes it, recognised over and over.
#include "FieldMeaning.h"

#include <QElapsedTimer>
#include <cstdio>
#include <vector>

namespace {
struct Field
{
    const char* tag;
    const char* name;
    const char* label;
    const char* autocomplete;
};

const Field Form[] = {
    {"input", "billing_first_name", "First name *", ""},
    {"input", "billing_last_name", "Last name *", ""},
    {"input", "billing_company", "Company name (optional)", ""},
    {"input", "billing_email", "Email address", "email"},
    {"input", "billing_phone", "Phone", "tel"},
    {"input", "billing_address_1", "Street address", ""},
    {"input", "billing_address_2", "Apartment, suite, unit, etc.", ""},
    {"input", "billing_city", "Town / City", ""},
    {"select", "billing_state", "State", ""},
    {"input", "billing_postcode", "ZIP Code", ""},
    {"input", "ctl00$MainContent$txtFName", "", ""},
    {"input", "entry.1234567", "Vorname", ""},
    {"input", "champ5", "Code postal", ""},
    {"input", "promo_code", "Promo code", ""},
    {"input", "friend_email", "Your friend's e-mail", ""},
    {"textarea", "comments", "Tell us why you should win", ""},
    {"input", "dob_day", "Date of birth", ""},
    {"input", "q", "", ""},
    {"input", "field_12", "", ""},
    {"input", "contact.mobilePhone", "", ""},
};
} // namespace

int main()
{
    std::vector<FieldDescription> described;
    for (const Field& field : Form) {
        FieldDescription description;
        description.label = QString::fromUtf8(field.label);
        description.autocomplete = QString::fromLatin1(field.autocomplete);
        description.inputType = QStringLiteral("text");
        described.push_back(description);
    }
    constexpr int Rounds = 2000;
    int recognised = 0;
    QElapsedTimer timer;
    timer.start();
    for (int round = 0; round < Rounds; ++round) {
        for (size_t i = 0; i < described.size(); ++i)
            recognised += RecogniseField(QLatin1String(Form[i].tag),
                                         QString::fromLatin1(Form[i].name), described[i])
                              .meaning != Meaning::None;
    }
    const double perField =
        static_cast<double>(timer.nsecsElapsed()) / 1e3 / (Rounds * described.size());
    std::printf("field meaning: %.1f us per field (%zu fields of a checkout and contest form, %d "
                "of them with a "
                "meaning); 100 fields: %.2f ms\n",
                perField, described.size(), recognised / Rounds, perField * 100 / 1e3);
    return 0;
}
