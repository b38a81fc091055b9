#pragma once

#include "dialog/dialogrequest.h"

#include <QDialog>

QT_BEGIN_NAMESPACE
class QDialogButtonBox;
class QLineEdit;
class QListWidget;
class QVBoxLayout;
QT_END_NAMESPACE

/**
 * The window of a request. It stays above the application under test. Its widgets have object names:
 * "text", "value", "choices", "picture", and each button its own.
 */
class DialogWindow : public QDialog
{
public:
    explicit DialogWindow(const DialogRequest& request);

    /** Of the button that was pressed; "cancel" for a window that was closed. */
    QString button() const { return m_button; }
    /** What was entered or chosen; null where nothing is. */
    QString value() const;

private:
    void addText(QVBoxLayout* layout, const DialogRequest& request);
    void addPicture(QVBoxLayout* layout, const QString& file);
    void addEntry(QVBoxLayout* layout, const DialogRequest& request);
    void addChoices(QVBoxLayout* layout, const QStringList& choices);
    void addButtons(QVBoxLayout* layout, const QStringList& buttons);

    QString m_button = QStringLiteral("cancel");
    QString m_confirming; ///< the button that Return and a double click stand for
    QLineEdit* m_entry = nullptr;
    QListWidget* m_choices = nullptr;
};

/** Shows a text in a corner of the screen for some seconds, without taking the focus; a click ends it. */
void showNotification(const QString& text);
