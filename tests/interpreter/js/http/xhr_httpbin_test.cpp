#include "interpreter/js/http/exchange.h"
#include "interpreter/js/http/formdata.h"
#include "interpreter/js/http/xhr.h"
#include "support/network/childserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

using namespace Torvix;
using namespace TorvixTest;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

QJsonObject json(const XmlHttpRequest& http)
{
    return QJsonDocument::fromJson(http.response().toUtf8()).object();
}

std::string httpbinUrl(const ChildServer& server, const std::string& path)
{
    return "http://127.0.0.1:" + std::to_string(server.port()) + path;
}

} // namespace

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
