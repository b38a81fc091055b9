#include "protocol/applicationmessages.h"
#include "protocol/token.h"

#include <gtest/gtest.h>

namespace {

using namespace Torvix::Protocol;

TEST(Token, IsRandomAndHasATextForm)
{
    const QByteArray token = makeToken();
    EXPECT_EQ(tokenSize, token.size());
    EXPECT_NE(token, makeToken());
    EXPECT_EQ(token, tokenFromText(' ' + tokenToText(token).toUpper() + '\n'));
    for (const QByteArray& bad :
         {QByteArray(), QByteArray(31, 'a'), QByteArray(33, 'a'), QByteArray(32, 'g')})
        EXPECT_TRUE(tokenFromText(bad).isEmpty()) << bad.constData();
}

TEST(Token, OnlyTheSameIsTheSame)
{
    const QByteArray token = makeToken();
    EXPECT_TRUE(sameToken(token, QByteArray(token.constData(), token.size())));
    for (int i = 0; i < tokenSize; ++i) {
        QByteArray other = token;
        other[i] = char(other[i] ^ 1);
        EXPECT_FALSE(sameToken(token, other)) << i;
    }
    EXPECT_FALSE(sameToken(token, token.left(15)));
    EXPECT_FALSE(sameToken(token, token + 'x'));
    EXPECT_FALSE(sameToken(QByteArray(), QByteArray())) << "no secret lets nobody in";
}

TEST(Hello, LetsInOnlyTheRightPartWithTheRightToken)
{
    const QByteArray token = makeToken();
    Hello good;
    good.role = Role::Agent;
    good.token = token;
    const auto check = [&](const Hello& shown, bool* tell, const QByteArray& expected) {
        Hello seen;
        return checkHello({FrameKind::Hello, 0, 0, encode(shown)}, expected, Role::Agent, &seen, tell);
    };
    bool tell = true;
    EXPECT_EQ(QString(), check(good, &tell, token));
    EXPECT_FALSE(tell);

    Hello wrong = good;
    wrong.token = makeToken();
    EXPECT_TRUE(check(wrong, &tell, token).contains(QStringLiteral("token")));
    EXPECT_FALSE(tell) << "a stranger learns nothing";
    wrong.token.clear();
    EXPECT_TRUE(check(wrong, &tell, token).contains(QStringLiteral("token")));
    EXPECT_EQ(QString(), check(wrong, &tell, QByteArray())) << "the side that listens shows none";
    wrong = good;
    wrong.role = Role::Runner;
    EXPECT_TRUE(check(wrong, &tell, token).contains(QStringLiteral("agent")));
    wrong = good;
    wrong.magic = QStringLiteral("other");
    EXPECT_NE(QString(), check(wrong, &tell, token));
    wrong = good;
    wrong.minor = 99;
    EXPECT_EQ(QString(), check(wrong, &tell, token));
    wrong.major = majorVersion + 1;
    EXPECT_TRUE(check(wrong, &tell, token).contains(QStringLiteral("2.99")));
    EXPECT_TRUE(tell);

    Hello seen;
    EXPECT_NE(QString(), checkHello(requestFrame(1, Ping()), token, Role::Agent, &seen, &tell));
}

} // namespace
