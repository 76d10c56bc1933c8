// The document holder: property changes report the element active before them; double clicks
// within two seconds ask for a refill; clicks are visits; complete loads are reported.
#include "BrowserFixture.h"

using namespace Qt::StringLiterals;

namespace {
class HolderEvents : public HTMLHolderEvents
{
public:
    QStringList lines;
    void HTMLHolder_DocChanged(const DocPtr&, const ElementPtr& element) override
    {
        const QString name =
            element->tagName() == QLatin1String("BODY") ? u"body"_s : element->name();
        lines << u"DocChanged "_s + name;
    }
    void HTMLHolder_HTMLGotFocus(const DocPtr&) override { lines << u"HTMLGotFocus"_s; }
    void HTMLHolder_DocComplete(const DocPtr&) override { lines << u"DocComplete"_s; }
    void HTMLHolder_DocVisited(const DocPtr&) override { lines << u"DocVisited"_s; }
    void HTMLHolder_FieldsAdded(const DocPtr&) override { lines << u"FieldsAdded"_s; }
};

class TestHTMLHolder : public ::testing::Test
{
protected:
    TestHTMLHolder() { holder->setHTMLDoc(document); }
    FakeClock clock;
    HolderEvents events;
    std::shared_ptr<ModelDocument> document = std::make_shared<ModelDocument>(u"http://a/"_s);
    std::shared_ptr<HTMLHolder> holder = std::make_shared<HTMLHolder>(events, clock);
};

TEST_F(TestHTMLHolder, PropertyChangesReportThePreviouslyActiveElement)
{
    auto first = document->add(ModelElement::input(u"text"_s, u"first"_s));
    auto second = document->add(ModelElement::input(u"text"_s, u"second"_s));
    document->type(first, u"Ann"_s);
    document->focus(second);
    EXPECT_EQ(events.lines, (QStringList{"HTMLGotFocus", "DocChanged body", "DocChanged first",
                                         "HTMLGotFocus", "DocChanged first"}));
    EXPECT_EQ(holder->LastActiveElement(), second);

    // An active element that cannot be read: the next change raises nothing, then recovers.
    events.lines.clear();
    document->setActiveElementUnreadable(true);
    document->type(second, u"x"_s);
    document->setActiveElementUnreadable(false);
    document->type(second, u"y"_s);
    document->type(second, u"z"_s);
    EXPECT_EQ(events.lines, (QStringList{"DocChanged second", "DocChanged second"}));
}

TEST_F(TestHTMLHolder, DoubleClicksWithinTwoSecondsRefillAndAreCancelled)
{
    struct Case
    {
        const char* name;
        std::vector<qint64> atMs;
        int refills;
    } cases[] = {
        {"single", {0}, 0},
        {"0 and 1.5", {0, 1500}, 1},
        {"0, 1.5 and 3.0", {0, 1500, 3000}, 2},
        {"0 and 2.5", {0, 2500}, 0},
        {"exactly 2.0 apart", {0, 2000}, 0},
        {"0, 2.5, 4.0", {0, 2500, 4000}, 1},
    };
    for (const Case& c : cases) {
        FakeClock clock;
        clock.monotonic = 86'399'000; // across a day boundary of the wall clock, to no effect
        clock.current = QDateTime(QDate(2026, 1, 1), QTime(23, 59, 59));
        HolderEvents recorded;
        auto doc = std::make_shared<ModelDocument>(u"http://b/"_s);
        auto h = std::make_shared<HTMLHolder>(recorded, clock);
        h->setHTMLDoc(doc);
        qint64 last = 0;
        for (qint64 at : c.atMs) {
            clock.advanceMs(at - last);
            last = at;
            EXPECT_FALSE(doc->dblclick()) << c.name;
        }
        EXPECT_EQ(recorded.lines.count(u"DocComplete"_s), c.refills) << c.name;
    }
}

TEST_F(TestHTMLHolder, ClicksAreVisitsAndLetTheBrowserAct)
{
    EXPECT_TRUE(document->click());
    EXPECT_TRUE(document->click());
    document->activate();
    EXPECT_EQ(events.lines, (QStringList{"DocVisited", "DocVisited", "HTMLGotFocus"}));
}

TEST_F(TestHTMLHolder, EveryCompleteReadyStateIsReported)
{
    for (const char* state :
         {"loading", "interactive", "Complete", " complete ", "complete", "completed"})
        document->setReadyState(QString::fromLatin1(state));
    EXPECT_EQ(events.lines.count(u"DocComplete"_s), 3);
}

TEST_F(TestHTMLHolder, ReplacedOrDestroyedHolderNoLongerListens)
{
    auto other = std::make_shared<ModelDocument>(u"http://c/"_s);
    holder->setHTMLDoc(other);
    EXPECT_EQ(document->subscriberCount(), 0);
    EXPECT_EQ(other->subscriberCount(), 1);
    holder.reset();
    EXPECT_EQ(other->subscriberCount(), 0);
    other->click();
    EXPECT_TRUE(events.lines.isEmpty());
}
} // namespace
