#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QThread>

class QGraphicsView;

/** Can be dragged: its text. */
class DragSource : public QLabel
{
    Q_OBJECT
public:
    using QLabel::QLabel;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    QPoint m_pressed;
};

/** An object at work in a thread of its own; whoever reads it from another one is noticed. */
class Worker : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int rounds READ rounds)
public:
    int rounds() const;
    static bool wasTouchedFromOutside();
};

/** What applications have beside forms: a scene, drags, pop-ups, threads, windows that come late. */
class Corners : public QMainWindow
{
    Q_OBJECT
    /** What happened, a line each. */
    Q_PROPERTY(QString log READ log)
    Q_PROPERTY(QObject* worker READ worker)
    Q_PROPERTY(bool workerTouched READ workerTouched)
public:
    Corners();
    ~Corners() override;
    QString log() const { return m_log; }
    QObject* worker() const { return m_worker; }
    bool workerTouched() const { return Worker::wasTouchedFromOutside(); }

    /** Makes that many objects and deletes them later, in each of twenty turns. */
    Q_INVOKABLE void storm(int count);
    Q_INVOKABLE void openLateWindow(int delayMs);
    Q_INVOKABLE void endWorker();
    Q_INVOKABLE void startProgram(const QString& program);
    /** As an application does to read its own program: twenty turns of an event loop, then its end. */
    Q_INVOKABLE int deleteWhileCalled(QObject* object);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addNote(const QString& line);
    QWidget* makeDragging();
    QWidget* makePopups();
    QGraphicsView* makeScene();
    void makeToolBar();

    QString m_log;
    QThread m_thread;
    Worker* m_worker = nullptr;
};
