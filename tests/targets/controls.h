#pragma once

#include <QLabel>
#include <QObject>
#include <QPointer>
#include <QWidget>

/**
 * What a test asks of the target while it runs: `control` in the object tree, its slots called through
 * the agent or its buttons clicked.
 */
class Controls : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int clicks MEMBER m_clicks)
    Q_PROPERTY(QString log READ log)

public:
    explicit Controls(QWidget* parent = nullptr);
    QString log() const;

public Q_SLOTS:
    void openModal();
    void appearLater(int delayMs);
    void deleteLaterLabel();
    void makeTree(int count);
    void dropTree();
    void churn(int count);
    void block(int milliseconds);
    void blockLater(int milliseconds);
    void quitLater(int delayMs);
    void exitNow(int status);
    void crash();
    void clearLog();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* addButton(const QString& name, const QString& text);

    int m_clicks = 0;
    QStringList m_log;
    QPointer<QObject> m_tree;
    QPointer<QLabel> m_late;
    int m_churned = 0;
};

/** A label that shows where the mouse and keyboard events went, in one line each. */
class EventPad : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(QString seen READ seen)

public:
    explicit EventPad(QWidget* parent = nullptr);
    QString seen() const { return m_seen.join(QLatin1Char('\n')); }

public Q_SLOTS:
    void forget() { m_seen.clear(); }

protected:
    bool event(QEvent* event) override;

private:
    QStringList m_seen;
};
