// Tolvane's native-messaging host between a browser (the test, on the host's standard input and
// output) and the bar's socket; the bar's reading of what the host relays; the socket closed to
// other users; and several browsers followed at once.
#include "BarSocket.h"
#include "ExtensionWindowList.h"
#include "LocalTransport.h"
#include "NativeFrames.h"
#include "PumpUntil.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
QByteArray json(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

// The user's runtime folder, the test's own.
class NativeHost : public ::testing::Test
{
protected:
    void SetUp() override { qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit()); }

    // What the host wrote to the browser so far, message by message.
    QList<QByteArray> toBrowser(QProcess& host)
    {
        return fromHost.take(host.readAllStandardOutput());
    }

    QTemporaryDir runtime;
    NativeFrames::Reader fromHost;
};

TEST_F(NativeHost, RelaysBothWaysWaitsForTheBarAndSaysWhatItCannotRelay)
{
    QProcess host;
    host.start(TOLVANE_HOST_EXE, {u"chrome-extension://test/"_s});
    ASSERT_TRUE(host.waitForStarted());
    QByteArray said;
    const auto hostSays = [&](const char* words) {
        return pumpUntil([&] { return (said += host.readAllStandardError()).contains(words); },
                         5000);
    };
    // No bar: the browser hears so once, its messages go nowhere, the host waits.
    EXPECT_TRUE(hostSays("the Tolvane bar is not running"));
    host.write(NativeFrames::frame(json({{"type", "event"}, {"method", "early"}})));
    QList<QByteArray> heard;
    ASSERT_TRUE(pumpUntil([&] { return !(heard += toBrowser(host)).isEmpty(); }, 5000));
    EXPECT_EQ(heard, QList<QByteArray>{R"({"tolvane":"bar-gone"})"});

    BarSocket socket;
    QSignalSpy arrived(&socket, &BarSocket::connected);
    socket.listen();
    ASSERT_TRUE(pumpUntil([&] { return !arrived.isEmpty(); }, 5000)) << "the host never came";
    QLocalSocket bar;
    bar.setSocketDescriptor(arrived.first().first().toInt());
    NativeFrames::Reader fromBar;
    QList<QByteArray> atBar;

    // Browser to bar: JSON objects only.
    host.write(NativeFrames::frame("not json") +
               NativeFrames::frame(json({{"type", "event"}, {"method", "m"}})));
    ASSERT_TRUE(pumpUntil([&] { return !(atBar += fromBar.take(bar.readAll())).isEmpty(); }, 5000));
    EXPECT_EQ(atBar, QList<QByteArray>{json({{"type", "event"}, {"method", "m"}})});
    EXPECT_TRUE(hostSays("dropped a message from the browser that is not a JSON object"));

    // Bar to browser: what the browser would refuse is answered to the bar instead.
    bar.write(NativeFrames::frame(json({{"id", 7}, {"method", "a"}})));
    bar.write(NativeFrames::frame(
        json({{"id", 8}, {"method", "b"}, {"params", QString(1100 * 1024, u'x')}})));
    bar.flush();
    atBar.clear();
    ASSERT_TRUE(pumpUntil([&] { return !(atBar += fromBar.take(bar.readAll())).isEmpty(); }, 5000));
    const QJsonObject refusal = QJsonDocument::fromJson(atBar.first()).object();
    EXPECT_EQ(refusal.value("id").toInt(), 8);
    EXPECT_TRUE(refusal.value("message").toString().contains(u"over 1 MB"_s));
    EXPECT_TRUE(hostSays("over the browser's limit"));
    heard.clear();
    ASSERT_TRUE(pumpUntil([&] { return !(heard += toBrowser(host)).isEmpty(); }, 5000));
    EXPECT_EQ(heard, QList<QByteArray>{json({{"id", 7}, {"method", "a"}})});

    // The bar goes: the browser hears so, the host waits for the next one.
    bar.abort();
    heard.clear();
    ASSERT_TRUE(pumpUntil([&] { return !(heard += toBrowser(host)).isEmpty(); }, 5000));
    EXPECT_EQ(heard, QList<QByteArray>{R"({"tolvane":"bar-gone"})"});
    EXPECT_EQ(host.state(), QProcess::Running);

    // A length no message can have: the stream cannot be read on, and the host ends saying why.
    host.write(QByteArray("\xf0\xff\xff\xff", 4));
    ASSERT_TRUE(pumpUntil([&] { return host.state() == QProcess::NotRunning; }, 5000));
    EXPECT_EQ(host.exitCode(), 1);
    EXPECT_TRUE(hostSays("the browser sent what cannot be read"));
}

TEST_F(NativeHost, TheBarKeepsWhatItCanReadAndClosesOnALengthNoMessageHas)
{
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    LocalTransport transport(ends[0]);
    QSignalSpy received(&transport, &RemoteTransport::received);
    QSignalSpy closed(&transport, &RemoteTransport::closed);
    const QByteArray good = json({{"id", 1}, {"result", QJsonObject{}}});
    const QByteArray stream =
        NativeFrames::frame(good) + NativeFrames::frame("[1, 2]") + NativeFrames::frame(good);
    // Split mid-length and mid-message, as a socket may deliver it.
    for (const QByteArray& part : {stream.left(2), stream.mid(2, 20), stream.mid(22)})
        ASSERT_EQ(::write(ends[1], part.constData(), size_t(part.size())), part.size());
    ASSERT_TRUE(pumpUntil([&] { return received.size() == 2; }, 5000));
    EXPECT_EQ(received.at(1).first().toByteArray(), good);
    const quint32 huge = 0x7fffffff;
    ASSERT_EQ(::write(ends[1], &huge, sizeof huge), qsizetype(sizeof huge));
    ASSERT_TRUE(pumpUntil([&] { return !closed.isEmpty(); }, 5000));
    EXPECT_TRUE(closed.first().first().toString().contains(u"more than"_s));
    ::close(ends[1]);
}

// Whether a process running as `uid` reaches the bar's socket, as far as being let in.
bool connectsAs(uid_t uid, const QString& path)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (::setgid(uid) != 0 || ::setuid(uid) != 0)
            ::_exit(2);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        ::strncpy(address.sun_path, path.toLocal8Bit().constData(), sizeof address.sun_path - 1);
        const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        const bool in = ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        ::sleep(1); // long enough for the bar to look at who it is
        ::_exit(in ? 0 : 1);
    }
    int status = 0;
    pumpUntil([&] { return ::waitpid(child, &status, WNOHANG) == child; }, 5000);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(NativeHost, AnotherUsersProcessCannotConnectEvenWhereTheFileWouldLetIt)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "being another user needs root";
    BarSocket socket;
    QSignalSpy arrived(&socket, &BarSocket::connected);
    socket.listen();
    const uid_t nobody = 65534;
    const QString path = BarSocket::path(); // asked once: asking sets the folder's mode again
    EXPECT_FALSE(connectsAs(nobody, path)) << "the file lets another user in";
    // Opened wide by mistake, the socket still turns the other user away.
    QFile::setPermissions(runtime.path(), QFileDevice::Permissions(0x7777));
    QFile::setPermissions(path, QFileDevice::Permissions(0x7777));
    EXPECT_TRUE(connectsAs(nobody, path));
    EXPECT_TRUE(arrived.isEmpty()) << "the bar took a connection of another user";
}
} // namespace

namespace {
// A browser's extension as the bar meets it, on a thread of its own (the bar's calls wait for
// their answers): one tab showing `url`, every call answered.
class ScriptedBrowser
{
public:
    ScriptedBrowser(const QString& path, QString url) : m_url(std::move(url))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        ::strncpy(address.sun_path, path.toLocal8Bit().constData(), sizeof address.sun_path - 1);
        m_fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        if (::connect(m_fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
            m_thread = std::thread([this] { serve(); });
    }
    ~ScriptedBrowser() { close(); }
    // The browser goes: its end of the connection closes.
    void close()
    {
        if (m_fd < 0)
            return;
        ::shutdown(m_fd, SHUT_RDWR);
        if (m_thread.joinable())
            m_thread.join();
        ::close(std::exchange(m_fd, -1));
    }

private:
    void serve()
    {
        NativeFrames::Reader reader;
        char buffer[4096];
        for (qsizetype got; (got = ::read(m_fd, buffer, sizeof buffer)) > 0;) {
            for (const QByteArray& message : reader.take(QByteArray(buffer, got))) {
                const QJsonObject call = QJsonDocument::fromJson(message).object();
                const QString method = call.value("method").toString();
                QJsonObject result;
                if (method == QLatin1String("browsingContext.getTree"))
                    result = {{"contexts", QJsonArray{QJsonObject{{"context", "tab"},
                                                                  {"url", m_url},
                                                                  {"children", QJsonArray{}}}}}};
                const QByteArray reply =
                    NativeFrames::frame(json({{"id", call.value("id")}, {"result", result}}));
                if (::write(m_fd, reply.constData(), size_t(reply.size())) != reply.size())
                    return;
            }
        }
    }

    QString m_url;
    int m_fd = -1;
    std::thread m_thread;
};

class Registrations : public ShellWindowEvents
{
public:
    void SW_WindowRegistered(int handle) override { registered.append(handle); }
    void SW_WindowRevoked(int handle) override { revoked.append(handle); }
    QList<int> registered;
    QList<int> revoked;
};

TEST_F(NativeHost, BrowsersConnectedAtOnceAreFollowedAsOneList)
{
    QStringList openedOnTheDesktop;
    ExtensionWindowList list([&](const QString& address) { openedOnTheDesktop.append(address); });
    auto events = std::make_shared<Registrations>();
    list.subscribe(events);
    const auto urls = [&] {
        QStringList shown;
        for (const BrowserPtr& window : list.items())
            shown.append(window->LocationURL());
        return shown;
    };
    EXPECT_TRUE(urls().isEmpty());

    ScriptedBrowser chromium(BarSocket::path(), u"http://a.example/"_s);
    ASSERT_TRUE(pumpUntil([&] { return urls().size() == 1; }, 5000));
    ScriptedBrowser firefox(BarSocket::path(), u"http://b.example/"_s);
    ASSERT_TRUE(pumpUntil([&] { return urls().size() == 2; }, 5000));
    EXPECT_EQ(urls(), (QStringList{u"http://a.example/"_s, u"http://b.example/"_s}));
    ASSERT_EQ(events->registered.size(), 2);
    EXPECT_NE(events->registered[0], events->registered[1]) << "two windows share a handle";

    // An address goes to the browser the desktop chose, whichever are connected.
    list.OpenAddress(u"http://a.example/next"_s);
    EXPECT_EQ(openedOnTheDesktop, QStringList{u"http://a.example/next"_s});

    // One goes: only its window closes.
    chromium.close();
    // The shell is told a window went, and finds which by walking the list.
    ASSERT_TRUE(pumpUntil([&] { return !events->revoked.isEmpty(); }, 5000));
    EXPECT_EQ(urls(), QStringList{u"http://b.example/"_s});
    // The next takes the place of the one that went, with handles of its own.
    ScriptedBrowser again(BarSocket::path(), u"http://c.example/"_s);
    ASSERT_TRUE(pumpUntil([&] { return urls().size() == 2; }, 5000));
    EXPECT_EQ(urls(), (QStringList{u"http://b.example/"_s, u"http://c.example/"_s}));
    EXPECT_EQ(events->registered.size(), 3);
    EXPECT_EQ(QSet<int>(events->registered.begin(), events->registered.end()).size(), 3);
    again.close();
    firefox.close();
    ASSERT_TRUE(pumpUntil([&] { return !list.isConnected(); }, 5000));
}
} // namespace
