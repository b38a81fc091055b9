#include "pages.h"

#include "controls.h"
#include "shapes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSlider>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeView>
#include <QTreeWidget>
#include <QVBoxLayout>

MainWindow::MainWindow()
{
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(QStringLiteral("Target"));
    auto* tabs = new QTabWidget(this);
    tabs->setObjectName(QStringLiteral("tabs"));
    tabs->addTab(new Controls, QStringLiteral("&Controls"));
    tabs->addTab(makeViews(), QStringLiteral("Views"));
    tabs->addTab(makeInputs(), QStringLiteral("Inputs"));
    tabs->addTab(new Shapes, QStringLiteral("Shapes"));
    setCentralWidget(tabs);
    makeMenus();
    statusBar()->showMessage(QStringLiteral("ready"));
    resize(640, 480);
}

void MainWindow::makeMenus()
{
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    file->setObjectName(QStringLiteral("fileMenu"));
    QMenu* recent = file->addMenu(QStringLiteral("Open &Recent"));
    const auto add = [this](QMenu* menu, const QString& text) {
        QAction* action = menu->addAction(text);
        connect(action, &QAction::triggered, this, [this, text] { m_lastAction = text; });
        return action;
    };
    add(file, QStringLiteral("&New"))->setShortcut(QKeySequence::New);
    add(recent, QStringLiteral("One.txt"));
    add(recent, QStringLiteral("Dot.and.more"));
    file->addSeparator();
    connect(file->addAction(QStringLiteral("Ask...")), &QAction::triggered, this,
            [this] { findChild<Controls*>()->openModal(); });
    add(file, QStringLiteral("Gone"))->setEnabled(false);
}

static QTreeWidgetItem* addBranch(QTreeWidget* tree, const QString& text, const QStringList& leaves)
{
    auto* branch = new QTreeWidgetItem(tree, {text, QStringLiteral("branch")});
    for (const QString& leaf : leaves)
        new QTreeWidgetItem(branch, {leaf, QStringLiteral("leaf")});
    return branch;
}

QWidget* MainWindow::makeViews()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* table = new QTableWidget(3, 2, page);
    table->setObjectName(QStringLiteral("table"));
    table->setHorizontalHeaderLabels({QStringLiteral("Name"), QStringLiteral("Price")});
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 2; ++column)
            table->setItem(row, column,
                           new QTableWidgetItem(QStringLiteral("cell %1.%2").arg(row).arg(column)));
    auto* tree = new QTreeWidget(page);
    tree->setObjectName(QStringLiteral("treeWidget"));
    tree->setColumnCount(2);
    addBranch(tree, QStringLiteral("Fruit"), {QStringLiteral("Apple"), QStringLiteral("Pear.green")});
    addBranch(tree, QStringLiteral("Nuts"), {QStringLiteral("Hazel"), QStringLiteral("Wal\\nut")});
    auto* list = new QListWidget(page);
    list->setObjectName(QStringLiteral("list"));
    for (int i = 0; i < 200; ++i)
        list->addItem(QStringLiteral("entry %1").arg(i));
    auto* view = new QTreeView(page);
    view->setObjectName(QStringLiteral("modelView"));
    auto* model = new QStandardItemModel(view);
    auto* root = new QStandardItem(QStringLiteral("Root"));
    root->appendRow(new QStandardItem(QStringLiteral("Inner")));
    model->appendRow(root);
    view->setModel(model);
    for (QWidget* widget : {static_cast<QWidget*>(table), static_cast<QWidget*>(tree),
                            static_cast<QWidget*>(list), static_cast<QWidget*>(view)})
        layout->addWidget(widget);
    return page;
}

QWidget* MainWindow::makeInputs()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* combo = new QComboBox(page);
    combo->setObjectName(QStringLiteral("combo"));
    combo->addItems({QStringLiteral("red"), QStringLiteral("green"), QStringLiteral("dark.blue")});
    auto* spin = new QSpinBox(page);
    spin->setObjectName(QStringLiteral("spin"));
    auto* slider = new QSlider(Qt::Horizontal, page);
    slider->setObjectName(QStringLiteral("slider"));
    auto* check = new QCheckBox(QStringLiteral("Agreed"), page);
    check->setObjectName(QStringLiteral("check"));
    auto* text = new QPlainTextEdit(page);
    text->setObjectName(QStringLiteral("text"));
    for (QWidget* widget :
         {static_cast<QWidget*>(combo), static_cast<QWidget*>(spin), static_cast<QWidget*>(slider),
          static_cast<QWidget*>(check), static_cast<QWidget*>(text)})
        layout->addWidget(widget);
    return page;
}
