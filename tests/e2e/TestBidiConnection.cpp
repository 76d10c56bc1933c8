// The same connection speaking WebDriver BiDi to a real headless Firefox ESR: numbered calls
// answered, the browser's errors with their message, events in order, a browser that ends.
#include "AppError.h"
#include "PumpUntil.h"
#include "RemoteConnection.h"
#include "RemoteTransport.h"

#include <QJsonArray>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
TEST(BidiConnection, FirefoxAnswersCallsAndSendsEventsOverTheSameConnection)
{
    const QString firefox = QStandardPaths::findExecutable(QStringLiteral("firefox-esr"));
    if (firefox.isEmpty())
        GTEST_SKIP() << "firefox-esr is not installed";
    QTemporaryDir profile;
    QProcess browser;
    browser.setProcessChannelMode(QProcess::MergedChannels);
    // The port is the browser's choice, and it says which.
    browser.start(firefox, {QStringLiteral("--headless"), QStringLiteral("--remote-debugging-port=0"),
                            QStringLiteral("--profile"), profile.path(), QStringLiteral("--no-remote"),
                            QStringLiteral("about:blank")});
    ASSERT_TRUE(browser.waitForStarted());
    QString endpoint;
    const QRegularExpression listening(QStringLiteral("WebDriver BiDi listening on (ws://\\S+)"));
    QByteArray said;
    pumpUntil([&] {
        browser.waitForReadyRead(50);
        said += browser.readAll();
        endpoint = listening.match(QString::fromUtf8(said)).captured(1);
        return !endpoint.isEmpty();
    }, 30000);
    ASSERT_FALSE(endpoint.isEmpty()) << said.toStdString();

    {
        RemoteConnection bidi([endpoint] { return new WebSocketTransport(endpoint + QStringLiteral("/session")); });
        QStringList events;
        bidi.setEventHandler([&](const RemoteConnection::Event& event) { events << event.method; });
        EXPECT_TRUE(bidi.call(QStringLiteral("session.new"), {{"capabilities", QJsonObject{}}}).contains("sessionId"));
        bidi.call(QStringLiteral("session.subscribe"), {{"events", QJsonArray{"browsingContext.load"}}});
        const QJsonArray contexts = bidi.call(QStringLiteral("browsingContext.getTree")).value("contexts").toArray();
        ASSERT_FALSE(contexts.isEmpty());
        const QString context = contexts[0].toObject().value("context").toString();
        bidi.call(QStringLiteral("browsingContext.navigate"),
                  {{"context", context}, {"url", "data:text/html,<title>Entry</title>"}, {"wait", "complete"}});
        EXPECT_TRUE(pumpUntil([&] { return events.contains(QStringLiteral("browsingContext.load")); }, 10000))
            << events.join(' ').toStdString();
        try {
            bidi.call(QStringLiteral("No.suchMethod"));
            FAIL() << "no error";
        } catch (const AppError& error) {
            EXPECT_EQ(error.number(), ErrorNumber::BrowserCall);
            EXPECT_TRUE(error.description().startsWith(QLatin1String("unknown command"))) << error.description().toStdString();
        }
        bidi.call(QStringLiteral("browser.close"));
        EXPECT_TRUE(browser.waitForFinished(20000));
        EXPECT_TRUE(pumpUntil([&] { return events.contains(RemoteConnection::ClosedEvent); }, 10000));
        EXPECT_THROW(bidi.call(QStringLiteral("browsingContext.getTree")), AppError);
    }
    if (browser.state() != QProcess::NotRunning) {
        browser.kill();
        browser.waitForFinished();
    }
}
} // namespace
