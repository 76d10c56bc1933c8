#pragma once

// The whole bar on the in-memory browser: pages load in windows, the user types and clicks,
// and the real INI files of a temporary data folder remember.

#include "FormFixture.h"
#include "IniFileStore.h"

#include <QLocale>
#include <gtest/gtest.h>

class FormMemoryFixture : public ::testing::Test
{
protected:
    FormMemoryFixture()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        f.form.Form_Load();
        QObject::connect(&f.form.StatusBar, &Control::changed, [this] {
            if (!f.form.StatusBar.text().isEmpty())
                statuses << f.form.StatusBar.text();
        });
        window = f.shellWindows.open();
    }

    // A contest page with text fields named by the list, in order.
    static std::shared_ptr<ModelDocument> formPage(const QString& url,
                                                   const QStringList& textFields = {})
    {
        auto page = std::make_shared<ModelDocument>(url, QStringLiteral("Contest at ") + url);
        for (const QString& name : textFields)
            page->add(ModelElement::input(QStringLiteral("text"), name));
        return page;
    }
    std::shared_ptr<ModelElement> field(const std::shared_ptr<ModelDocument>& page,
                                        const QString& name)
    {
        for (const ElementPtr& element : page->tags(QStringLiteral("input")) +
                                             page->tags(QStringLiteral("select")) +
                                             page->tags(QStringLiteral("textarea"))) {
            if (element->name() == name)
                return std::static_pointer_cast<ModelElement>(element);
        }
        ADD_FAILURE() << "no field " << name.toStdString();
        return nullptr;
    }
    // Loads a page in the window, far enough from the last load that it is not a repeat.
    void load(const std::shared_ptr<ModelDocument>& page,
              const std::shared_ptr<ModelBrowser>& in = nullptr)
    {
        f.clock.advanceMs(5000);
        (in ? in : window)->navigate(page);
    }
    QString stored(const QString& file, const QString& section, const QString& key)
    {
        return f.ini.readEntry(f.dataFile(file), section, key)
            .value_or(QStringLiteral("<missing>"));
    }

    FormFixture f;
    std::shared_ptr<ModelBrowser> window;
    QStringList statuses;
};
