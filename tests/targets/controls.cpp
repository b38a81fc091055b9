#include "controls.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <cstdlib>

Controls::Controls(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("control"));
    auto* layout = new QVBoxLayout(this);
    for (const char* name : {"count", "modal", "disabled"})
        layout->addWidget(
            addButton(QString::fromLatin1(name), QStringLiteral("&Do ") + QString::fromLatin1(name)));
    findChild<QPushButton*>(QStringLiteral("disabled"))->setEnabled(false);
    connect(findChild<QPushButton*>(QStringLiteral("count")), &QPushButton::clicked, this,
            [this] { ++m_clicks; });
    connect(findChild<QPushButton*>(QStringLiteral("modal")), &QPushButton::clicked, this,
            &Controls::openModal);
    auto* label = new QLabel(QStringLiteral("&Name:"), this);
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QStringLiteral("nameEdit"));
    label->setBuddy(edit);
    layout->addWidget(label);
    layout->addWidget(edit);
    layout->addWidget(new EventPad(this));
}

QWidget* Controls::addButton(const QString& name, const QString& text)
{
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    button->installEventFilter(this);
    return button;
}

QString Controls::log() const
{
    return m_log.join(QLatin1Char('\n'));
}

void Controls::clearLog()
{
    m_log.clear();
}

bool Controls::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        m_log.append(QStringLiteral("%1 %2 button %3 modifiers %4 at %5,%6 spontaneous %7")
                         .arg(watched->objectName(), event->type() == QEvent::MouseButtonPress
                                                         ? QStringLiteral("press")
                                                         : QStringLiteral("release"))
                         .arg(mouse->button())
                         .arg(int(mouse->modifiers()))
                         .arg(mouse->x())
                         .arg(mouse->y())
                         .arg(event->spontaneous()));
    }
    return QWidget::eventFilter(watched, event);
}

void Controls::openModal()
{
    QDialog dialog(this);
    dialog.setObjectName(QStringLiteral("modalDialog"));
    dialog.setWindowTitle(QStringLiteral("A modal dialog"));
    auto* layout = new QVBoxLayout(&dialog);
    auto* edit = new QLineEdit(&dialog);
    edit->setObjectName(QStringLiteral("modalEdit"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    layout->addWidget(edit);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    m_log.append(accepted ? QStringLiteral("accepted %1").arg(edit->text()) : QStringLiteral("rejected"));
}

void Controls::appearLater(int delayMs)
{
    QTimer::singleShot(delayMs, this, [this] {
        m_late = new QLabel(QStringLiteral("late"), this);
        m_late->setObjectName(QStringLiteral("lateLabel"));
        layout()->addWidget(m_late);
        m_late->show();
    });
}

void Controls::deleteLaterLabel()
{
    delete m_late;
}

void Controls::makeTree(int count)
{
    dropTree();
    m_tree = new QObject(this);
    m_tree->setObjectName(QStringLiteral("tree"));
    QObject* branch = nullptr;
    for (int i = 0; i < count; ++i) {
        if (i % 100 == 0)
            branch = new QObject(m_tree);
        auto* leaf = new QTimer(branch);
        leaf->setObjectName(QStringLiteral("leaf%1").arg(i));
        leaf->setInterval(i);
    }
}

void Controls::dropTree()
{
    delete m_tree;
}

void Controls::churn(int count)
{
    m_churned = 0;
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this, timer, count] {
        for (int i = 0; i < 10; ++i) {
            auto* made = new QLabel(QStringLiteral("churn %1").arg(m_churned), this);
            made->setObjectName(QStringLiteral("churned"));
            if (m_churned++ % 2 == 0)
                delete made;
            else
                made->deleteLater();
        }
        if (m_churned >= count) {
            m_log.append(QStringLiteral("churned"));
            timer->deleteLater();
        }
    });
    timer->start(1);
}

void Controls::block(int milliseconds)
{
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}

void Controls::blockLater(int milliseconds)
{
    QTimer::singleShot(0, this, [this, milliseconds] { block(milliseconds); });
}

void Controls::quitLater(int delayMs)
{
    QTimer::singleShot(delayMs, qApp, &QCoreApplication::quit);
}

void Controls::exitNow(int status)
{
    std::_Exit(status);
}

void Controls::crash()
{
    std::abort();
}

EventPad::EventPad(QWidget* parent) : QLabel(QStringLiteral("pad"), parent)
{
    setObjectName(QStringLiteral("pad"));
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(200, 80);
}

bool EventPad::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        static const QMap<int, QString> names = {{QEvent::MouseButtonPress, QStringLiteral("press")},
                                                 {QEvent::MouseButtonRelease, QStringLiteral("release")},
                                                 {QEvent::MouseButtonDblClick, QStringLiteral("double")},
                                                 {QEvent::MouseMove, QStringLiteral("move")}};
        m_seen.append(
            QStringLiteral("%1 %2 %3 %4,%5")
                .arg(names.value(event->type()))
                .arg(int(event->type() == QEvent::MouseMove ? int(mouse->buttons()) : int(mouse->button())))
                .arg(int(mouse->modifiers()) >> 24)
                .arg(mouse->x())
                .arg(mouse->y()));
        return true;
    }
    case QEvent::Wheel: {
        const auto* wheel = static_cast<QWheelEvent*>(event);
        m_seen.append(
            QStringLiteral("wheel %1,%2").arg(wheel->angleDelta().x()).arg(wheel->angleDelta().y()));
        return true;
    }
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        m_seen.append(
            QStringLiteral("key %1 %2")
                .arg(QKeySequence(key->key() | int(key->modifiers())).toString(QKeySequence::PortableText),
                     key->text()));
        return true;
    }
    default:
        return QLabel::event(event);
    }
}
