#include "interpreter/js/http/exchange.h"
#include "interpreter/js/http/formdata.h"
#include "interpreter/js/http/xhr.h"
#include "support/network/childserver.h"
#include "support/network/descriptors.h"
#include "support/network/rawserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>

#include <vector>

using namespace Torvix;
using namespace TorvixTest;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

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
