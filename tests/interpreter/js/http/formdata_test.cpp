#include "interpreter/js/http/formdata.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Torvix::FormData;

namespace {

QString entries(const FormData& form)
{
    QStringList texts;
    for (auto entry = form.constBegin(); entry != form.constEnd(); ++entry)
        texts += entry.key() + QLatin1Char('=') + entry.value();
    return texts.join(QLatin1Char('&'));
}

} // namespace

TEST(FormData, answersOldestFirstAndIteratesNewestFirst)
{
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    FormData form;
    EXPECT_FALSE(form.has(a));
    EXPECT_TRUE(form.get(a).isNull());
    EXPECT_TRUE(form.getAll(a).isEmpty());
    form.append(b, QStringLiteral("0"));
    for (const char* value : {"1", "2", "3"})
        form.append(a, QString::fromLatin1(value));
    EXPECT_EQ(form.get(a), QStringLiteral("1"));
    EXPECT_EQ(form.getAll(a), QStringList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));
    EXPECT_EQ(entries(form), QStringLiteral("a=3&a=2&a=1&b=0"));
    form.set(a, QString());
    EXPECT_TRUE(form.has(a));
    EXPECT_EQ(entries(form), QStringLiteral("a=&b=0"));
    form.remove(QStringLiteral("none"));
    form.remove(a);
    EXPECT_EQ(entries(form), QStringLiteral("b=0"));
}
