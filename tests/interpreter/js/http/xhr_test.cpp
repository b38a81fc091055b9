#include "interpreter/js/http/formdata.h"
#include "interpreter/js/http/xhr.h"
#include "support/network/childserver.h"
#include "support/network/descriptors.h"
#include "support/network/rawserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

#include <vector>

using namespace Torvix;
using namespace TorvixTest;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

QString text(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

/** open() and send() that have to succeed. */
void exchange(XmlHttpRequest& http, const char* method, const std::string& url, const QByteArray& data = {},
              const QString& user = {}, const QString& password = {})
{
    QString error = QStringLiteral("untouched");
    ASSERT_TRUE(http.open(QLatin1String(method), text(url), false, user, password, &error));
    ASSERT_TRUE(http.send(data, &error));
    EXPECT_EQ(error, QStringLiteral("untouched"));
    EXPECT_EQ(http.readyState(), XmlHttpRequest::Done);
}

QJsonObject json(const XmlHttpRequest& http)
{
    return QJsonDocument::fromJson(http.response().toUtf8()).object();
}

std::string httpbinUrl(const ChildServer& server, const std::string& path)
{
    return "http://127.0.0.1:" + std::to_string(server.port()) + path;
}

/** A server that answers every request with the same bytes and keeps the last request. */
class CannedServer
{
public:
    explicit CannedServer(std::string answer)
        : m_server([this, bytes = std::move(answer)](RawConnection& connection) {
            m_request = connection.readHttpRequest();
            connection.write(bytes);
        })
    {
    }
    std::string url(const std::string& path) const { return m_server.url(path); }
    std::string request()
    {
        m_server.waitForConnections(1);
        return m_request;
    }

private:
    std::string m_request;
    RawServer m_server;
};

const std::string emptyAnswer = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";

std::string answerWith(const std::string& headers, const std::string& body)
{
    return "HTTP/1.1 200 Fine\r\nConnection: close\r\n" + headers +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string redirectTo(const std::string& location)
{
    return "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " + location +
           "\r\n\r\n";
}

} // namespace

TEST(HttpRefusals, comeInOrderWithTheirTexts)
{
    XmlHttpRequest http;
    const QString none;
    const QString url = QStringLiteral("http://127.0.0.1:1/");
    const auto open = [&](const char* method, const QString& target, bool async) {
        QString error;
        return http.open(QLatin1String(method), target, async, none, none, &error) ? std::string("opened")
                                                                                   : error.toStdString();
    };
    QString error;
    EXPECT_EQ(open("NONSENSE", QString(), true), "Only synchronous open() calls supported");
    EXPECT_EQ(open("OPTIONS", QString(), false), "Unsupported request method");
    EXPECT_EQ(open("GET", QStringLiteral("http://[bad"), false), "Invalid URL");
    EXPECT_EQ(open("GET", QString(), false), "Invalid URL");
    EXPECT_EQ(http.readyState(), XmlHttpRequest::Unsent);
    EXPECT_FALSE(http.setRequestHeader("A", "b", &error));
    EXPECT_EQ(error, QStringLiteral("Cannot set header unless in OPENED state"));
    EXPECT_FALSE(http.send(QByteArray(), &error));
    EXPECT_EQ(error, QStringLiteral("Cannot send without prior open() call"));
    const FormData form;
    EXPECT_FALSE(http.send(&form, QByteArray(), nullptr));
    EXPECT_EQ(http.readyState(), XmlHttpRequest::Unsent);

    EXPECT_EQ(open("get", url, false), "opened");
    EXPECT_EQ(http.readyState(), XmlHttpRequest::Opened);
    EXPECT_TRUE(http.setRequestHeader("X-One", "1", &error));
    EXPECT_EQ(open("PATCH", url, false), "Unsupported request method");
    EXPECT_EQ(http.readyState(), XmlHttpRequest::Opened);
    EXPECT_EQ(http.requestHeader("x-one"), QStringLiteral("1"));
    EXPECT_TRUE(http.requestHeader("X-Two").isNull());
    EXPECT_EQ(http.status(), 0);
    EXPECT_TRUE(http.responseHeader("Date").isNull());

    EXPECT_FALSE(http.send(&form, QByteArray(), &error));
    EXPECT_EQ(error, QStringLiteral("Unsupported HTTP Method for sending FormData"));
    EXPECT_EQ(http.readyState(), XmlHttpRequest::Loading); // and no reply to ask
    EXPECT_EQ(http.status(), 0);
    EXPECT_TRUE(http.statusText().isEmpty());
    EXPECT_TRUE(http.response().isEmpty());
    EXPECT_TRUE(http.responseHeader("Date").isNull());
    EXPECT_TRUE(http.allResponseHeaders().isEmpty());
}

TEST(HttpAgainstHttpbin, sendsEveryMethodWithItsBody)
{
    ChildServer server;
    server.startPython("httpbin_server.py");
    XmlHttpRequest http;
    exchange(http, "get", httpbinUrl(server, "/get?q=1"));
    EXPECT_EQ(http.status(), 200);
    EXPECT_EQ(http.statusText(), "OK");
    EXPECT_EQ(json(http)[QStringLiteral("args")].toObject()[QStringLiteral("q")].toString(),
              QStringLiteral("1"));
    EXPECT_EQ(http.responseHeader("content-TYPE"), QStringLiteral("application/json"));
    EXPECT_THAT(http.allResponseHeaders().toStdString(), HasSubstr("Content-Type: application/json\r\n"));
    EXPECT_TRUE(http.responseHeader("X-None").isNull());

    const QString body = QString::fromUtf8("gr\xc3\xbc\xc3\x9f");
    for (const char* method : {"POST", "put"}) {
        exchange(http, method, httpbinUrl(server, std::string("/") + QByteArray(method).toLower().data()),
                 body.toUtf8());
        EXPECT_EQ(json(http)[QStringLiteral("data")].toString(), body) << method;
        EXPECT_EQ(json(http)[QStringLiteral("headers")].toObject()[QStringLiteral("Content-Type")].toString(),
                  QStringLiteral("text/plain;charset=UTF-8"));
    }
    exchange(http, "Delete", httpbinUrl(server, "/delete"), "not sent");
    EXPECT_EQ(http.status(), 200);
    EXPECT_EQ(json(http)[QStringLiteral("data")].toString(), QString());
    exchange(http, "HEAD", httpbinUrl(server, "/get"));
    EXPECT_EQ(http.status(), 200);
    EXPECT_GT(http.responseHeader("Content-Length").toInt(), 0);
    EXPECT_TRUE(http.response().isEmpty());
}

TEST(HttpAgainstHttpbin, showsStatusCodesAsTheyCome)
{
    ChildServer server;
    server.startPython("httpbin_server.py");
    XmlHttpRequest http;
    for (const int status : {200, 204, 400, 403, 404, 418, 500, 503}) {
        exchange(http, "GET", httpbinUrl(server, "/status/" + std::to_string(status)));
        EXPECT_EQ(http.status(), status);
    }
    exchange(http, "GET", httpbinUrl(server, "/status/404"));
    EXPECT_EQ(http.statusText(), "NOT FOUND");
    exchange(http, "GET", httpbinUrl(server, "/xml"));
    EXPECT_THAT(http.responseText().toStdString(), StartsWith("<?xml"));
    http.abort();
    EXPECT_EQ(http.readyState(), XmlHttpRequest::Unsent);
    EXPECT_EQ(http.status(), 0);
    EXPECT_TRUE(http.statusText().isEmpty() && http.response().isEmpty() &&
                http.allResponseHeaders().isEmpty());
}

TEST(HttpAgainstHttpbin, decodesChunkedCompressedAndSlowBodies)
{
    ChildServer server;
    server.startPython("httpbin_server.py");
    XmlHttpRequest http;
    exchange(http, "GET", httpbinUrl(server, "/stream/5"));
    EXPECT_EQ(http.response().count(QLatin1Char('\n')), 5);
    for (const char* coding : {"gzip", "deflate"}) {
        exchange(http, "GET", httpbinUrl(server, std::string("/") + coding));
        EXPECT_TRUE(
            json(http).contains(QLatin1String(coding == std::string("gzip") ? "gzipped" : "deflated")));
    }
    exchange(http, "GET", httpbinUrl(server, "/drip?duration=1&numbytes=5&delay=0"));
    EXPECT_EQ(http.response(), QStringLiteral("*****"));
}

TEST(HttpAgainstHttpbin, authenticatesAndKeepsCookiesReadable)
{
    ChildServer server;
    server.startPython("httpbin_server.py");
    XmlHttpRequest http;
    const std::string secret = httpbinUrl(server, "/basic-auth/me/pass:word");
    exchange(http, "GET", secret, {}, QStringLiteral("me"), QStringLiteral("pass:word"));
    EXPECT_EQ(http.status(), 200);
    exchange(http, "GET", secret, {}, QStringLiteral("me"), QStringLiteral("wrong"));
    EXPECT_EQ(http.status(), 401);
    exchange(http, "GET", secret, {}, QString(), QStringLiteral("pass:word"));
    EXPECT_EQ(http.status(), 401);
    exchange(http, "GET", httpbinUrl(server, "/response-headers?X-Several=1&X-Several=2&X-Empty="));
    EXPECT_EQ(http.responseHeader("x-several"), QStringLiteral("1, 2"));
    EXPECT_FALSE(http.responseHeader("X-Empty").isNull());
    EXPECT_EQ(http.responseHeader("X-Empty"), QString());
    exchange(http, "GET", httpbinUrl(server, "/cookies/set?one=1&two=2")); // a relative redirect
    EXPECT_EQ(http.status(), 302);
    EXPECT_EQ(http.responseHeader("set-cookie"), QStringLiteral("one=1; Path=/, two=2; Path=/"));
    EXPECT_THAT(http.allResponseHeaders().toStdString(),
                HasSubstr("Set-Cookie: one=1; Path=/\r\nSet-Cookie: two=2; Path=/\r\n"));
}

TEST(HttpAgainstHttpbin, sendsFormsThatTheServerUnderstands)
{
    ChildServer server;
    server.startPython("httpbin_server.py");
    FormData form;
    form.append(QStringLiteral("b"), QString::fromUtf8("gr\xc3\xbc\xc3\x9f\r\nzwei"));
    form.append(QStringLiteral("a"), QStringLiteral("1"));
    form.append(QStringLiteral("a"), QStringLiteral("2"));
    XmlHttpRequest http;
    QString error;
    for (const char* method : {"POST", "PUT"}) {
        for (const QByteArray& boundary : {QByteArray(), QByteArray("my-own-boundary")}) {
            const std::string url =
                httpbinUrl(server, std::string("/") + QByteArray(method).toLower().data());
            ASSERT_TRUE(http.open(QLatin1String(method), text(url), false, QString(), QString(), &error));
            ASSERT_TRUE(http.setRequestHeader("Content-Type", "multipart/form-data", &error));
            ASSERT_TRUE(http.send(&form, boundary, &error));
            EXPECT_EQ(http.readyState(), XmlHttpRequest::Done);
            EXPECT_EQ(http.status(), 200);
            const QJsonObject fields = json(http)[QStringLiteral("form")].toObject();
            EXPECT_EQ(fields[QStringLiteral("b")].toString(),
                      QString::fromUtf8("gr\xc3\xbc\xc3\x9f\r\nzwei"));
            EXPECT_EQ(fields[QStringLiteral("a")].toVariant().toStringList(),
                      QStringList({QStringLiteral("2"), QStringLiteral("1")}));
        }
    }
}

TEST(HttpForms, goOutSortedWithTheGivenBoundary)
{
    CannedServer server(redirectTo("http://127.0.0.1:1/never"));
    FormData form;
    form.append(QStringLiteral("z"), QStringLiteral("last"));
    form.append(QStringLiteral("a\"b"), QStringLiteral("old"));
    form.append(QStringLiteral("a\"b"), QStringLiteral("new"));
    XmlHttpRequest http;
    QString error;
    ASSERT_TRUE(
        http.open(QStringLiteral("POST"), text(server.url("/form")), false, QString(), QString(), &error));
    ASSERT_TRUE(http.setRequestHeader("Content-Type", "multipart/form-data", &error));
    ASSERT_TRUE(http.send(&form, "xyz", &error));
    EXPECT_EQ(http.status(), 302); // forms follow no redirect
    const std::string request = server.request();
    EXPECT_THAT(request, HasSubstr("\r\nContent-Type: multipart/form-data; boundary=\"xyz\"\r\n"));
    EXPECT_THAT(request,
                EndsWith("\r\n\r\n--xyz\r\nContent-Disposition: form-data; name=\"a\"b\"\r\n\r\nnew\r\n"
                         "--xyz\r\nContent-Disposition: form-data; name=\"a\"b\"\r\n\r\nold\r\n"
                         "--xyz\r\nContent-Disposition: form-data; name=\"z\"\r\n\r\nlast\r\n--xyz--\r\n"));
}

TEST(HttpRequests, carryTheirHeaders)
{
    struct Case
    {
        const char* method;
        const char* contentType; // as set by the caller, or null
        const char* expected;
    };
    for (const Case& one : {Case{"POST", nullptr, "\r\nContent-Type: text/plain;charset=UTF-8\r\n"},
                            {"PUT", nullptr, "\r\nContent-Type: text/plain;charset=UTF-8\r\n"},
                            {"POST", "application/json", "\r\nContent-Type: application/json\r\n"},
                            {"GET", nullptr, nullptr}}) {
        CannedServer server(emptyAnswer);
        XmlHttpRequest http;
        QString error;
        ASSERT_TRUE(http.open(QLatin1String(one.method), text(server.url("/a b?c=d#e")), false,
                              QStringLiteral("alone"), QString(), &error));
        if (one.contentType) {
            http.setRequestHeader("content-type", one.contentType, &error);
        }
        http.setRequestHeader("X-Twice", "first", &error);
        http.setRequestHeader("X-Twice", "second", &error);
        ASSERT_TRUE(http.send("data", &error));
        EXPECT_EQ(http.status(), 200);
        const std::string request = server.request();
        EXPECT_THAT(request, StartsWith(std::string(one.method) + " /a%20b?c=d HTTP/1.1\r\n"));
        EXPECT_THAT(request, HasSubstr("\r\nAuthorization: Basic YWxvbmU6\r\n")); // "alone:"
        EXPECT_THAT(request, HasSubstr("\r\nX-Twice: second\r\n"));
        if (one.expected) {
            EXPECT_THAT(
                QByteArray::fromStdString(request).replace("content-type", "Content-Type").toStdString(),
                HasSubstr(one.expected));
        } else {
            EXPECT_THAT(request, Not(HasSubstr("Content-Type")));
        }
        EXPECT_TRUE(http.requestHeader("X-Twice").isNull()); // dropped with the exchange
    }
}

TEST(HttpRequests, needANewOpenForEachExchange)
{
    NginxServer server("location / { }", {{"page.txt", "from the page"}});
    XmlHttpRequest http;
    exchange(http, "GET", server.url("/page.txt"));
    EXPECT_EQ(http.response(), QStringLiteral("from the page"));
    EXPECT_TRUE(http.send(QByteArray(), nullptr)); // state 4 passes, but there is no URL any more
    EXPECT_EQ(http.status(), 0);
    EXPECT_TRUE(http.response().isEmpty());
    exchange(http, "GET", server.url("/none.txt"));
    EXPECT_EQ(http.status(), 404);
    EXPECT_EQ(http.statusText(), "Not Found");
    EXPECT_THAT(http.response().toStdString(), HasSubstr("nginx"));
}

TEST(HttpRequests, shareOneConnection)
{
    NginxServer server("location / { return 200 $connection_requests; }");
    XmlHttpRequest http;
    for (int i = 1; i <= 20; ++i) {
        exchange(http, "GET", server.url("/"));
        EXPECT_EQ(http.response().toInt(), i);
    }
}

TEST(HttpRedirects, areFollowedWithMethodAndData)
{
    NginxServer server(
        "location = /301 { return 301 http://$http_host/308; }\n"
        "location = /308 { return 308 http://$http_host/echo; }\n"
        "location = /relative { absolute_redirect off; return 302 /echo; }\n"
        "location = /created { add_header Location http://$http_host/echo always; return 201; }\n"
        "location = /error { add_header Location http://$http_host/echo always; return 503 down; }\n"
        "location = /echo { return 200 \"$request_method $content_length $http_x_mine\"; }\n");
    XmlHttpRequest http;
    QString error;
    for (const char* path : {"/301", "/created"}) {
        ASSERT_TRUE(
            http.open(QStringLiteral("POST"), text(server.url(path)), false, QString(), QString(), &error));
        http.setRequestHeader("X-Mine", "kept", &error);
        ASSERT_TRUE(http.send("seven b", &error));
        EXPECT_EQ(http.status(), 200);
        EXPECT_EQ(http.response(), QStringLiteral("POST 7 kept")) << path;
    }
    exchange(http, "GET", server.url("/relative"));
    EXPECT_EQ(http.status(), 302);
    exchange(http, "GET", server.url("/error"));
    EXPECT_EQ(http.status(), 503);
    EXPECT_EQ(http.response(), QStringLiteral("down"));
}

TEST(HttpRedirects, haveNoLimitAndNoLoopCheck)
{
    int rounds = 0;
    RawServer server([&](RawConnection& connection) {
        connection.readHttpRequest();
        const std::string host = "http://127.0.0.1:" + std::to_string(server.port());
        connection.write(++rounds <= 150 ? redirectTo(host + (rounds % 2 ? "/b" : "/a"))
                                         : answerWith("", "out"));
    });
    XmlHttpRequest http;
    exchange(http, "GET", server.url("/a"));
    EXPECT_EQ(rounds, 151);
    EXPECT_EQ(http.status(), 200);
    EXPECT_EQ(http.response(), QStringLiteral("out"));
}

TEST(HttpRedirects, neverLeaveHttp)
{
    CannedServer server(redirectTo("file:///etc/hostname"));
    XmlHttpRequest http;
    exchange(http, "GET", server.url("/"));
    EXPECT_EQ(http.status(), 302);
    EXPECT_TRUE(http.response().isEmpty());
}

TEST(HttpBodies, areReadAsTheyStandOnTheWire)
{
    struct Case
    {
        std::string answer;
        QString response;
    };
    const std::vector<Case> cases = {
        {answerWith("", std::string("before\0after", 12)), QStringLiteral("before")},
        {answerWith("", "gr\xc3\xbc\xc3\x9f"), QString::fromUtf8("gr\xc3\xbc\xc3\x9f")},
        {answerWith("", ""), QString()},
        {"HTTP/1.0 200 OK\r\n\r\nuntil the end", QStringLiteral("until the end")},
        {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nConnection: close\r\n\r\n4\r\nin p\r\n5;x=y\r\n"
         "ieces\r\n0\r\n\r\n",
         QStringLiteral("in pieces")}};
    for (const Case& one : cases) {
        CannedServer server(one.answer);
        XmlHttpRequest http;
        exchange(http, "GET", server.url("/"));
        EXPECT_EQ(http.status(), 200);
        EXPECT_EQ(http.response(), one.response);

        RawServer slow([&one](RawConnection& connection) {
            connection.readHttpRequest();
            connection.writeBytewise(one.answer);
        });
        exchange(http, "GET", slow.url("/"));
        EXPECT_EQ(http.status(), 200);
        EXPECT_EQ(http.response(), one.response) << "byte by byte";
    }
    CannedServer latin1(answerWith("X-Name: gr\xfc\xdf\r\nx-name: two\r\n", ""));
    XmlHttpRequest http;
    exchange(http, "GET", latin1.url("/"));
    EXPECT_EQ(http.statusText(), "Fine");
    EXPECT_EQ(http.responseHeader("X-NAME"), QString::fromUtf8("gr\xc3\xbc\xc3\x9f, two"));
}

TEST(HttpFailures, endTheExchangeWithStatusZero)
{
    const Listener refusing(Listener::State::BoundOnly);
    RawServer closing([](RawConnection& connection) { connection.readHttpRequest(); });
    RawServer resetting([](RawConnection& connection) {
        connection.readHttpRequest();
        connection.reset();
    });
    CannedServer babbling("this is not HTTP at all\r\n\r\n");
    NginxServer dropping("location / { return 444; }");
    for (const std::string& url :
         {"http://127.0.0.1:" + std::to_string(refusing.port()) + "/", closing.url("/"), resetting.url("/"),
          babbling.url("/"), dropping.url("/"), std::string("http://no-such-host.invalid/"),
          std::string("nonsense://127.0.0.1/")}) {
        XmlHttpRequest http;
        exchange(http, "GET", url);
        EXPECT_EQ(http.status(), 0) << url;
        EXPECT_TRUE(http.statusText().isEmpty());
        EXPECT_TRUE(http.response().isEmpty());
        EXPECT_TRUE(http.responseHeader("Date").isNull());
    }
}

TEST(HttpFailures, keepWhatCameOfABrokenBody)
{
    const std::string head = "HTTP/1.1 200 OK\r\n";
    for (const std::string& answer : {head + "Content-Length: 100\r\n\r\nonly a part",
                                      head + "Transfer-Encoding: chunked\r\n\r\nb\r\nonly a part"}) {
        CannedServer server(answer);
        XmlHttpRequest http;
        exchange(http, "GET", server.url("/"));
        EXPECT_EQ(http.status(), 200);
        EXPECT_EQ(http.response(), QStringLiteral("only a part"));
    }
}

TEST(HttpWaiting, runsTheEventLoopAndSurvivesASendFromIt)
{
    ChildServer server;
    server.startPython("httpbin_server.py");
    XmlHttpRequest http;
    QString error;
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(10);
    exchange(http, "GET", httpbinUrl(server, "/delay/1"));
    EXPECT_EQ(http.status(), 200);
    EXPECT_GT(ticks, 5);

    QTimer::singleShot(50, [&] {
        EXPECT_EQ(http.readyState(), XmlHttpRequest::Loading);
        EXPECT_EQ(http.status(), 0);
        exchange(http, "GET", httpbinUrl(server, "/status/418"));
    });
    QElapsedTimer elapsed;
    elapsed.start();
    exchange(http, "GET", httpbinUrl(server, "/delay/5"));
    EXPECT_LT(elapsed.elapsed(), 4000); // the outer exchange was given up for the inner one
    EXPECT_EQ(http.status(), 418);
}

TEST(HttpResources, leaveNoDescriptorOpen)
{
    NginxServer server("location / { }", {{"page.txt", "x"}});
    const Listener refusing(Listener::State::BoundOnly);
    const auto several = [&](int count) {
        FormData form;
        form.append(QStringLiteral("k"), QStringLiteral("v"));
        for (int i = 0; i < count; ++i) {
            XmlHttpRequest http;
            exchange(http, "GET", server.url("/page.txt"));
            exchange(http, "GET", "http://127.0.0.1:" + std::to_string(refusing.port()) + "/");
            http.open(QStringLiteral("PUT"), text(server.url("/")), false, QString(), QString(), nullptr);
            http.send(&form, QByteArray(), nullptr);
            EXPECT_EQ(http.status(), 405);
        }
        QCoreApplication::processEvents();
    };
    several(1); // what Qt opens once for the process
    const int before = openDescriptors();
    several(10);
    EXPECT_EQ(openDescriptors(), before);
}

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
