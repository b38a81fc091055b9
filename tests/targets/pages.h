#pragma once

#include <QMainWindow>

/** The main window: menus, tabs with views, and the controls. */
class MainWindow : public QMainWindow
{
    Q_OBJECT
    Q_PROPERTY(QString lastAction READ lastAction)

public:
    MainWindow();
    QString lastAction() const { return m_lastAction; }

private:
    void makeMenus();
    QWidget* makeViews();
    QWidget* makeInputs();

    QString m_lastAction;
};
