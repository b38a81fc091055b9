#include "x11/display.h"

void Display::SetUp()
{
    // The number is written to its standard output once it takes connections.
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                    QStringLiteral("0"), QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
                    QStringLiteral("tcp")});
    ASSERT_TRUE(m_server.waitForStarted()) << "Xvfb is not installed";
    QByteArray number;
    while (!number.endsWith('\n') && m_server.waitForReadyRead(20000))
        number += m_server.readAllStandardOutput();
    ASSERT_TRUE(number.endsWith('\n')) << m_server.readAllStandardError().constData();
    qputenv("DISPLAY", ":" + number.trimmed());
    qputenv("TORVIX_TEST_PLATFORM", "xcb");
}

void Display::TearDown()
{
    m_server.terminate();
    if (!m_server.waitForFinished(5000))
        m_server.kill();
    m_server.waitForFinished();
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::AddGlobalTestEnvironment(new Display);
    return RUN_ALL_TESTS();
}
