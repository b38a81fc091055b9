#pragma once

#include "interpreter/js/http/xhr.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

#include <string>

namespace TorvixTest {

inline QString text(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

/** open() and send() that have to succeed. */
inline void exchange(Torvix::XmlHttpRequest& http, const char* method, const std::string& url,
                     const QByteArray& data = {}, const QString& user = {}, const QString& password = {})
{
    QString error = QStringLiteral("untouched");
    ASSERT_TRUE(http.open(QLatin1String(method), text(url), false, user, password, &error));
    ASSERT_TRUE(http.send(data, &error));
    EXPECT_EQ(error, QStringLiteral("untouched"));
    EXPECT_EQ(http.readyState(), Torvix::XmlHttpRequest::Done);
}

} // namespace TorvixTest
