#include "dialog/dialogwindow.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace {

constexpr int notificationMs = 5000;
constexpr int marginPx = 20;
constexpr int textWidthPx = 420;

struct ButtonName
{
    const char* name;
    QDialogButtonBox::StandardButton button;
};

constexpr ButtonName buttonNames[] = {
    {"ok", QDialogButtonBox::Ok},
    {"cancel", QDialogButtonBox::Cancel},
    {"yes", QDialogButtonBox::Yes},
    {"no", QDialogButtonBox::No},
};

QStyle::StandardPixmap iconOf(DialogRequest::Kind kind)
{
    switch (kind) {
    case DialogRequest::Kind::Warning:
        return QStyle::SP_MessageBoxWarning;
    case DialogRequest::Kind::Information:
    case DialogRequest::Kind::Image:
        return QStyle::SP_MessageBoxInformation;
    default:
        return QStyle::SP_MessageBoxQuestion;
    }
}

/** Scripts show texts, which may well contain what looks like markup. */
QLabel* plainLabel(const QString& text)
{
    auto* label = new QLabel(text);
    label->setObjectName(QStringLiteral("text"));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

class Notification : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    void mousePressEvent(QMouseEvent*) override { close(); }
};

QSize available()
{
    return QApplication::primaryScreen()->availableSize();
}

} // namespace

DialogWindow::DialogWindow(const DialogRequest& request)
{
    setWindowTitle(QStringLiteral("Torvix"));
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* layout = new QVBoxLayout(this);
    addText(layout, request);
    if (request.kind == DialogRequest::Kind::Image)
        addPicture(layout, request.file);
    if (request.kind == DialogRequest::Kind::Input || request.kind == DialogRequest::Kind::Password)
        addEntry(layout, request);
    if (request.kind == DialogRequest::Kind::Choice)
        addChoices(layout, request.choices);
    addButtons(layout, request.buttons.isEmpty() ? QStringList{QStringLiteral("ok")} : request.buttons);
}

void DialogWindow::addText(QVBoxLayout* layout, const DialogRequest& request)
{
    auto* row = new QHBoxLayout;
    auto* icon = new QLabel;
    const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    icon->setPixmap(style()->standardIcon(iconOf(request.kind)).pixmap(side));
    row->addWidget(icon, 0, Qt::AlignTop);
    QLabel* text = plainLabel(request.text);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text->setMinimumWidth(textWidthPx);
    // A long text scrolls rather than growing beyond the screen.
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(text);
    area->setMinimumHeight(std::min(text->heightForWidth(textWidthPx) + marginPx, available().height() / 2));
    area->setMinimumWidth(textWidthPx + marginPx);
    row->addWidget(area, 1);
    layout->addLayout(row, 1);
}

void DialogWindow::addPicture(QVBoxLayout* layout, const QString& file)
{
    auto* picture = new QLabel;
    picture->setObjectName(QStringLiteral("picture"));
    const QPixmap pixmap(file);
    if (pixmap.isNull())
        picture->setText(file);
    else
        picture->setPixmap(pixmap);
    auto* area = new QScrollArea;
    area->setWidget(picture);
    area->setMinimumSize((pixmap.size() + QSize(4, 4)).boundedTo(available() * 0.7));
    layout->addWidget(area, 4);
}

void DialogWindow::addEntry(QVBoxLayout* layout, const DialogRequest& request)
{
    m_entry = new QLineEdit(request.value);
    m_entry->setObjectName(QStringLiteral("value"));
    if (request.kind == DialogRequest::Kind::Password)
        m_entry->setEchoMode(QLineEdit::Password);
    m_entry->selectAll();
    layout->addWidget(m_entry);
    m_entry->setFocus();
}

void DialogWindow::addChoices(QVBoxLayout* layout, const QStringList& choices)
{
    m_choices = new QListWidget;
    m_choices->setObjectName(QStringLiteral("choices"));
    m_choices->addItems(choices);
    m_choices->setCurrentRow(0);
    layout->addWidget(m_choices, 2);
    m_choices->setFocus();
    connect(m_choices, &QListWidget::itemDoubleClicked, this, [this] {
        m_button = m_confirming;
        accept();
    });
}

void DialogWindow::addButtons(QVBoxLayout* layout, const QStringList& buttons)
{
    auto* box = new QDialogButtonBox;
    for (const ButtonName& row : buttonNames) {
        const QString name = QLatin1String(row.name);
        if (!buttons.contains(name))
            continue;
        QPushButton* button = box->addButton(row.button);
        button->setObjectName(name);
        connect(button, &QPushButton::clicked, this, [this, name] {
            m_button = name;
            accept();
        });
        if (m_confirming.isNull()) {
            m_confirming = name;
            button->setDefault(true);
        }
    }
    layout->addWidget(box);
}

QString DialogWindow::value() const
{
    if (m_entry)
        return m_entry->text();
    return m_choices && m_choices->currentItem() ? m_choices->currentItem()->text() : QString();
}

void showNotification(const QString& text)
{
    auto* label = new Notification(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setWindowTitle(QStringLiteral("Torvix"));
    label->setWindowFlags(Qt::ToolTip | Qt::WindowStaysOnTopHint);
    label->setAttribute(Qt::WA_ShowWithoutActivating);
    label->setAttribute(Qt::WA_DeleteOnClose);
    label->setFrameShape(QFrame::Box);
    label->setMargin(marginPx / 2);
    label->setMinimumWidth(textWidthPx / 2);
    label->adjustSize();
    const QRect screen = QApplication::primaryScreen()->availableGeometry();
    label->move(screen.right() - label->width() - marginPx, screen.bottom() - label->height() - marginPx);
    label->show();
    // The program ends with it; a window of this kind does not see to that itself.
    QObject::connect(label, &QObject::destroyed, qApp, &QApplication::quit);
    QTimer::singleShot(notificationMs, label, &QWidget::close);
}
