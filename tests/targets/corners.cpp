#include "corners.h"

#include <QApplication>
#include <QCompleter>
#include <QDrag>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QGraphicsProxyWidget>
#include <QGraphicsView>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <atomic>

void DragSource::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->pos();
}

void DragSource::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton) ||
        (event->pos() - m_pressed).manhattanLength() < QApplication::startDragDistance())
        return;
    auto* drag = new QDrag(this);
    auto* cargo = new QMimeData;
    cargo->setText(text());
    drag->setMimeData(cargo);
    drag->exec(Qt::CopyAction);
}

static std::atomic<bool> workerTouched{false};

int Worker::rounds() const
{
    if (QThread::currentThread() != thread())
        workerTouched = true;
    return 1;
}

bool Worker::wasTouchedFromOutside()
{
    return workerTouched;
}

Corners::Corners() : m_worker(new Worker)
{
    setObjectName(QStringLiteral("corners"));
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(makeDragging());
    layout->addWidget(makePopups());
    layout->addWidget(makeScene());
    setCentralWidget(page);
    makeToolBar();
    m_worker->setObjectName(QStringLiteral("worker"));
    m_worker->moveToThread(&m_thread);
    m_thread.start();
    resize(500, 600);
}

Corners::~Corners()
{
    endWorker();
}

void Corners::endWorker()
{
    if (m_worker)
        m_worker->deleteLater();
    m_worker = nullptr;
    m_thread.quit();
    m_thread.wait();
}

void Corners::addNote(const QString& line)
{
    m_log += line + QLatin1Char('\n');
}

QWidget* Corners::makeDragging()
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    auto* source = new DragSource(QStringLiteral("cargo"), row);
    source->setObjectName(QStringLiteral("source"));
    auto* sink = new QLabel(QStringLiteral("drop here"), row);
    sink->setObjectName(QStringLiteral("sink"));
    sink->setAcceptDrops(true);
    sink->installEventFilter(this);
    sink->setMinimumHeight(60);
    layout->addWidget(source);
    layout->addWidget(sink);
    return row;
}

QWidget* Corners::makePopups()
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    for (const char* name : {"left", "right"}) {
        auto* label = new QLabel(QString::fromLatin1(name), row);
        label->setObjectName(QString::fromLatin1(name));
        label->setToolTip(QStringLiteral("tip of ") + QString::fromLatin1(name));
        layout->addWidget(label);
    }
    auto* edit = new QLineEdit(row);
    edit->setObjectName(QStringLiteral("completed"));
    edit->setCompleter(
        new QCompleter({QStringLiteral("apple"), QStringLiteral("apricot"), QStringLiteral("pear")}, edit));
    layout->addWidget(edit);
    auto* open = new QPushButton(QStringLiteral("Open file"), row);
    open->setObjectName(QStringLiteral("openFile"));
    connect(open, &QPushButton::clicked, this, [this] {
        addNote(QStringLiteral("file ") +
                QFileDialog::getOpenFileName(this, QStringLiteral("Open"), QStringLiteral("/etc")));
    });
    layout->addWidget(open);
    row->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(row, &QWidget::customContextMenuRequested, this, [this, row] {
        // As many do it: what is meant is found by where the pointer is now.
        const QWidget* under = row->childAt(row->mapFromGlobal(QCursor::pos()));
        QMenu menu(row);
        menu.setObjectName(QStringLiteral("contextMenu"));
        menu.addAction(QStringLiteral("Copy"));
        menu.addAction(QStringLiteral("Paste"));
        const QAction* chosen = menu.exec(QCursor::pos());
        addNote(QStringLiteral("menu %1 on %2")
                    .arg(chosen ? chosen->text() : QString(), under ? under->objectName() : QString()));
    });
    return row;
}

QGraphicsView* Corners::makeScene()
{
    auto* view = new QGraphicsView(this);
    view->setObjectName(QStringLiteral("view"));
    auto* scene = new QGraphicsScene(0, 0, 2000, 2000);
    connect(this, &QObject::destroyed, scene, &QObject::deleteLater);
    auto* box = scene->addRect(20, 20, 60, 40, QPen(), Qt::red);
    box->setFlag(QGraphicsItem::ItemIsSelectable);
    auto* text = scene->addText(QStringLiteral("far away"));
    text->setObjectName(QStringLiteral("farText"));
    text->setPos(1500, 1500);
    text->setFlag(QGraphicsItem::ItemIsSelectable);
    auto* button = new QPushButton(QStringLiteral("In the scene"));
    button->setObjectName(QStringLiteral("sceneButton"));
    connect(button, &QPushButton::clicked, this, [this] { addNote(QStringLiteral("scene button")); });
    scene->addWidget(button)->setPos(900, 900);
    view->setScene(scene);
    return view;
}

void Corners::makeToolBar()
{
    auto* bar = addToolBar(QStringLiteral("Many"));
    bar->setObjectName(QStringLiteral("toolBar"));
    for (int i = 0; i < 30; ++i) {
        const QString text = QStringLiteral("Tool %1").arg(i);
        connect(bar->addAction(text), &QAction::triggered, this, [this, text] { addNote(text); });
    }
}

bool Corners::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::DragEnter) {
        static_cast<QDragEnterEvent*>(event)->acceptProposedAction();
        return true;
    }
    if (event->type() == QEvent::Drop) {
        auto* drop = static_cast<QDropEvent*>(event);
        addNote(QStringLiteral("dropped %1").arg(drop->mimeData()->text()));
        drop->acceptProposedAction();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void Corners::storm(int count)
{
    auto* timer = new QTimer(this);
    timer->setProperty("turns", 0);
    connect(timer, &QTimer::timeout, this, [this, timer, count] {
        for (int i = 0; i < count; ++i) {
            auto* made = new QWidget(this);
            made->setObjectName(QStringLiteral("stormy"));
            made->deleteLater();
        }
        timer->setProperty("turns", timer->property("turns").toInt() + 1);
        if (timer->property("turns").toInt() < 20)
            return;
        addNote(QStringLiteral("storm over"));
        timer->deleteLater();
    });
    timer->start(0);
}

void Corners::openLateWindow(int delayMs)
{
    QTimer::singleShot(delayMs, this, [this] {
        auto* window = new QWidget;
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->setObjectName(QStringLiteral("lateWindow"));
        auto* button = new QPushButton(QStringLiteral("Late"), window);
        button->setObjectName(QStringLiteral("lateButton"));
        connect(button, &QPushButton::clicked, this, [this] { addNote(QStringLiteral("late button")); });
        window->resize(200, 100);
        window->show();
    });
}

void Corners::startProgram(const QString& program)
{
    auto* process = new QProcess(this);
    process->start(program, QStringList());
}

int Corners::deleteWhileCalled(QObject* object)
{
    QEventLoop loop;
    object->deleteLater();
    QTimer::singleShot(50, &loop, &QEventLoop::quit);
    loop.exec();
    return 7;
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("torvixcorners"));
    if (QCoreApplication::arguments().contains(QStringLiteral("--right-to-left")))
        QApplication::setLayoutDirection(Qt::RightToLeft);
    // A test may delete it.
    const QPointer<Corners> window(new Corners);
    window->show();
    const int status = QApplication::exec();
    delete window.data();
    return status;
}
