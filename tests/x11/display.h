#pragma once

#include <gtest/gtest.h>

#include <QProcess>

/**
 * An X display of their own for all tests of a program: Xvfb with a number that it chooses itself.
 * Applications that the tests start use it.
 */
class Display : public testing::Environment
{
public:
    void SetUp() override;
    void TearDown() override;

private:
    QProcess m_server;
};
